// The tool tips of display item rows: what the mouse resting on a row tells
// of its item, asked of the host when the tip is wanted.

#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SceneDisplayModel.h>

#include "../common/ItemWidgetDriver.h"
#include "../common/TestTree.h"
#include "../common/ToolTipDriver.h"

#include <QApplication>
#include <QHelpEvent>
#include <QTest>
#include <QToolTip>
#include <QTreeWidgetItem>
#include <QTreeWidgetItemIterator>

using namespace Brennvik;
using namespace Brennvik::Test;

namespace {

DisplayItemTreeWidgetItem* itemRowNamed(QTreeWidget* tree, const QString& text)
{
    return dynamic_cast<DisplayItemTreeWidgetItem*>(Test::rowNamed(tree, text));
}

QString tip(const QString& visibility, const QString& selection, const QString& ancestors)
{
    return visibility + QLatin1Char('\n') + selection + QLatin1Char('\n') + ancestors;
}

} // namespace

class tst_DisplayItemTreeWidgetToolTip : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void rowToolTip_data();
    void rowToolTip();
    void followsTheModel();
    void goneItem();
    void noToolTipOutsideDisplayItemRows_data();
    void noToolTipOutsideDisplayItemRows();
    void rowsKeepNoToolTip();

private:
    QString toolTipOf(const QString& rowName);

    DisplayItemTreeWidget* m_tree = nullptr;
    std::unique_ptr<SceneDisplayModel> m_model;
    std::shared_ptr<DisplayItem> m_root;
};

void tst_DisplayItemTreeWidgetToolTip::initTestCase()
{
    m_tree = new DisplayItemTreeWidget(nullptr, true);
    m_tree->resize(400, 500);
    m_tree->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_tree));
}

void tst_DisplayItemTreeWidgetToolTip::cleanupTestCase()
{
    delete m_tree;
}

void tst_DisplayItemTreeWidgetToolTip::init()
{
    m_model = std::make_unique<SceneDisplayModel>();
    m_root
        = buildTree({"Root", {{"Blank", {{"Blank mesh"}}}, {"Tools", {{"Upper die"}, {"Punch", {{"Punch radius"}}}}}}});
    m_model->setRootDisplayItem(m_root);
    addRowsWithoutDialog(m_tree, nullptr, m_root);
    m_tree->expandAll();
}

void tst_DisplayItemTreeWidgetToolTip::cleanup()
{
    takeDownToolTip();
    m_tree->clear();
    m_root.reset();
    m_model.reset();
}

QString tst_DisplayItemTreeWidgetToolTip::toolTipOf(const QString& rowName)
{
    DisplayItemTreeWidgetItem* row = itemRowNamed(m_tree, rowName);
    return row ? toolTipAt(m_tree, m_tree->visualItemRect(row).center()) : QStringLiteral("no row %1").arg(rowName);
}

void tst_DisplayItemTreeWidgetToolTip::rowToolTip_data()
{
    QTest::addColumn<QString>("row");
    QTest::addColumn<QStringList>("hidden");
    QTest::addColumn<QStringList>("selected");
    QTest::addColumn<QString>("expected");

    const QString visible = QStringLiteral("Visible");
    const QString notVisible = QStringLiteral("Not visible");
    const QString notSelected = QStringLiteral("Not selected");
    const QString noAncestor = QStringLiteral("No ancestor hides it");
    const QString byAncestor = QStringLiteral("Hidden by an ancestor");
    QTest::newRow("plain") << "Punch" << QStringList{} << QStringList{} << tip(visible, notSelected, noAncestor);
    QTest::newRow("root") << "Root" << QStringList{} << QStringList{} << tip(visible, notSelected, noAncestor);
    QTest::newRow("hidden itself") << "Punch" << QStringList{"Punch"} << QStringList{}
                                   << tip(notVisible, notSelected, noAncestor);
    QTest::newRow("selected") << "Punch" << QStringList{} << QStringList{"Punch"}
                              << tip(visible, QStringLiteral("Selected"), noAncestor);
    QTest::newRow("parent hidden") << "Punch radius" << QStringList{"Punch"} << QStringList{}
                                   << tip(visible, notSelected, byAncestor);
    QTest::newRow("grandparent hidden") << "Punch radius" << QStringList{"Tools"} << QStringList{}
                                        << tip(visible, notSelected, byAncestor);
    QTest::newRow("root hidden, hidden itself too")
        << "Punch" << QStringList{"Root", "Punch"} << QStringList{} << tip(notVisible, notSelected, byAncestor);
    QTest::newRow("a sibling's parent hidden")
        << "Punch radius" << QStringList{"Blank"} << QStringList{} << tip(visible, notSelected, noAncestor);
    QTest::newRow("a child hidden") << "Tools" << QStringList{"Punch"} << QStringList{}
                                    << tip(visible, notSelected, noAncestor);
}

void tst_DisplayItemTreeWidgetToolTip::rowToolTip()
{
    QFETCH(QString, row);
    QFETCH(QStringList, hidden);
    QFETCH(QStringList, selected);
    QFETCH(QString, expected);
    for (const QString& name : hidden)
        findItem(m_root, name.toStdString())->setVisible(false);
    for (const QString& name : selected)
        findItem(m_root, name.toStdString())->setSelected(true);

    QCOMPARE(toolTipOf(row), expected);
}

void tst_DisplayItemTreeWidgetToolTip::followsTheModel()
{
    // Asked afresh each time: the host changed the item without telling anyone.
    QCOMPARE(toolTipOf("Blank mesh"), tip("Visible", "Not selected", "No ancestor hides it"));
    findItem(m_root, "Blank")->setVisible(false);
    findItem(m_root, "Blank mesh")->setSelected(true);
    QCOMPARE(toolTipOf("Blank mesh"), tip("Visible", "Selected", "Hidden by an ancestor"));
}

void tst_DisplayItemTreeWidgetToolTip::goneItem()
{
    // These rows follow no dialog: the row stays when its item goes.
    const std::shared_ptr<DisplayItem> blank = findItem(m_root, "Blank");
    blank->removeChild(findItem(m_root, "Blank mesh"), false);
    QVERIFY(itemRowNamed(m_tree, "Blank mesh"));
    QVERIFY(!itemRowNamed(m_tree, "Blank mesh")->getDisplayItem());
    QCOMPARE(toolTipOf("Blank mesh"), QStringLiteral("The display item no longer exists"));

    // A gone ancestor hides nothing; the one above it still counts.
    QVERIFY(!findItem(m_root, "Blank mesh"));
    m_root->setVisible(false);
    QCOMPARE(toolTipOf("Blank"), tip("Visible", "Not selected", "Hidden by an ancestor"));
}

void tst_DisplayItemTreeWidgetToolTip::noToolTipOutsideDisplayItemRows_data()
{
    QTest::addColumn<bool>("onForeignRow");
    QTest::newRow("empty space") << false;
    QTest::newRow("row of another type") << true;
}

void tst_DisplayItemTreeWidgetToolTip::noToolTipOutsideDisplayItemRows()
{
    QFETCH(bool, onForeignRow);
    const QPoint pos = pointOutsideDisplayItemRows(m_tree, onForeignRow);
    QVERIFY(!dynamic_cast<DisplayItemTreeWidgetItem*>(m_tree->itemAt(pos)));
    // A tip shown over a row goes when the mouse rests where no row tells anything.
    QVERIFY(!toolTipOf("Punch").isEmpty());
    QWidget* viewport = m_tree->viewport();
    QHelpEvent event(QEvent::ToolTip, pos, viewport->mapToGlobal(pos));
    QApplication::sendEvent(viewport, &event);
    QTRY_VERIFY(!QToolTip::isVisible());
}

void tst_DisplayItemTreeWidgetToolTip::rowsKeepNoToolTip()
{
    // The tip is made when asked for; the rows' data holds none.
    QVERIFY(!toolTipOf("Punch").isEmpty());
    for (QTreeWidgetItemIterator it(m_tree); *it; ++it) {
        for (int column = 0; column < m_tree->columnCount(); ++column)
            QVERIFY(!(*it)->data(column, Qt::ToolTipRole).isValid());
    }
}

QTEST_MAIN(tst_DisplayItemTreeWidgetToolTip)
#include "tst_displayitemtreewidget_tooltip.moc"
