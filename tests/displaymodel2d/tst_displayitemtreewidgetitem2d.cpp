#include <debugmenucontent/displaymodel2d/DisplayItemTreeWidgetItem2D.h>
#include <debugmenucontent/displaymodel2d/DisplayModel2DDialog.h>

#include <hostcontract/DisplayItem2D.h>
#include <hostcontract/MainWindowPresenter.h>

#include "../common/DebugIcons.h"

#include <QTest>
#include <QTreeWidget>

#include <memory>

using namespace Brennvik;
using Brennvik::Test::debugIconName;

namespace {

std::shared_ptr<DisplayItem2D> itemWithVisibility(const std::string& name, int visibility)
{
    auto item = std::make_shared<DisplayItem2D>(name);
    item->setVisibility(DisplayItem2D::Visibility(visibility));
    return item;
}

} // namespace

class tst_DisplayItemTreeWidgetItem2D : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    // First: no 2D row has made an icon yet.
    void iconsAreCreatedOnceWhicheverComesFirst();
    void rowTypeTextAndParent();
    void icon_data();
    void icon();
    void toggleVisibility_data();
    void toggleVisibility();
    void iconFollowsTheModifiedEvent();
    void textIsSetOnceAtConstruction();
    void rowKeepsItsItemAlive();
    void observationFollowsRowLifetime();
    void childEventsReachTheDialog();
    void modifiedEventReprintsCurrentRow();

private:
    MainWindowPresenter* m_presenter = nullptr;
    DisplayModel2DDialog* m_dialog = nullptr;
    QTreeWidget* m_tree = nullptr;
};

void tst_DisplayItemTreeWidgetItem2D::init()
{
    m_presenter = new MainWindowPresenter;
    m_dialog = new DisplayModel2DDialog(*m_presenter, nullptr);
    m_tree = m_dialog->m_displayItemTreeWidget;
}

void tst_DisplayItemTreeWidgetItem2D::cleanup()
{
    delete m_dialog;
    m_dialog = nullptr;
    delete m_presenter;
    m_presenter = nullptr;
}

void tst_DisplayItemTreeWidgetItem2D::rowTypeTextAndParent()
{
    auto item = std::make_shared<DisplayItem2D>("Punch force");
    auto* row = new DisplayItemTreeWidgetItem2D(m_tree, item, m_dialog);
    QCOMPARE(row->type(), 1000);
    QCOMPARE(row->text(0), QStringLiteral("Punch force"));
    QCOMPARE(m_tree->topLevelItem(0), row);
    QCOMPARE(row->getDisplayItem(), item);

    new DisplayItemTreeWidgetItem2D(row, std::make_shared<DisplayItem2D>("first"), m_dialog);
    auto* last = new DisplayItemTreeWidgetItem2D(row, std::make_shared<DisplayItem2D>("second"), m_dialog);
    QCOMPARE(row->childCount(), 2);
    QCOMPARE(row->child(1), last);
    QCOMPARE(last->text(0), QStringLiteral("second"));
}

void tst_DisplayItemTreeWidgetItem2D::icon_data()
{
    QTest::addColumn<int>("visibility");
    QTest::addColumn<QString>("icon");

    QTest::newRow("0 visible") << 0 << "visible";
    QTest::newRow("1 not visible") << 1 << "not_visible";
    QTest::newRow("2 not visible") << 2 << "not_visible";
    QTest::newRow("7 not visible") << 7 << "not_visible";
}

void tst_DisplayItemTreeWidgetItem2D::icon()
{
    QFETCH(int, visibility);
    QFETCH(QString, icon);
    auto* row = new DisplayItemTreeWidgetItem2D(m_tree, itemWithVisibility("item", visibility), m_dialog);
    QCOMPARE(debugIconName(row->icon(0)), icon);
}

void tst_DisplayItemTreeWidgetItem2D::toggleVisibility_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    QTest::addColumn<QString>("icon");

    QTest::newRow("visible becomes 1") << 0 << 1 << "not_visible";
    QTest::newRow("1 becomes visible") << 1 << 0 << "visible";
    QTest::newRow("2 becomes visible") << 2 << 0 << "visible";
    QTest::newRow("5 becomes visible") << 5 << 0 << "visible";
}

void tst_DisplayItemTreeWidgetItem2D::toggleVisibility()
{
    QFETCH(int, before);
    QFETCH(int, after);
    QFETCH(QString, icon);
    auto item = itemWithVisibility("item", before);
    auto* row = new DisplayItemTreeWidgetItem2D(m_tree, item, m_dialog);
    row->toggleVisibility();
    QCOMPARE(int(item->getVisibility()), after);
    QCOMPARE(debugIconName(row->icon(0)), icon);
}

void tst_DisplayItemTreeWidgetItem2D::iconFollowsTheModifiedEvent()
{
    auto item = std::make_shared<DisplayItem2D>("item");
    auto* row = new DisplayItemTreeWidgetItem2D(m_tree, item, m_dialog);
    // The host changes the visibility itself: the row learns of it by the event.
    item->setVisibility(DisplayItem2D::NotVisible);
    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("not_visible"));
    item->setVisibility(DisplayItem2D::Visible);
    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("visible"));

    // setVisiblityIcon reads the item now, whatever the icon was.
    row->setIcon(0, QIcon());
    row->setVisiblityIcon();
    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("visible"));
}

void tst_DisplayItemTreeWidgetItem2D::textIsSetOnceAtConstruction()
{
    auto item = std::make_shared<DisplayItem2D>("Old name");
    auto* row = new DisplayItemTreeWidgetItem2D(m_tree, item, m_dialog);
    item->setDisplayName("New name"); // raises the modified event
    QCOMPARE(row->text(0), QStringLiteral("Old name"));
}

void tst_DisplayItemTreeWidgetItem2D::iconsAreCreatedOnceWhicheverComesFirst()
{
    // This test's rows are the first 2D rows of the process here, so the
    // not-visible icon is made first.
    auto* hiddenA = new DisplayItemTreeWidgetItem2D(m_tree, itemWithVisibility("a", 1), m_dialog);
    auto* visibleA = new DisplayItemTreeWidgetItem2D(m_tree, itemWithVisibility("b", 0), m_dialog);
    auto* hiddenB = new DisplayItemTreeWidgetItem2D(m_tree, itemWithVisibility("c", 2), m_dialog);
    auto* visibleB = new DisplayItemTreeWidgetItem2D(m_tree, itemWithVisibility("d", 0), m_dialog);

    // One icon object per state: copies of it share its cache key.
    QCOMPARE(hiddenA->icon(0).cacheKey(), hiddenB->icon(0).cacheKey());
    QCOMPARE(visibleA->icon(0).cacheKey(), visibleB->icon(0).cacheKey());
    QVERIFY(hiddenA->icon(0).cacheKey() != visibleA->icon(0).cacheKey());

    // Toggling does not make new ones either.
    const qint64 hiddenKey = hiddenA->icon(0).cacheKey();
    const qint64 visibleKey = visibleA->icon(0).cacheKey();
    visibleA->toggleVisibility();
    hiddenA->toggleVisibility();
    QCOMPARE(visibleA->icon(0).cacheKey(), hiddenKey);
    QCOMPARE(hiddenA->icon(0).cacheKey(), visibleKey);
}

void tst_DisplayItemTreeWidgetItem2D::rowKeepsItsItemAlive()
{
    auto item = std::make_shared<DisplayItem2D>("item");
    std::weak_ptr<DisplayItem2D> weak = item;
    auto* row = new DisplayItemTreeWidgetItem2D(m_tree, item, m_dialog);
    item.reset();
    QVERIFY(!weak.expired());
    QCOMPARE(row->getDisplayItem()->getDisplayName(), std::string("item"));
    delete row;
    QVERIFY(weak.expired());
}

void tst_DisplayItemTreeWidgetItem2D::observationFollowsRowLifetime()
{
    auto item = std::make_shared<DisplayItem2D>("item");
    auto* row = new DisplayItemTreeWidgetItem2D(m_tree, item, m_dialog);
    QVERIFY(item->isObservedBy(row));
    QCOMPARE(item->observerCount(), std::size_t(1));
    delete row;
    QCOMPARE(item->observerCount(), std::size_t(0));
    item->setVisibility(DisplayItem2D::NotVisible); // must reach nobody
}

void tst_DisplayItemTreeWidgetItem2D::childEventsReachTheDialog()
{
    auto item = std::make_shared<DisplayItem2D>("Curves");
    auto* row = new DisplayItemTreeWidgetItem2D(m_tree, item, m_dialog);
    auto child = std::make_shared<DisplayItem2D>("Punch");
    child->appendChild(std::make_shared<DisplayItem2D>("Punch points"));

    item->appendChild(child);
    QCOMPARE(row->childCount(), 1);
    QCOMPARE(row->child(0)->text(0), QStringLiteral("Punch"));
    QCOMPARE(row->child(0)->childCount(), 1);
    QCOMPARE(row->child(0)->child(0)->text(0), QStringLiteral("Punch points"));

    item->removeChild(child);
    QCOMPARE(row->childCount(), 0);
}

void tst_DisplayItemTreeWidgetItem2D::modifiedEventReprintsCurrentRow()
{
    auto item = std::make_shared<DisplayItem2D>("item");
    auto* row = new DisplayItemTreeWidgetItem2D(m_tree, item, m_dialog);
    m_tree->setCurrentItem(row);
    QCOMPARE(m_dialog->m_displayItemProperties->topLevelItemCount(), 0);
    item->setDisplayProperty("line", "dashed");
    QCOMPARE(m_dialog->m_displayItemProperties->topLevelItemCount(), 1);
    QCOMPARE(m_dialog->m_displayItemProperties->topLevelItem(0)->text(1), QStringLiteral("dashed"));
}

QTEST_MAIN(tst_DisplayItemTreeWidgetItem2D)
#include "tst_displayitemtreewidgetitem2d.moc"
