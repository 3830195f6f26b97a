#include "TestTree.h"

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

} // namespace

class TestDisplayItemTreeTraverser : public QObject
{
    Q_OBJECT

private slots:
    void order_data();
    void order();
    void emptyRootVisitsNothing();
    void processorSeesSharedItems();
};

void TestDisplayItemTreeTraverser::order_data()
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

void TestDisplayItemTreeTraverser::order()
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

void TestDisplayItemTreeTraverser::emptyRootVisitsNothing()
{
    NameCollector collector;
    DisplayItemTreeTraverser::process(nullptr, collector);
    DisplayItemTreeTraverser::processVisible(nullptr, collector);
    QVERIFY(collector.names.isEmpty());
}

void TestDisplayItemTreeTraverser::processorSeesSharedItems()
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

QTEST_GUILESS_MAIN(TestDisplayItemTreeTraverser)
#include "tst_displayitemtreetraverser.moc"
