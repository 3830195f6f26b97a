#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>

#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>

#include "../common/CursorRecordingItem.h"
#include "../common/ReactingHost.h"
#include "../common/TestTree.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

#include <functional>
#include <memory>

using namespace Brennvik;
using namespace Brennvik::Test;

Q_DECLARE_METATYPE(Brennvik::Test::HostReaction)

// The busy cursor while the dialog works through the host's model: seen from
// inside the host's calls, and gone once the work is done, however it ended.
class tst_DisplayModelDialogWaitCursor : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void rebuildShowsWaitCursor();
    void cloneAndComparisonShowWaitCursor();
    void findShowsWaitCursor();
    void noMatchFindShowsWaitCursor();
    void nestedRebuildRestoresCursor_data();
    void nestedRebuildRestoresCursor();
    void hostRemovingEverythingRestoresCursor_data();
    void hostRemovingEverythingRestoresCursor();

private:
    void setModel();
    void verifyAllWait(const CursorLog& log);

    std::unique_ptr<DisplayModelDialog> m_dialog;
    std::shared_ptr<CursorLog> m_log;
    std::shared_ptr<CursorRecordingItem> m_root;
    std::shared_ptr<SceneViewModel> m_viewModel;
};

void tst_DisplayModelDialogWaitCursor::init()
{
    QCOMPARE(currentOverrideCursor(), NoOverrideCursor);
    m_log = std::make_shared<CursorLog>();
    m_root = cursorRecordingTree(m_log);
    m_viewModel = makeViewModel(m_root);
    m_dialog = std::make_unique<DisplayModelDialog>(nullptr);
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
}

void tst_DisplayModelDialogWaitCursor::cleanup()
{
    m_dialog.reset();
    m_viewModel.reset();
    m_root.reset();
    // A test that failed halfway must not leave its cursor to the next one.
    while (QGuiApplication::overrideCursor())
        QGuiApplication::restoreOverrideCursor();
}

void tst_DisplayModelDialogWaitCursor::setModel()
{
    m_dialog->setViewModel(m_viewModel);
    m_dialog->m_displayItemTreeWidget->expandAll();
}

void tst_DisplayModelDialogWaitCursor::verifyAllWait(const CursorLog& log)
{
    QVERIFY2(!log.isEmpty(), "the host was not asked");
    for (int shape : log)
        QCOMPARE(shape, int(Qt::WaitCursor));
    QCOMPARE(currentOverrideCursor(), NoOverrideCursor);
}

void tst_DisplayModelDialogWaitCursor::rebuildShowsWaitCursor()
{
    m_log->clear();
    setModel();
    verifyAllWait(*m_log);
    QCOMPARE(m_dialog->m_displayItemTreeWidget->topLevelItemCount(), 1);
}

void tst_DisplayModelDialogWaitCursor::cloneAndComparisonShowWaitCursor()
{
    setModel();
    m_log->clear();
    // Clone mode clones the view model, builds the clone's tree and compares
    // it with the original (visibility of every row on both sides).
    QTest::mouseClick(m_dialog->m_useCloneCheckBox, Qt::LeftButton);
    QVERIFY(m_dialog->m_useCloneCheckBox->isChecked());
    verifyAllWait(*m_log);

    // Switching it off only drops the clone's tree: the host may not be
    // asked at all, and no cursor is left behind.
    m_log->clear();
    QTest::mouseClick(m_dialog->m_useCloneCheckBox, Qt::LeftButton);
    QVERIFY(!m_dialog->m_useCloneCheckBox->isChecked());
    for (int shape : qAsConst(*m_log))
        QCOMPARE(shape, int(Qt::WaitCursor));
    QCOMPARE(currentOverrideCursor(), NoOverrideCursor);
}

void tst_DisplayModelDialogWaitCursor::findShowsWaitCursor()
{
    findItem(m_root, "item 1")->setDisplayProperty("note", "wanted");
    setModel();
    QTest::keyClicks(m_dialog->m_searchValueLE, QStringLiteral("wanted"));
    m_log->clear();
    QTest::mouseClick(m_dialog->m_findDisplayItemPB, Qt::LeftButton);
    QVERIFY(m_dialog->m_displayItemTreeWidget->currentItem());
    QCOMPARE(m_dialog->m_displayItemTreeWidget->currentItem()->text(0), QStringLiteral("item 1"));
    verifyAllWait(*m_log);
}

void tst_DisplayModelDialogWaitCursor::noMatchFindShowsWaitCursor()
{
    setModel();
    QTest::keyClicks(m_dialog->m_searchValueLE, QStringLiteral("nowhere"));
    m_log->clear();
    QTest::mouseClick(m_dialog->m_findDisplayItemPB, Qt::LeftButton);
    verifyAllWait(*m_log);
}

// A host that hands the dialog another (or no) view model while the dialog
// builds: the inner rebuild ends with its own cursor, the outer one with its.
void tst_DisplayModelDialogWaitCursor::nestedRebuildRestoresCursor_data()
{
    QTest::addColumn<bool>("emptyModel");
    QTest::newRow("another view model") << false;
    QTest::newRow("no view model") << true;
}

void tst_DisplayModelDialogWaitCursor::nestedRebuildRestoresCursor()
{
    QFETCH(bool, emptyModel);
    const std::shared_ptr<SceneViewModel> other = makeViewModel(buildTree({"other", {{"x"}}}));
    DisplayModelDialog* dialog = m_dialog.get();
    bool reacted = false;
    m_root->reactInNextCall(CursorRecordingItem::Getter::Children, [dialog, other, emptyModel, &reacted] {
        dialog->setViewModel(emptyModel ? std::shared_ptr<ViewModelInterface>() : other);
        reacted = true;
    });
    m_log->clear();
    setModel();
    QVERIFY(reacted);
    verifyAllWait(*m_log);
    QCOMPARE(m_dialog->m_displayItemTreeWidget->topLevelItemCount(), emptyModel ? 0 : 1);
}

// The host's events take the tree away under a rebuild: while the original
// tree is built, or while clone mode compares the two trees.
void tst_DisplayModelDialogWaitCursor::hostRemovingEverythingRestoresCursor_data()
{
    QTest::addColumn<HostReaction>("reaction");
    QTest::addColumn<bool>("cloneMode");
    QTest::newRow("the branch goes") << HostReaction::RemoveBranch << false;
    QTest::newRow("the root is replaced") << HostReaction::ReplaceRoot << false;
    QTest::newRow("clone mode, the branch goes") << HostReaction::RemoveBranch << true;
    QTest::newRow("clone mode, the root is replaced") << HostReaction::ReplaceRoot << true;
}

void tst_DisplayModelDialogWaitCursor::hostRemovingEverythingRestoresCursor()
{
    QFETCH(HostReaction, reaction);
    QFETCH(bool, cloneMode);
    if (cloneMode)
        setModel();
    const std::shared_ptr<DisplayItem> target = findItem(m_root, "item 1 child");
    auto reactingItem = std::dynamic_pointer_cast<CursorRecordingItem>(findItem(m_root, "item 1"));
    QVERIFY(target && reactingItem);
    SceneDisplayModel& model = m_viewModel->displayModel();
    bool reacted = false;
    // The clone mode rebuild builds only the clone's tree, and then compares
    // the visibility of every row on both sides.
    const auto getter = cloneMode ? CursorRecordingItem::Getter::Visibility : CursorRecordingItem::Getter::Children;
    reactingItem->reactInNextCall(getter, [&model, target, reaction, &reacted] {
        applyHostReaction(reaction, target, model);
        reacted = true;
    });
    m_log->clear();

    if (cloneMode)
        QTest::mouseClick(m_dialog->m_useCloneCheckBox, Qt::LeftButton);
    else
        setModel();
    QVERIFY(reacted);
    verifyAllWait(*m_log);
}

QTEST_MAIN(tst_DisplayModelDialogWaitCursor)
#include "tst_displaymodeldialog_waitcursor.moc"
