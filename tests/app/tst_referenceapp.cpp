// The reference application as its user meets it: the main window, its Debug
// menu, the dialogs it opens and the 3D view that draws what they change.
#include "ContextMenuDriver.h"

#include <ReferenceMainWindow.h>
#include <SceneView3D.h>

#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/DisplayItemInterface.h>

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SampleModel.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneDrawAreaPresenter.h>
#include <referencehost/model/SceneViewModel.h>

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QTreeWidget>
#include <QtTest>

#include <memory>

using namespace Brennvik;

namespace {

QAction* debugMenuAction(ReferenceMainWindow& window, const char* objectName)
{
    auto* debugMenu = window.menuBar()->findChild<QMenu*>(QStringLiteral("debugMenu"));
    return debugMenu ? debugMenu->findChild<QAction*>(QString::fromLatin1(objectName)) : nullptr;
}

// The first row of \a tree whose column-0 text starts with \a text, expanded into view.
QTreeWidgetItem* findRow(QTreeWidget* tree, const QString& text)
{
    for (QTreeWidgetItemIterator it(tree); *it; ++it) {
        if ((*it)->text(0).startsWith(text)) {
            for (QTreeWidgetItem* up = (*it)->parent(); up; up = up->parent())
                up->setExpanded(true);
            tree->scrollToItem(*it);
            return *it;
        }
    }
    return nullptr;
}

} // namespace

class TestReferenceApp : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void sceneViewDrawsTheSample();
    void debugMenuOpensTheDisplayModelDialog();
    void hidingASubtreeFromTheDialogRedrawsTheSceneView();
    void selectingFromTheDialogOutlinesInTheSceneView();
    void deletingFromTheDialogRemovesFromTreeAndSceneView();
    void drawAreaFollowsItsPresenter();

private:
    std::shared_ptr<SceneViewModel> m_viewModel;
    std::unique_ptr<ReferenceMainWindow> m_window;
};

void TestReferenceApp::init()
{
    m_viewModel = buildSampleViewModel();
    m_window = std::make_unique<ReferenceMainWindow>(m_viewModel);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void TestReferenceApp::cleanup()
{
    m_window.reset();
    m_viewModel.reset();
}

void TestReferenceApp::sceneViewDrawsTheSample()
{
    SceneView3D* view = m_window->sceneView();
    QVERIFY(view->isVisible());
    QCOMPARE(view->viewModel(), std::static_pointer_cast<ViewModelInterface>(m_viewModel));
    const QStringList drawn = view->drawnItemNames();
    QCOMPARE(view->drawnItemCount(), drawn.size());
    // Shown: the blank and the faces of a visible tool; not shown: the hidden
    // binder and what lies below the hidden group of boundary curves.
    QVERIFY(drawn.contains(QStringLiteral("Blank")));
    QVERIFY(drawn.contains(QStringLiteral("Punch")));
    QVERIFY(!drawn.contains(QStringLiteral("Binder")));
    QVERIFY(!drawn.contains(QStringLiteral("Outer contour")));
    QCOMPARE(view->selectedItemCount(), 1); // the blank
    // Painting a frame is the application's first job.
    const QImage frame = view->grab().toImage();
    QVERIFY(!frame.isNull());
    QVERIFY(frame.pixelColor(frame.width() / 2, frame.height() / 2) != frame.pixelColor(2, 2));
}

void TestReferenceApp::debugMenuOpensTheDisplayModelDialog()
{
    QAction* open = debugMenuAction(*m_window, "openDisplayModelDialogAction");
    QVERIFY(open);
    open->trigger();
    const QList<QWidget*> dialogs = m_window->openDialogs();
    QCOMPARE(dialogs.size(), 1);
    auto* dialog = qobject_cast<QDialog*>(dialogs.first());
    QVERIFY(dialog);
    QVERIFY(QTest::qWaitForWindowExposed(dialog));
    auto* tree = dialog->findChild<DisplayItemTreeWidget*>(QStringLiteral("m_displayItemTreeWidget"));
    QVERIFY(tree);
    QCOMPARE(tree->topLevelItem(0)->text(0), QStringLiteral("Forming simulation"));
    // Opened again, the same dialog comes back.
    open->trigger();
    QCOMPARE(m_window->openDialogs(), dialogs);
}

void TestReferenceApp::hidingASubtreeFromTheDialogRedrawsTheSceneView()
{
    debugMenuAction(*m_window, "openDisplayModelDialogAction")->trigger();
    auto* tree = m_window->openDialogs().first()->findChild<DisplayItemTreeWidget*>(QStringLiteral("m_displayItemTreeWidget"));
    QVERIFY(tree);
    SceneView3D* view = m_window->sceneView();
    const int before = view->drawnItemCount();
    const int updatesBefore = m_viewModel->displayModel().visibilityUpdateCount()
        + m_viewModel->displayModel().totalDisplayUpdateCount();

    QTreeWidgetItem* process = findRow(tree, QStringLiteral("Process"));
    QVERIFY(process);
    const auto visit = Test::rightClick(tree, tree->visualItemRect(process).center(), QStringLiteral("Make subtree invisible"));
    QVERIFY(visit.triggered);

    QVERIFY(m_viewModel->displayModel().visibilityUpdateCount() + m_viewModel->displayModel().totalDisplayUpdateCount()
            > updatesBefore);
    QVERIFY(view->drawnItemCount() < before);
    const QStringList drawn = view->drawnItemNames();
    QVERIFY(drawn.contains(QStringLiteral("Blank")));
    QVERIFY(!drawn.contains(QStringLiteral("Punch")));
    QVERIFY(!drawn.contains(QStringLiteral("Trim line 1")));

    // And back.
    process = findRow(tree, QStringLiteral("Process"));
    QVERIFY(Test::rightClick(tree, tree->visualItemRect(process).center(), QStringLiteral("Make subtree visible")).triggered);
    QVERIFY(view->drawnItemNames().contains(QStringLiteral("Punch")));
    // Visible now also what the sample had hidden below the process.
    QVERIFY(view->drawnItemNames().contains(QStringLiteral("Binder")));
    QVERIFY(view->drawnItemCount() > before);
}

void TestReferenceApp::selectingFromTheDialogOutlinesInTheSceneView()
{
    debugMenuAction(*m_window, "openDisplayModelDialogAction")->trigger();
    auto* tree = m_window->openDialogs().first()->findChild<DisplayItemTreeWidget*>(QStringLiteral("m_displayItemTreeWidget"));
    QTreeWidgetItem* row = findRow(tree, QStringLiteral("Drawbead 3"));
    QVERIFY(row);
    QCOMPARE(m_window->sceneView()->selectedItemCount(), 1);
    QVERIFY(Test::rightClick(tree, tree->visualItemRect(row).center(), QStringLiteral("&Select/deselect display item")).triggered);
    QCOMPARE(m_window->sceneView()->selectedItemCount(), 2);
}

void TestReferenceApp::deletingFromTheDialogRemovesFromTreeAndSceneView()
{
    debugMenuAction(*m_window, "openDisplayModelDialogAction")->trigger();
    auto* tree = m_window->openDialogs().first()->findChild<DisplayItemTreeWidget*>(QStringLiteral("m_displayItemTreeWidget"));
    QTreeWidgetItem* row = findRow(tree, QStringLiteral("Section cuts"));
    QVERIFY(row);
    const int before = m_window->sceneView()->drawnItemCount();
    QVERIFY(Test::rightClick(tree, tree->visualItemRect(row).center(), QStringLiteral("&Delete display item")).triggered);

    QVERIFY(!findRow(tree, QStringLiteral("Section cuts")));
    QCOMPARE(m_window->sceneView()->drawnItemCount(), before - 3);
    // The main window's own tree is rebuilt once the event is done.
    QTRY_VERIFY(!findRow(m_window->displayItemTree(), QStringLiteral("Section cuts")));
}

void TestReferenceApp::drawAreaFollowsItsPresenter()
{
    SceneView3D* view = m_window->sceneView();
    const int original = view->drawnItemCount();
    std::shared_ptr<SceneViewModel> clone = m_viewModel->cloneSceneViewModel(false);
    m_window->drawAreaPresenter()->showViewModel(clone);
    QCOMPARE(view->viewModel(), std::static_pointer_cast<ViewModelInterface>(clone));
    QCOMPARE(view->drawnItemCount(), original);

    // Updates of the clone shown repaint the view; the original's do not.
    clone->displayModel().rootDisplayItem()->findByDisplayName("Part")->setVisible(false);
    clone->displayModel().doVisibilityUpdate();
    const int withoutPart = view->drawnItemCount();
    QVERIFY(withoutPart < original);
    m_viewModel->displayModel().rootDisplayItem()->findByDisplayName("Results")->setVisible(false);
    m_viewModel->displayModel().doVisibilityUpdate();
    QCOMPARE(view->drawnItemCount(), withoutPart);

    // Handed back, the view draws the original again and the clone no longer reaches it.
    m_window->drawAreaPresenter()->showViewModel(m_viewModel);
    QVERIFY(view->drawnItemCount() < original);
    QVERIFY(!view->drawnItemNames().contains(QStringLiteral("MP 01")));
    const int shown = view->drawnItemCount();
    clone->displayModel().doVisibilityUpdate();
    QCOMPARE(view->drawnItemCount(), shown);
}

QTEST_MAIN(TestReferenceApp)
#include "tst_referenceapp.moc"
