// The reference host on a chain of display items, one below the other: every
// walk of the model must cost a bounded stack and linear time in all.
//
// The chains here are short enough for CI, so the work runs on a thread with
// a small stack: a walk that recursed once per level would overflow it long
// before the chain ends, as it overflows the main thread's stack on a chain a
// million levels deep.
#include "SmallStack.h"
#include "TestTree.h"

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>

#include <hostcontract/DisplayItemTreeTraverser.h>

#include <QtTest>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

using namespace Brennvik;

Q_DECLARE_METATYPE(CloneDefect::Kind)

namespace {

constexpr int Depth = 20000;

using Chain = std::vector<std::shared_ptr<DisplayItem>>;

std::string levelName(int level)
{
    return "level " + std::to_string(level);
}

enum class Build { TopDown, BottomUp, InsertTopDown };

// The items of a chain from the root (level 0) down, built the way \a build says.
Chain buildChain(Build build)
{
    Chain chain;
    chain.reserve(Depth);
    for (int level = 0; level < Depth; ++level)
        chain.push_back(std::make_shared<DisplayItem>(levelName(level)));
    if (build == Build::BottomUp) {
        for (int level = Depth - 1; level > 0; --level)
            chain[level - 1]->appendChild(chain[level]);
    } else {
        for (int level = 1; level < Depth; ++level) {
            if (build == Build::TopDown)
                chain[level - 1]->appendChild(chain[level]);
            else
                chain[level - 1]->insertChild(0, chain[level]);
        }
    }
    return chain;
}

bool isChain(const Chain& chain)
{
    for (std::size_t level = 1; level < chain.size(); ++level) {
        if (chain[level]->parentItem() != chain[level - 1].get() || chain[level - 1]->childCount() != 1)
            return false;
    }
    return chain.front()->getParent() == nullptr && chain.back()->childCount() == 0;
}

template<typename Call>
bool throwsInvalidArgument(Call call)
{
    try {
        call();
    } catch (const std::invalid_argument&) {
        return true;
    }
    return false;
}

class Counter : public DisplayItemTreeTraverser::NodeProcessorInterface
{
public:
    void processNode(std::shared_ptr<DisplayItemInterface>) override { ++count; }
    int count = 0;
};

} // namespace

Q_DECLARE_METATYPE(Build)

class tst_DeepChain : public QObject
{
    Q_OBJECT

private slots:
    void buildAndFree_data();
    void buildAndFree();
    void cyclesAreRefused();
    void walks();
    void displayModelFollowsTheChain();
    void clone_data();
    void clone();
};

void tst_DeepChain::buildAndFree_data()
{
    QTest::addColumn<Build>("build");
    QTest::newRow("appendChild top down") << Build::TopDown;
    QTest::newRow("appendChild bottom up") << Build::BottomUp;
    QTest::newRow("insertChild top down") << Build::InsertTopDown;
}

void tst_DeepChain::buildAndFree()
{
    QFETCH(Build, build);
    bool chained = false;
    std::uint64_t count = 0;
    bool middleDetached = false;
    std::uint64_t middleCount = 0;
    bool middleKeepsItsChain = false;
    std::weak_ptr<DisplayItem> leaf;
    Test::runOnSmallStack([&] {
        std::shared_ptr<DisplayItem> middle;
        {
            Chain chain = buildChain(build);
            chained = isChain(chain);
            count = chain.front()->getNumberOfDisplayItems();
            middle = chain[Depth / 2];
            leaf = chain.back();
        }
        // The chain's root is gone; the half that someone still holds stays whole.
        middleDetached = middle->getParent() == nullptr;
        middleCount = middle->getNumberOfDisplayItems();
        middleKeepsItsChain = leaf.lock() && leaf.lock()->path().size() > levelName(Depth - 1).size();
        middle.reset();
    });
    QVERIFY(chained);
    QCOMPARE(count, std::uint64_t(Depth));
    QVERIFY(middleDetached);
    QCOMPARE(middleCount, std::uint64_t(Depth - Depth / 2));
    QVERIFY(middleKeepsItsChain);
    QVERIFY(leaf.expired());
}

void tst_DeepChain::cyclesAreRefused()
{
    QVector<bool> refused;
    bool untouched = false;
    bool movedWithin = false;
    bool appendedDetachedChain = false;
    Test::runOnSmallStack([&] {
        Chain chain = buildChain(Build::TopDown);
        const auto& root = chain.front();
        const auto& middle = chain[Depth / 2];
        const auto& leaf = chain.back();
        const auto fresh = std::make_shared<DisplayItem>("fresh");
        refused << throwsInvalidArgument([&] { leaf->appendChild(root); })
                << throwsInvalidArgument([&] { leaf->appendChild(middle); })
                << throwsInvalidArgument([&] { leaf->appendChild(leaf); })
                << throwsInvalidArgument([&] { middle->appendChild(root); })
                << throwsInvalidArgument([&] { leaf->insertChild(0, chain[1]); }) << throwsInvalidArgument([&] {
                       leaf->appendChildren({fresh, middle});
                   });
        untouched = isChain(chain) && fresh->getParent() == nullptr;

        // Moving a part of the chain up is no cycle.
        root->appendChild(middle);
        movedWithin = middle->parentItem() == root.get() && root->childCount() == 2
            && root->getNumberOfDisplayItems() == std::uint64_t(Depth);

        // Nor is hanging another deep chain below the leaf.
        Chain other = buildChain(Build::BottomUp);
        leaf->appendChild(other.front());
        appendedDetachedChain
            = other.front()->parentItem() == leaf.get() && root->getNumberOfDisplayItems() == std::uint64_t(2 * Depth);
    });
    QCOMPARE(refused, QVector<bool>(6, true));
    QVERIFY(untouched);
    QVERIFY(movedWithin);
    QVERIFY(appendedDetachedChain);
}

void tst_DeepChain::walks()
{
    std::size_t subtreeSize = 0;
    std::size_t toShowSize = 0;
    bool preOrder = false;
    bool found = false;
    std::string description;
    int processed = 0;
    int processedVisible = 0;
    Test::runOnSmallStack([&] {
        Chain chain = buildChain(Build::TopDown);
        chain[Depth - 10]->setVisible(false);
        DisplayItemList subtree;
        chain.front()->collectSubtree(subtree);
        subtreeSize = subtree.size();
        preOrder = subtree.size() == chain.size();
        for (std::size_t i = 0; preOrder && i < chain.size(); ++i)
            preOrder = subtree[i] == chain[i];
        DisplayItemList toShow;
        chain[1]->collectSubtreeToShow(toShow);
        toShowSize = toShow.size();
        found = chain.front()->findByDisplayName(levelName(Depth - 1)) == chain.back();
        description = chain.back()->getDescription();
        Counter all;
        DisplayItemTreeTraverser::process(chain.front(), all);
        processed = all.count;
        Counter visible;
        DisplayItemTreeTraverser::processVisible(chain.front(), visible);
        processedVisible = visible.count;
    });
    QCOMPARE(subtreeSize, std::size_t(Depth));
    QVERIFY(preOrder);
    QCOMPARE(toShowSize, std::size_t(Depth - 1));
    QVERIFY(found);
    const std::string end = levelName(Depth - 2) + "/" + levelName(Depth - 1);
    QVERIFY(description.rfind("DisplayItem \"" + levelName(Depth - 1) + "\" at level 0/level 1/", 0) == 0);
    QCOMPARE(description.substr(description.size() - end.size()), end);
    QCOMPARE(processed, Depth);
    QCOMPARE(processedVisible, Depth - 10);
}

void tst_DeepChain::displayModelFollowsTheChain()
{
    QVector<bool> steps;
    Test::runOnSmallStack([&] {
        Chain chain = buildChain(Build::TopDown);
        const auto& leaf = chain.back();
        auto model = std::make_unique<SceneDisplayModel>();
        model->setRootDisplayItem(chain.front());
        steps << (leaf->getDisplayModel() == model.get());

        chain.front()->removeChild(chain[1], false);
        steps << (leaf->getDisplayModel() == nullptr && leaf->resourcesReleased());
        chain.front()->appendChild(chain[1]);
        steps << (leaf->getDisplayModel() == model.get() && !leaf->resourcesReleased());

        model->setRootDisplayItem(nullptr);
        steps << (leaf->getDisplayModel() == nullptr);
        model->setRootDisplayItem(chain.front());
        model.reset();
        steps << (leaf->getDisplayModel() == nullptr);
    });
    QCOMPARE(steps, QVector<bool>(5, true));
}

void tst_DeepChain::clone_data()
{
    QTest::addColumn<Test::DefectList>("defects");
    QTest::addColumn<int>("cloneCount");
    QTest::addColumn<int>("hiddenInClone");

    const QString levelOne = QString::fromStdString(levelName(1));
    const QString leaf = QString::fromStdString(levelName(Depth - 1));
    QTest::newRow("faithful") << Test::DefectList{} << Depth << 0;
    QTest::newRow("drop-child below the root") << Test::DefectList{{CloneDefect::Kind::DropChild, levelOne}} << 1 << 0;
    QTest::newRow("share-child below the root")
        << Test::DefectList{{CloneDefect::Kind::ShareChild, levelOne}} << Depth << 0;
    QTest::newRow("repeat-child below the root")
        << Test::DefectList{{CloneDefect::Kind::RepeatChild, levelOne}} << 2 * Depth - 1 << 0;
    QTest::newRow("flip-visibility of the leaf")
        << Test::DefectList{{CloneDefect::Kind::FlipVisibility, leaf}} << Depth << 1;
    QTest::newRow("add-child to the leaf") << Test::DefectList{{CloneDefect::Kind::AddChild, leaf}} << Depth + 1 << 0;
}

void tst_DeepChain::clone()
{
    QFETCH(Test::DefectList, defects);
    QFETCH(int, cloneCount);
    QFETCH(int, hiddenInClone);
    std::uint64_t count = 0;
    int hidden = 0;
    std::size_t unapplied = 0;
    bool parentsInside = true;
    Test::runOnSmallStack([&] {
        Chain chain = buildChain(Build::TopDown);
        const auto viewModel = Test::makeViewModel(chain.front());
        Test::setDefects(*viewModel, defects);
        const auto clone = viewModel->cloneSceneViewModel(false);
        unapplied = viewModel->lastCloneUnappliedDefects().size();
        const auto cloneRoot = clone->displayModel().rootDisplayItem();
        count = cloneRoot->getNumberOfDisplayItems();
        DisplayItemList items;
        cloneRoot->collectSubtree(items);
        for (const auto& item : items) {
            hidden += item->isVisible() ? 0 : 1;
            // Copies hang below copies; only a shared item keeps its original parent.
            const auto* parent = item->getParent();
            if (item != cloneRoot && parent && parent->getDisplayModel() != item->getDisplayModel())
                parentsInside = false;
        }
    });
    QCOMPARE(unapplied, std::size_t(0));
    QCOMPARE(count, std::uint64_t(cloneCount));
    QCOMPARE(hidden, hiddenInClone);
    QVERIFY(parentsInside);
}

QTEST_MAIN(tst_DeepChain)
#include "tst_deepchain.moc"
