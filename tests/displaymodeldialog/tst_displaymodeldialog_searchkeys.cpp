#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>

#include <referencehost/model/SceneViewModel.h>

#include "../common/ContextMenuDriver.h"
#include "../common/ShownWindow.h"
#include "../common/TestTree.h"

#include <QApplication>
#include <QComboBox>
#include <QFontMetrics>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPalette>
#include <QPushButton>
#include <QTest>
#include <QToolTip>
#include <QTreeWidget>

#include <memory>

using namespace Brennvik;
using namespace Brennvik::Test;

namespace {

const QString NoMatchToolTip = QStringLiteral("no further match below the current row");

// root, then a, b and c; a and c carry the searched value, b does not.
std::shared_ptr<SceneViewModel> searchModel()
{
    auto root = buildTree({"root", {{"a"}, {"b"}, {"c"}}});
    findItem(root, "a")->setDisplayProperty("note", "wanted");
    findItem(root, "c")->setDisplayProperty("note", "wanted too");
    return makeViewModel(root);
}

} // namespace

// The search bar and the dialog's keys as a user works them: Enter and F3 in
// the search, Ctrl+F to get there, a visible mark when nothing further
// matches, and Escape that leaves the tool dialog open.
class tst_DisplayModelDialogSearchKeys : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void enterInSearchFieldFindsNext_data();
    void enterInSearchFieldFindsNext();
    void enterElsewhereRunsUpdate_data();
    void enterElsewhereRunsUpdate();
    void defaultButtonStaysUpdate();
    void f3FindsNext_data();
    void f3FindsNext();
    void ctrlFGoesToSearchField();
    void searchFieldFitsAnAddress();

    void noMatchMarksSearchField();
    void noMatchMarkGoesWhenTextChanges();
    void noMatchMarkGoesWithNextFoundRow();
    void noMatchNeedsNoMessageBox();
    void emptySearchLeavesNoMark();

    void escapeKeepsDialogOpen_data();
    void escapeKeepsDialogOpen();
    void escapeClosesComboPopupOnly();
    void escapeClosesContextMenuOnly();

private:
    void typeSearchValue(const QString& text);
    QString currentRowText() const;
    QString toolTipShown(QWidget* widget);
    bool searchFieldMarked() const;

    std::unique_ptr<DisplayModelDialog> m_dialog;
    std::shared_ptr<SceneViewModel> m_viewModel;
    QColor m_normalBase;
};

void tst_DisplayModelDialogSearchKeys::init()
{
    m_dialog = std::make_unique<DisplayModelDialog>(nullptr);
    m_viewModel = searchModel();
    m_dialog->setViewModel(m_viewModel);
    m_dialog->m_displayItemTreeWidget->expandAll();
    m_normalBase = m_dialog->m_searchValueLE->palette().color(QPalette::Base);
    // Shortcuts reach only the active window.
    QVERIFY(showActive(*m_dialog));
}

void tst_DisplayModelDialogSearchKeys::cleanup()
{
    QToolTip::hideText();
    m_dialog.reset();
    m_viewModel.reset();
}

void tst_DisplayModelDialogSearchKeys::typeSearchValue(const QString& text)
{
    m_dialog->m_searchValueLE->setFocus(Qt::MouseFocusReason);
    QTest::keyClicks(m_dialog->m_searchValueLE, text);
}

QString tst_DisplayModelDialogSearchKeys::currentRowText() const
{
    const QTreeWidgetItem* row = m_dialog->m_displayItemTreeWidget->currentItem();
    return row ? row->text(0) : QStringLiteral("<none>");
}

// The tool tip a user gets when resting the mouse on \a widget.
QString tst_DisplayModelDialogSearchKeys::toolTipShown(QWidget* widget)
{
    QToolTip::hideText();
    const QPoint pos = widget->rect().center();
    QHelpEvent event(QEvent::ToolTip, pos, widget->mapToGlobal(pos));
    QApplication::sendEvent(widget, &event);
    return QToolTip::isVisible() ? QToolTip::text() : QString();
}

bool tst_DisplayModelDialogSearchKeys::searchFieldMarked() const
{
    return m_dialog->m_searchValueLE->palette().color(QPalette::Base) != m_normalBase;
}

void tst_DisplayModelDialogSearchKeys::enterInSearchFieldFindsNext_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
}

void tst_DisplayModelDialogSearchKeys::enterInSearchFieldFindsNext()
{
    QFETCH(int, key);
    const Qt::KeyboardModifiers modifiers = key == Qt::Key_Enter ? Qt::KeypadModifier : Qt::NoModifier;
    typeSearchValue(QStringLiteral("wanted"));

    QTest::keyClick(m_dialog->m_searchValueLE, Qt::Key(key), modifiers);
    QCOMPARE(currentRowText(), QStringLiteral("a"));
    QTest::keyClick(m_dialog->m_searchValueLE, Qt::Key(key), modifiers);
    QCOMPARE(currentRowText(), QStringLiteral("c"));
    // Not "Update" as well.
    QCOMPARE(m_dialog->m_displayItemCountLE->text(), QString());
    QCOMPARE(QApplication::focusWidget(), m_dialog->m_searchValueLE);
}

void tst_DisplayModelDialogSearchKeys::enterElsewhereRunsUpdate_data()
{
    QTest::addColumn<QString>("focusName");
    QTest::newRow("display item tree") << QStringLiteral("m_displayItemTreeWidget");
    QTest::newRow("item count field") << QStringLiteral("m_displayItemCountLE");
    QTest::newRow("property pane") << QStringLiteral("m_displayItemProperties");
}

void tst_DisplayModelDialogSearchKeys::enterElsewhereRunsUpdate()
{
    QFETCH(QString, focusName);
    typeSearchValue(QStringLiteral("wanted"));
    QWidget* focus = focusChild(*m_dialog, focusName);
    QVERIFY2(focus, qPrintable(focusName));

    QTest::keyClick(focus, Qt::Key_Return);
    QCOMPARE(m_dialog->m_displayItemCountLE->text(), QStringLiteral("4"));
    QCOMPARE(currentRowText(), QStringLiteral("<none>"));
}

void tst_DisplayModelDialogSearchKeys::defaultButtonStaysUpdate()
{
    typeSearchValue(QStringLiteral("wanted"));
    QTest::keyClick(m_dialog->m_searchValueLE, Qt::Key_Return);
    QVERIFY(m_dialog->m_displayItemCountPB->isDefault());
    QVERIFY(!m_dialog->m_findDisplayItemPB->isDefault());
}

void tst_DisplayModelDialogSearchKeys::f3FindsNext_data()
{
    QTest::addColumn<QString>("focusName");
    QTest::newRow("search field") << QStringLiteral("m_searchValueLE");
    QTest::newRow("display item tree") << QStringLiteral("m_displayItemTreeWidget");
    QTest::newRow("search criteria") << QStringLiteral("m_searchTypeCB");
}

void tst_DisplayModelDialogSearchKeys::f3FindsNext()
{
    QFETCH(QString, focusName);
    typeSearchValue(QStringLiteral("wanted"));
    QWidget* focus = focusChild(*m_dialog, focusName);
    QVERIFY2(focus, qPrintable(focusName));

    QTest::keyClick(focus, Qt::Key_F3);
    QCOMPARE(currentRowText(), QStringLiteral("a"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F3);
    QCOMPARE(currentRowText(), QStringLiteral("c"));
}

void tst_DisplayModelDialogSearchKeys::ctrlFGoesToSearchField()
{
    typeSearchValue(QStringLiteral("wanted"));
    m_dialog->m_displayItemTreeWidget->setFocus(Qt::MouseFocusReason);
    QCOMPARE(QApplication::focusWidget(), m_dialog->m_displayItemTreeWidget);

    QTest::keyClick(m_dialog->m_displayItemTreeWidget, Qt::Key_F, Qt::ControlModifier);
    QCOMPARE(QApplication::focusWidget(), m_dialog->m_searchValueLE);
    QCOMPARE(m_dialog->m_searchValueLE->selectedText(), QStringLiteral("wanted"));
    // Typing replaces the old value.
    QTest::keyClicks(m_dialog->m_searchValueLE, QStringLiteral("new"));
    QCOMPARE(m_dialog->m_searchValueLE->text(), QStringLiteral("new"));
}

void tst_DisplayModelDialogSearchKeys::searchFieldFitsAnAddress()
{
    const QLineEdit* field = m_dialog->m_searchValueLE;
    const int addressWidth = field->fontMetrics().horizontalAdvance(QStringLiteral("0x555981c46ca0"));
    QVERIFY2(field->width() > addressWidth,
             qPrintable(QStringLiteral("%1 px for an address of %2 px").arg(field->width()).arg(addressWidth)));
    QVERIFY(field->minimumWidth() > addressWidth);
}

void tst_DisplayModelDialogSearchKeys::noMatchMarksSearchField()
{
    typeSearchValue(QStringLiteral("wanted"));
    QCOMPARE(toolTipShown(m_dialog->m_searchValueLE), QString());
    QTest::mouseClick(m_dialog->m_findDisplayItemPB, Qt::LeftButton);
    QTest::mouseClick(m_dialog->m_findDisplayItemPB, Qt::LeftButton);
    QCOMPARE(currentRowText(), QStringLiteral("c"));
    QVERIFY(!searchFieldMarked());

    QTest::mouseClick(m_dialog->m_findDisplayItemPB, Qt::LeftButton);
    // The tree stays as it was; the field says why.
    QCOMPARE(currentRowText(), QStringLiteral("c"));
    QVERIFY(searchFieldMarked());
    QCOMPARE(toolTipShown(m_dialog->m_searchValueLE), NoMatchToolTip);
}

void tst_DisplayModelDialogSearchKeys::noMatchMarkGoesWhenTextChanges()
{
    typeSearchValue(QStringLiteral("nowhere"));
    QTest::keyClick(m_dialog->m_searchValueLE, Qt::Key_Return);
    QVERIFY(searchFieldMarked());

    QTest::keyClick(m_dialog->m_searchValueLE, Qt::Key_Backspace);
    QVERIFY(!searchFieldMarked());
    QCOMPARE(m_dialog->m_searchValueLE->palette().color(QPalette::Base), m_normalBase);
    QCOMPARE(toolTipShown(m_dialog->m_searchValueLE), QString());
}

void tst_DisplayModelDialogSearchKeys::noMatchMarkGoesWithNextFoundRow()
{
    typeSearchValue(QStringLiteral("wanted"));
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(m_dialog->m_searchValueLE, Qt::Key_Return);
    QVERIFY(searchFieldMarked());

    // The user goes back up and searches on with the same text.
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                      tree->visualItemRect(tree->topLevelItem(0)).center());
    QCOMPARE(currentRowText(), QStringLiteral("root"));
    QTest::mouseClick(m_dialog->m_findDisplayItemPB, Qt::LeftButton);
    QCOMPARE(currentRowText(), QStringLiteral("a"));
    QVERIFY(!searchFieldMarked());
    QCOMPARE(toolTipShown(m_dialog->m_searchValueLE), QString());
}

void tst_DisplayModelDialogSearchKeys::noMatchNeedsNoMessageBox()
{
    typeSearchValue(QStringLiteral("nowhere"));
    QTest::keyClick(m_dialog->m_searchValueLE, Qt::Key_Return);
    QVERIFY(searchFieldMarked());
    for (QWidget* window : QApplication::topLevelWidgets())
        QVERIFY(!window->isVisible() || window == m_dialog.get());
    QCOMPARE(QApplication::activeWindow(), m_dialog.get());
}

void tst_DisplayModelDialogSearchKeys::emptySearchLeavesNoMark()
{
    QTest::mouseClick(m_dialog->m_findDisplayItemPB, Qt::LeftButton);
    QVERIFY(!searchFieldMarked());
    QCOMPARE(toolTipShown(m_dialog->m_searchValueLE), QString());
}

void tst_DisplayModelDialogSearchKeys::escapeKeepsDialogOpen_data()
{
    QTest::addColumn<QString>("focusName");
    QTest::newRow("display item tree") << QStringLiteral("m_displayItemTreeWidget");
    QTest::newRow("search field") << QStringLiteral("m_searchValueLE");
    QTest::newRow("search criteria") << QStringLiteral("m_searchTypeCB");
    QTest::newRow("Update button") << QStringLiteral("m_displayItemCountPB");
    QTest::newRow("Clone check box") << QStringLiteral("m_useCloneCheckBox");
    QTest::newRow("property pane") << QStringLiteral("m_businessObjectProperties");
}

void tst_DisplayModelDialogSearchKeys::escapeKeepsDialogOpen()
{
    QFETCH(QString, focusName);
    QWidget* focus = focusChild(*m_dialog, focusName);
    QVERIFY2(focus, qPrintable(focusName));

    QTest::keyClick(focus, Qt::Key_Escape);
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), int(QDialog::Rejected));
    // Closing the window still works.
    QVERIFY(m_dialog->close());
    QVERIFY(!m_dialog->isVisible());
}

void tst_DisplayModelDialogSearchKeys::escapeClosesComboPopupOnly()
{
    QComboBox* combo = m_dialog->m_searchTypeCB;
    combo->setFocus(Qt::MouseFocusReason);
    combo->showPopup();
    QWidget* popup = combo->view()->window();
    QVERIFY(QTest::qWaitForWindowExposed(popup));

    QTest::keyClick(combo->view(), Qt::Key_Escape);
    QTRY_VERIFY(!popup->isVisible());
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(combo->currentIndex(), 0);
}

void tst_DisplayModelDialogSearchKeys::escapeClosesContextMenuOnly()
{
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    const QPoint pos = tree->visualItemRect(tree->topLevelItem(0)).center();
    // No entry is chosen: the driver closes the menu with Escape.
    const ContextMenuVisit visit = rightClick(tree, pos, QStringLiteral("<no such entry>"));
    QVERIFY(visit.opened);
    QVERIFY(!visit.triggered);
    QVERIFY(m_dialog->isVisible());
}

QTEST_MAIN(tst_DisplayModelDialogSearchKeys)
#include "tst_displaymodeldialog_searchkeys.moc"
