#include "TestTree.h"

#include <referencehost/model/ToolKeyLookup.h>

#include <hostcontract/DisplayItemTreeTraverser.h>

#include <QtTest>

using namespace Brennvik;
using Brennvik::Test::TreeNode;

namespace {

class NameCollector : public DisplayItemTreeTraverser::NodeProcessorInterface
{
public:
    void processNode(std::shared_ptr<DisplayItemInterface> item) override
    {
        names << QString::fromStdString(item->getDisplayName());
    }
    QStringList names;
};

// Trees by name, so that the data table stays readable.
TreeNode treeNamed(const QString& name)
{
    if (name == "single")
        return {"root"};
    if (name == "all visible")
        return {"root", {{"a", {{"a1"}, {"a2"}}}, {"b", {{"b1"}}}}};
    if (name == "hidden leaf")
        return {"root", {{"a", {{"a1", {}, false}, {"a2"}}}, {"b"}}};
    if (name == "hidden inner item")
        return {"root", {{"a", {{"a1"}, {"a2"}}, false}, {"b", {{"b1"}}}}};
    if (name == "visible below hidden")
        return {"root", {{"a", {{"a1", {{"a11"}}}}, false}, {"b"}}};
    if (name == "hidden root")
        return {"root", {{"a"}, {"b"}}, false};
    return {"deep", {{"1", {{"2", {{"3", {{"4"}}}}}}}}};
}

// An item that breaks the tree: its getChildren() ends with an empty
// reference or, with back links, with its parent (the root with itself).
class BrokenItem : public DisplayItem
{
public:
    BrokenItem(std::string name, bool backLink)
        : DisplayItem(std::move(name))
        , m_backLink(backLink)
    {
    }

    DisplayItemList getChildren() const override
    {
        DisplayItemList children = DisplayItem::getChildren();
        const DisplayItem* back = parentItem() ? parentItem() : this;
        children.push_back(m_backLink ? std::const_pointer_cast<DisplayItem>(back->shared_from_this()) : nullptr);
        return children;
    }

private:
    bool m_backLink;
};

// root(a(a1), b) of BrokenItems.
std::shared_ptr<DisplayItem> brokenTree(bool backLinks)
{
    const auto item = [backLinks](const char* name) { return std::make_shared<BrokenItem>(name, backLinks); };
    auto root = item("root");
    auto a = item("a");
    root->appendChild(a);
    a->appendChild(item("a1"));
    root->appendChild(item("b"));
    return root;
}

} // namespace

class tst_DisplayItemTreeTraverser : public QObject
{
    Q_OBJECT

private slots:
    void order_data();
    void order();
    void emptyRootVisitsNothing();
    void processorSeesSharedItems();
    void brokenTreesAreWalkedOnce_data();
    void brokenTreesAreWalkedOnce();
};

void tst_DisplayItemTreeTraverser::order_data()
{
    QTest::addColumn<QString>("tree");
    QTest::addColumn<QStringList>("all");
    QTest::addColumn<QStringList>("visible");

    QTest::newRow("single") << "single" << QStringList{"root"} << QStringList{"root"};
    QTest::newRow("all visible") << "all visible" << QStringList{"root", "a", "a1", "a2", "b", "b1"}
                                 << QStringList{"root", "a", "a1", "a2", "b", "b1"};
    QTest::newRow("hidden leaf") << "hidden leaf" << QStringList{"root", "a", "a1", "a2", "b"}
                                 << QStringList{"root", "a", "a2", "b"};
    QTest::newRow("hidden inner item") << "hidden inner item" << QStringList{"root", "a", "a1", "a2", "b", "b1"}
                                       << QStringList{"root", "b", "b1"};
    QTest::newRow("visible below hidden")
        << "visible below hidden" << QStringList{"root", "a", "a1", "a11", "b"} << QStringList{"root", "b"};
    QTest::newRow("hidden root") << "hidden root" << QStringList{"root", "a", "b"} << QStringList{};
    QTest::newRow("deep chain") << "deep" << QStringList{"deep", "1", "2", "3", "4"}
                                << QStringList{"deep", "1", "2", "3", "4"};
}

void tst_DisplayItemTreeTraverser::order()
{
    QFETCH(QString, tree);
    QFETCH(QStringList, all);
    QFETCH(QStringList, visible);

    const auto root = Test::buildTree(treeNamed(tree));
    NameCollector everything;
    DisplayItemTreeTraverser::process(root, everything);
    QCOMPARE(everything.names, all);

    NameCollector drawn;
    DisplayItemTreeTraverser::processVisible(root, drawn);
    QCOMPARE(drawn.names, visible);
}

void tst_DisplayItemTreeTraverser::emptyRootVisitsNothing()
{
    NameCollector collector;
    DisplayItemTreeTraverser::process(nullptr, collector);
    DisplayItemTreeTraverser::processVisible(nullptr, collector);
    QVERIFY(collector.names.isEmpty());
}

void tst_DisplayItemTreeTraverser::processorSeesSharedItems()
{
    // The processor receives the tree's own shared references.
    class IdentityCollector : public DisplayItemTreeTraverser::NodeProcessorInterface
    {
    public:
        void processNode(std::shared_ptr<DisplayItemInterface> item) override { items.push_back(item); }
        DisplayItemList items;
    };
    const auto root = Test::buildTree({"root", {{"a"}, {"b"}}});
    IdentityCollector collector;
    DisplayItemTreeTraverser::process(root, collector);
    QCOMPARE(collector.items.size(), std::size_t(3));
    QCOMPARE(collector.items[0].get(), static_cast<DisplayItemInterface*>(root.get()));
    QCOMPARE(collector.items[2].get(), static_cast<DisplayItemInterface*>(root->childAt(1).get()));
    QCOMPARE(root->childAt(1).use_count(), 3L); // the tree, the collector and the temporary of childAt
}

void tst_DisplayItemTreeTraverser::brokenTreesAreWalkedOnce_data()
{
    QTest::addColumn<bool>("backLinks");
    QTest::newRow("empty children") << false;
    QTest::newRow("links back to the parent") << true;
}

// Empty children are skipped and links back to an ancestor are not followed,
// by the traverser and by the key lookup alike.
void tst_DisplayItemTreeTraverser::brokenTreesAreWalkedOnce()
{
    QFETCH(bool, backLinks);
    const auto root = brokenTree(backLinks);
    NameCollector all;
    DisplayItemTreeTraverser::process(root, all);
    QCOMPARE(all.names, QStringList({"root", "a", "a1", "b"}));
    NameCollector visible;
    root->childAt(0)->setVisible(false);
    DisplayItemTreeTraverser::processVisible(root, visible);
    QCOMPARE(visible.names, QStringList({"root", "b"}));

    const ToolKeyLookup lookup(root, std::string());
    QCOMPARE(lookup.findDisplayItem("b"), std::shared_ptr<DisplayItemInterface>(root->childAt(1)));
    QCOMPARE(lookup.findDisplayItem("missing"), std::shared_ptr<DisplayItemInterface>());
}

QTEST_GUILESS_MAIN(tst_DisplayItemTreeTraverser)
#include "tst_displayitemtreetraverser.moc"
