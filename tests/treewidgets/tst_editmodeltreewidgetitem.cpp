// The edit-model row is internal to the library; this test builds its source
// in (see CMakeLists.txt) to construct rows directly.
#include <debugmenucontent/treewidgets/EditModelTreeWidgetItem.h>

#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>

#include <hostcontract/EditorDisplayModel.h>

#include <referencehost/model/ShellItem.h>

#include "../common/DebugIcons.h"

#include <QTest>
#include <QTreeWidget>

#include <memory>

using namespace Brennvik;
using Brennvik::Test::debugIconName;

namespace {

// An edit primitive that is also a shell.
class ShellPrimitive : public EditorDisplayItem, public ShellItem
{
public:
    ShellPrimitive(std::string name, EditorDisplayUpdateViewsInterface* updater)
        : EditorDisplayItem(name, updater)
        , ShellItem("shell item " + name, "Tool", "Upper die")
    {
    }
};

QStringList paneTexts(QTreeWidget* pane)
{
    QStringList texts;
    for (int i = 0; i < pane->topLevelItemCount(); ++i)
        texts << pane->topLevelItem(i)->text(0) + QLatin1Char('=') + pane->topLevelItem(i)->text(1);
    return texts;
}

} // namespace

class tst_EditModelTreeWidgetItem : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void rowType();
    void indexColumn_data();
    void indexColumn();
    void rowText();
    void shellPrimitiveText();
    void iconFollowsVisibility_data();
    void iconFollowsVisibility();
    void toggleVisibilitySwitchesIconAndTellsDialog();
    void toggleSelectionChangesOnlySelection();
    void unselectablePrimitiveKeepsSelection();
    void goneItemTogglesDoNothing();
    void rowDoesNotKeepItsItemAlive();

private:
    QTreeWidget* m_tree = nullptr;
    EditorDisplayModel* m_editor = nullptr;
};

void tst_EditModelTreeWidgetItem::init()
{
    m_tree = new QTreeWidget;
    m_tree->setColumnCount(2);
    m_editor = new EditorDisplayModel;
}

void tst_EditModelTreeWidgetItem::cleanup()
{
    delete m_tree;
    m_tree = nullptr;
    delete m_editor;
    m_editor = nullptr;
}

void tst_EditModelTreeWidgetItem::rowType()
{
    auto* row = new EditModelTreeWidgetItem(m_tree, m_editor->addEditModelPrimitive("Pick point"), nullptr);
    QCOMPARE(row->type(), 1000);
    QCOMPARE(m_tree->topLevelItem(0), row);
    auto* child = new EditModelTreeWidgetItem(row, m_editor->addEditModelPrimitive("Guide"), nullptr, 0);
    QCOMPARE(child->type(), 1000);
    QCOMPARE(row->child(0), child);
    auto* second = new EditModelTreeWidgetItem(row, m_editor->addEditModelPrimitive("Plane"), nullptr, 1);
    QCOMPARE(row->child(1), second);
}

void tst_EditModelTreeWidgetItem::indexColumn_data()
{
    QTest::addColumn<bool>("topLevel");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("expected");
    QTest::newRow("top-level row") << true << -1 << QString();
    QTest::newRow("child with index 2") << false << 2 << "2";
    QTest::newRow("child with index 0") << false << 0 << "0";
    QTest::newRow("child with index 1234567") << false << 1234567 << "1234567";
    QTest::newRow("child without index") << false << -1 << QString();
}

void tst_EditModelTreeWidgetItem::indexColumn()
{
    QFETCH(bool, topLevel);
    QFETCH(int, index);
    QFETCH(QString, expected);

    auto* top = new EditModelTreeWidgetItem(m_tree, m_editor->addEditModelPrimitive("Top"), nullptr);
    QTreeWidgetItem* row = top;
    if (!topLevel)
        row = new EditModelTreeWidgetItem(top, m_editor->addEditModelPrimitive("Child"), nullptr, index);
    QCOMPARE(row->text(1), expected);
    QVERIFY(top->text(1).isEmpty());
}

void tst_EditModelTreeWidgetItem::rowText()
{
    auto primitive = m_editor->addEditModelPrimitive("Cutting plane");
    auto* row = new EditModelTreeWidgetItem(m_tree, primitive, nullptr);
    QCOMPARE(row->text(0), QStringLiteral("Cutting plane"));
    QCOMPARE(row->getEditorDisplayItem(), primitive);
}

void tst_EditModelTreeWidgetItem::shellPrimitiveText()
{
    auto primitive = std::make_shared<ShellPrimitive>("Die face", m_editor);
    auto* row = new EditModelTreeWidgetItem(m_tree, primitive, nullptr);
    QCOMPARE(row->text(0),
             QStringLiteral("Die face [") + QString::fromStdString(primitive->getShellTypeAndNameAsString())
                 + QStringLiteral("]"));
    QCOMPARE(row->text(0), QStringLiteral("Die face [Tool: Upper die]"));
}

void tst_EditModelTreeWidgetItem::iconFollowsVisibility_data()
{
    QTest::addColumn<bool>("visible");
    QTest::addColumn<QString>("icon");
    QTest::newRow("visible") << true << "visible";
    QTest::newRow("not visible") << false << "not_visible";
}

void tst_EditModelTreeWidgetItem::iconFollowsVisibility()
{
    QFETCH(bool, visible);
    QFETCH(QString, icon);
    auto primitive = m_editor->addEditModelPrimitive("Pick point");
    primitive->setIsVisible(visible);
    auto* row = new EditModelTreeWidgetItem(m_tree, primitive, nullptr);
    QCOMPARE(debugIconName(row->icon(0)), icon);
    QVERIFY(row->icon(1).isNull());
}

void tst_EditModelTreeWidgetItem::toggleVisibilitySwitchesIconAndTellsDialog()
{
    DisplayModelDialog dialog(nullptr);
    QTreeWidget* tree = dialog.m_displayItemTreeWidget;
    auto primitive = m_editor->addEditModelPrimitive("Pick point");
    primitive->setProperties({{"position", "(0, 0, 0)"}});
    auto* row = new EditModelTreeWidgetItem(tree, primitive, &dialog);
    tree->setCurrentItem(row);
    QCOMPARE(paneTexts(dialog.m_displayItemProperties), QStringList{"position=(0, 0, 0)"});

    // Edit primitives raise no events: the panes show the change only when the row tells the dialog.
    primitive->setProperties({{"position", "(1, 0, 0)"}});
    QCOMPARE(paneTexts(dialog.m_displayItemProperties), QStringList{"position=(0, 0, 0)"});

    row->toggleVisibility();
    QVERIFY(!primitive->isVisible());
    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("not_visible"));
    QCOMPARE(m_editor->viewUpdateCount(), 1);
    QCOMPARE(paneTexts(dialog.m_displayItemProperties), QStringList{"position=(1, 0, 0)"});
    QCOMPARE(dialog.m_businessObjectProperties->topLevelItemCount(), 0);

    row->toggleVisibility();
    QVERIFY(primitive->isVisible());
    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("visible"));
    QCOMPARE(m_editor->viewUpdateCount(), 2);

    // A row that is not current leaves the panes alone.
    auto other = m_editor->addEditModelPrimitive("Other");
    other->setProperties({{"other", "1"}});
    auto* otherRow = new EditModelTreeWidgetItem(tree, other, &dialog);
    otherRow->toggleVisibility();
    QVERIFY(!other->isVisible());
    QCOMPARE(paneTexts(dialog.m_displayItemProperties), QStringList{"position=(1, 0, 0)"});

    // Without a dialog only the primitive, the icon and the views change.
    auto lonely = m_editor->addEditModelPrimitive("Lonely");
    auto* lonelyRow = new EditModelTreeWidgetItem(m_tree, lonely, nullptr);
    lonelyRow->toggleVisibility();
    QVERIFY(!lonely->isVisible());
    QCOMPARE(debugIconName(lonelyRow->icon(0)), QStringLiteral("not_visible"));
    QCOMPARE(m_editor->viewUpdateCount(), 4);
}

void tst_EditModelTreeWidgetItem::toggleSelectionChangesOnlySelection()
{
    DisplayModelDialog dialog(nullptr);
    QTreeWidget* tree = dialog.m_displayItemTreeWidget;
    auto primitive = m_editor->addEditModelPrimitive("Pick point");
    primitive->setProperties({{"selected", "no"}});
    auto* row = new EditModelTreeWidgetItem(tree, primitive, &dialog);
    tree->setCurrentItem(row);
    primitive->setProperties({{"selected", "yes"}});
    const QString iconBefore = debugIconName(row->icon(0));

    row->toggleSelection();
    QVERIFY(primitive->isSelected());
    QVERIFY(primitive->isVisible());
    QCOMPARE(debugIconName(row->icon(0)), iconBefore);
    QCOMPARE(m_editor->viewUpdateCount(), 0);
    // The dialog was not told.
    QCOMPARE(paneTexts(dialog.m_displayItemProperties), QStringList{"selected=no"});

    row->toggleSelection();
    QVERIFY(!primitive->isSelected());
    QCOMPARE(m_editor->viewUpdateCount(), 0);
}

void tst_EditModelTreeWidgetItem::unselectablePrimitiveKeepsSelection()
{
    auto primitive = m_editor->addEditModelPrimitive("Pick point");
    primitive->setIsSelected(true);
    primitive->setSelectable(false);
    auto* row = new EditModelTreeWidgetItem(m_tree, primitive, nullptr);
    row->toggleSelection();
    QVERIFY(primitive->isSelected());

    primitive->setIsSelected(false);
    row->toggleSelection();
    QVERIFY(!primitive->isSelected());
}

void tst_EditModelTreeWidgetItem::goneItemTogglesDoNothing()
{
    DisplayModelDialog dialog(nullptr);
    auto primitive = m_editor->addEditModelPrimitive("Pick point");
    auto* row = new EditModelTreeWidgetItem(dialog.m_displayItemTreeWidget, primitive, &dialog);
    dialog.m_displayItemTreeWidget->setCurrentItem(row);
    m_editor->clear();
    primitive.reset();
    QVERIFY(!row->getEditorDisplayItem());

    const QString iconBefore = debugIconName(row->icon(0));
    row->toggleVisibility();
    row->toggleSelection();
    QCOMPARE(debugIconName(row->icon(0)), iconBefore);
    QCOMPARE(m_editor->viewUpdateCount(), 0);

    // A row made for a primitive that has already gone shows no name and is not drawn.
    auto* late = new EditModelTreeWidgetItem(m_tree, std::shared_ptr<EditorDisplayItem>(), nullptr);
    QVERIFY(late->text(0).isEmpty());
    QCOMPARE(debugIconName(late->icon(0)), QStringLiteral("not_visible"));
}

void tst_EditModelTreeWidgetItem::rowDoesNotKeepItsItemAlive()
{
    auto primitive = m_editor->addEditModelPrimitive("Pick point");
    std::weak_ptr<EditorDisplayItem> weak = primitive;
    auto* row = new EditModelTreeWidgetItem(m_tree, primitive, nullptr);
    m_editor->clear();
    primitive.reset();
    QVERIFY(weak.expired());
    QVERIFY(!row->getEditorDisplayItem());
}

QTEST_MAIN(tst_EditModelTreeWidgetItem)
#include "tst_editmodeltreewidgetitem.moc"
