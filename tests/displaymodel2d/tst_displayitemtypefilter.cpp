#include <debugmenucontent/displaymodel2d/DisplayItemTypeCollector.h>
#include <debugmenucontent/displaymodel2d/DisplayItemTypeFilter.h>

#include <hostcontract/DisplayItemTreeTraverser.h>
#include <hostcontract/PlotLabelDisplayItem.h>

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/LabelableItem.h>
#include <referencehost/model/ShellItem.h>
#include <referencehost/plot2d/PlotLabelItem.h>

#include <QTest>

#include <memory>
#include <string>
#include <vector>

using namespace Brennvik;

namespace {

// The kind of item a filter looks for in these tests.
class MarkerItem : public DisplayItem
{
public:
    using DisplayItem::DisplayItem;
};

int g_markerCasts = 0;

} // namespace

namespace Brennvik {

// Counts the casts the filter makes, then casts as the filter would.
template<>
struct DisplayItemTypeCast<MarkerItem>
{
    static std::shared_ptr<MarkerItem> cast(const std::shared_ptr<DisplayItemInterface>& item)
    {
        ++g_markerCasts;
        return std::dynamic_pointer_cast<MarkerItem>(item);
    }
};

} // namespace Brennvik

namespace {

class MarkerCollector : public DisplayItemTypeFilter<MarkerItem>
{
public:
    void processTypedNode(std::shared_ptr<MarkerItem> item) override { names.push_back(item->getDisplayName()); }
    std::vector<std::string> names;
};

// One item per letter: M a marker, P a plain DisplayItem, S a shell, L a labelable item.
std::vector<std::shared_ptr<DisplayItem>> itemsOf(const QString& kinds)
{
    std::vector<std::shared_ptr<DisplayItem>> items;
    for (int i = 0; i < kinds.size(); ++i) {
        const std::string name = kinds.mid(i, 1).toStdString() + std::to_string(i);
        switch (kinds.at(i).toLatin1()) {
        case 'M':
            items.push_back(std::make_shared<MarkerItem>(name));
            break;
        case 'P':
            items.push_back(std::make_shared<DisplayItem>(name));
            break;
        case 'S':
            items.push_back(std::make_shared<ShellItem>(name, "Tool", name));
            break;
        case 'L':
            items.push_back(std::make_shared<LabelableItem>(name, name, true));
            break;
        default:
            break;
        }
    }
    return items;
}

QStringList toStringList(const std::vector<std::string>& names)
{
    QStringList list;
    for (const std::string& name : names)
        list << QString::fromStdString(name);
    return list;
}

} // namespace

class tst_DisplayItemTypeFilter : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void castsPerRun_data();
    void castsPerRun();
    void matchSharesOwnership();
    void emptyItemIsSkipped();
    void collectorKeepsVisitingOrderOfVisibleLabels();
    void collectorWithRunsOfOneForeignTypeOverATree();
};

void tst_DisplayItemTypeFilter::init()
{
    g_markerCasts = 0;
}

void tst_DisplayItemTypeFilter::castsPerRun_data()
{
    QTest::addColumn<QString>("kinds");
    QTest::addColumn<int>("casts");
    QTest::addColumn<QStringList>("collected");

    QTest::newRow("nothing") << "" << 0 << QStringList();
    QTest::newRow("run of one foreign type: one cast") << "PPPPPP" << 1 << QStringList();
    QTest::newRow("markers are cast every time") << "MMM" << 3 << QStringList{"M0", "M1", "M2"};
    QTest::newRow("a match leaves the cache") << "PMP" << 2 << QStringList{"M1"};
    QTest::newRow("runs around matches") << "PPMPPMPP" << 3 << QStringList{"M2", "M5"};
    QTest::newRow("one entry: alternating types miss") << "PSPS" << 4 << QStringList();
    QTest::newRow("a new type replaces the cached one") << "PPSSPP" << 3 << QStringList();
    QTest::newRow("a derived type is a type of its own") << "LLPPLL" << 3 << QStringList();
}

void tst_DisplayItemTypeFilter::castsPerRun()
{
    QFETCH(QString, kinds);
    QFETCH(int, casts);
    QFETCH(QStringList, collected);

    MarkerCollector filter;
    for (const auto& item : itemsOf(kinds))
        filter.processNode(item);

    QCOMPARE(g_markerCasts, casts);
    QCOMPARE(toStringList(filter.names), collected);
}

void tst_DisplayItemTypeFilter::matchSharesOwnership()
{
    auto marker = std::make_shared<MarkerItem>("M");
    std::vector<std::shared_ptr<MarkerItem>> found;
    DisplayItemTypeCollector<MarkerItem> collector(&found);
    collector.processNode(marker);

    QCOMPARE(found.size(), std::size_t(1));
    QCOMPARE(found.front().get(), marker.get());
    QCOMPARE(marker.use_count(), 2L);
    std::weak_ptr<MarkerItem> weak = marker;
    marker.reset();
    QVERIFY(!weak.expired()); // the collected reference owns the item too
}

void tst_DisplayItemTypeFilter::emptyItemIsSkipped()
{
    MarkerCollector filter;
    filter.processNode(nullptr);
    QCOMPARE(g_markerCasts, 0);
    QVERIFY(filter.names.empty());
}

void tst_DisplayItemTypeFilter::collectorKeepsVisitingOrderOfVisibleLabels()
{
    auto root = std::make_shared<DisplayItem>("Labels");
    auto group = std::make_shared<DisplayItem>("Group");
    auto hiddenGroup = std::make_shared<DisplayItem>("Hidden group");
    hiddenGroup->setVisible(false);
    auto first = std::make_shared<PlotLabelItem>("first", "first", nullptr, Vector<float, 3>());
    auto second = std::make_shared<PlotLabelItem>("second", "second", nullptr, Vector<float, 3>());
    auto third = std::make_shared<PlotLabelItem>("third", "third", nullptr, Vector<float, 3>());
    auto hidden = std::make_shared<PlotLabelItem>("hidden", "hidden", nullptr, Vector<float, 3>());
    hidden->setVisible(false);
    auto underHidden = std::make_shared<PlotLabelItem>("under hidden", "x", nullptr, Vector<float, 3>());
    root->appendChild(first);
    root->appendChild(group);
    group->appendChild(std::make_shared<LabelableItem>("not a plot label", "text", true));
    group->appendChild(second);
    group->appendChild(hidden);
    root->appendChild(hiddenGroup);
    hiddenGroup->appendChild(underHidden);
    root->appendChild(third);

    std::vector<std::shared_ptr<PlotLabelDisplayItem>> labels;
    DisplayItemTypeCollector<PlotLabelDisplayItem> collector(&labels);
    DisplayItemTreeTraverser::processVisible(root, collector);

    std::vector<std::string> names;
    for (const auto& label : labels)
        names.push_back(std::dynamic_pointer_cast<DisplayItemInterface>(label)->getDisplayName());
    QCOMPARE(toStringList(names), (QStringList{"first", "second", "third"}));
}

void tst_DisplayItemTypeFilter::collectorWithRunsOfOneForeignTypeOverATree()
{
    // A label model as the host has it: many plain items, few markers.
    auto root = std::make_shared<DisplayItem>("root");
    for (int i = 0; i < 50; ++i)
        root->appendChild(std::make_shared<DisplayItem>("plain " + std::to_string(i)));
    root->appendChild(std::make_shared<MarkerItem>("marker"));
    for (int i = 0; i < 50; ++i)
        root->appendChild(std::make_shared<DisplayItem>("more " + std::to_string(i)));

    MarkerCollector filter;
    DisplayItemTreeTraverser::process(root, filter);
    // root and the first run cost one cast, the marker one; the match left
    // the cache alone, so the run after it costs none.
    QCOMPARE(g_markerCasts, 2);
    QCOMPARE(toStringList(filter.names), QStringList{"marker"});
}

QTEST_GUILESS_MAIN(tst_DisplayItemTypeFilter)
#include "tst_displayitemtypefilter.moc"
