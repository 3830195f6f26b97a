// The reference application as its user meets it: the main window, its Debug
// menu, the dialogs it opens and the 3D view that draws what they change.
#include "DebugMenuAction.h"
#include "ContextMenuDriver.h"
#include "ItemWidgetDriver.h"

#include <ReferenceMainWindow.h>
#include <SceneView3D.h>

#include <debugmenucontent/clonecomparison/DebugCloneDisplayModelDialog.h>
#include <debugmenucontent/displaymodel2d/DisplayModel2DDialog.h>
#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/DisplayItemInterface.h>

#include <referencehost/model/CloneDefect.h>
#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SampleModel.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneDrawAreaPresenter.h>
#include <referencehost/model/SceneViewModel.h>

#include <QAction>
#include <QCheckBox>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QMenu>
#include <QMenuBar>
#include <QTreeWidget>
#include <QtTest>

#include <memory>

using namespace Brennvik;

namespace {

// The first row of \a tree whose column-0 text starts with \a text, expanded
// into view. Rows that the tree makes on demand are made first.
QTreeWidgetItem* findRow(QTreeWidget* tree, const QString& text)
{
    Test::fetchAllRows(tree);
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

class tst_ReferenceApp : public QObject
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
    void cloneModeWithADefectMarksTheRow();
    void showCloneIn3dDrawsTheClone();
    void cloneComparisonReportsTheDefect();
    void pickingAPlotShowsItsTree();
    void plotLabelsAreDrawnInTheSceneView();

    // The executable itself
    void savedModelLoadsBack();
    void malformedModelFileIsRefused();

private:
    std::shared_ptr<SceneViewModel> m_viewModel;
    std::unique_ptr<ReferenceMainWindow> m_window;
};

void tst_ReferenceApp::init()
{
    m_viewModel = buildSampleViewModel();
    m_window = std::make_unique<ReferenceMainWindow>(m_viewModel);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void tst_ReferenceApp::cleanup()
{
    m_window.reset();
    m_viewModel.reset();
}

void tst_ReferenceApp::sceneViewDrawsTheSample()
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

void tst_ReferenceApp::debugMenuOpensTheDisplayModelDialog()
{
    QAction* open = debugMenuAction(*m_window, "openDisplayModelDialogAction");
    QVERIFY(open);
    open->trigger();
    auto* dialog = m_window->findChild<DisplayModelDialog*>();
    QVERIFY(dialog);
    QVERIFY(m_window->openDialogs().contains(dialog));
    const QList<QWidget*> dialogs = m_window->openDialogs();
    QVERIFY(QTest::qWaitForWindowExposed(dialog));
    auto* tree = dialog->findChild<DisplayItemTreeWidget*>(QStringLiteral("m_displayItemTreeWidget"));
    QVERIFY(tree);
    QCOMPARE(tree->topLevelItem(0)->text(0), QStringLiteral("Forming simulation"));
    // Opened again, the same dialog comes back.
    open->trigger();
    QCOMPARE(m_window->openDialogs(), dialogs);
}

void tst_ReferenceApp::hidingASubtreeFromTheDialogRedrawsTheSceneView()
{
    debugMenuAction(*m_window, "openDisplayModelDialogAction")->trigger();
    auto* tree = m_window->findChild<DisplayModelDialog*>()->findChild<DisplayItemTreeWidget*>(
        QStringLiteral("m_displayItemTreeWidget"));
    QVERIFY(tree);
    SceneView3D* view = m_window->sceneView();
    const int before = view->drawnItemCount();
    const int updatesBefore
        = m_viewModel->displayModel().visibilityUpdateCount() + m_viewModel->displayModel().totalDisplayUpdateCount();

    QTreeWidgetItem* process = findRow(tree, QStringLiteral("Process"));
    QVERIFY(process);
    const auto visit
        = Test::rightClick(tree, tree->visualItemRect(process).center(), QStringLiteral("Make subtree invisible"));
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
    QVERIFY(Test::rightClick(tree, tree->visualItemRect(process).center(), QStringLiteral("Make subtree visible"))
                .triggered);
    QVERIFY(view->drawnItemNames().contains(QStringLiteral("Punch")));
    // Visible now also what the sample had hidden below the process.
    QVERIFY(view->drawnItemNames().contains(QStringLiteral("Binder")));
    QVERIFY(view->drawnItemCount() > before);
}

void tst_ReferenceApp::selectingFromTheDialogOutlinesInTheSceneView()
{
    debugMenuAction(*m_window, "openDisplayModelDialogAction")->trigger();
    auto* tree = m_window->findChild<DisplayModelDialog*>()->findChild<DisplayItemTreeWidget*>(
        QStringLiteral("m_displayItemTreeWidget"));
    QTreeWidgetItem* row = findRow(tree, QStringLiteral("Drawbead 3"));
    QVERIFY(row);
    QCOMPARE(m_window->sceneView()->selectedItemCount(), 1);
    QVERIFY(Test::rightClick(tree, tree->visualItemRect(row).center(), QStringLiteral("&Select/deselect display item"))
                .triggered);
    QCOMPARE(m_window->sceneView()->selectedItemCount(), 2);
}

void tst_ReferenceApp::deletingFromTheDialogRemovesFromTreeAndSceneView()
{
    debugMenuAction(*m_window, "openDisplayModelDialogAction")->trigger();
    auto* tree = m_window->findChild<DisplayModelDialog*>()->findChild<DisplayItemTreeWidget*>(
        QStringLiteral("m_displayItemTreeWidget"));
    QTreeWidgetItem* row = findRow(tree, QStringLiteral("Section cuts"));
    QVERIFY(row);
    QVERIFY(findRow(m_window->displayItemTree(), QStringLiteral("Section cuts")));
    const int before = m_window->sceneView()->drawnItemCount();
    QVERIFY(
        Test::rightClick(tree, tree->visualItemRect(row).center(), QStringLiteral("&Delete display item")).triggered);

    QVERIFY(!findRow(tree, QStringLiteral("Section cuts")));
    QCOMPARE(m_window->sceneView()->drawnItemCount(), before - 3);
    // The main window's own tree is rebuilt once the event is done.
    QTRY_VERIFY(!findRow(m_window->displayItemTree(), QStringLiteral("Section cuts")));
}

void tst_ReferenceApp::drawAreaFollowsItsPresenter()
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

void tst_ReferenceApp::cloneModeWithADefectMarksTheRow()
{
    m_viewModel->setCloneDefects({CloneDefect{CloneDefect::Kind::AddChild, "Trim lines", {}, {}}});
    debugMenuAction(*m_window, "openDisplayModelDialogAction")->trigger();
    auto* dialog = m_window->findChild<DisplayModelDialog*>();
    QVERIFY(dialog);
    auto* useClone = dialog->findChild<QCheckBox*>(QStringLiteral("m_useCloneCheckBox"));
    QVERIFY(useClone && useClone->isEnabled());
    QTest::mouseClick(useClone, Qt::LeftButton, Qt::NoModifier, QPoint(8, useClone->height() / 2));
    QVERIFY(useClone->isChecked());

    auto* cloned = dialog->findChild<DisplayItemTreeWidget*>(QStringLiteral("m_clonedDisplayItemTreeWidget"));
    QVERIFY(cloned);
    QTreeWidgetItem* clonedRow = findRow(cloned, QStringLiteral("Trim lines"));
    QVERIFY(clonedRow);
    QCOMPARE(int(clonedRow->font(0).weight()), int(QFont::Bold));
    QTreeWidgetItem* extra = findRow(cloned, QStringLiteral("Unexpected child"));
    QVERIFY(extra);
    QCOMPARE(int(extra->font(0).weight()), int(QFont::Bold));
    // The original's row stays as it was, and so does a faithful neighbour.
    auto* original = dialog->findChild<DisplayItemTreeWidget*>(QStringLiteral("m_displayItemTreeWidget"));
    QCOMPARE(int(findRow(original, QStringLiteral("Trim lines"))->font(0).weight()), int(QFont().weight()));
    QCOMPARE(int(findRow(cloned, QStringLiteral("Drawbeads"))->font(0).weight()), int(QFont().weight()));
}

void tst_ReferenceApp::showCloneIn3dDrawsTheClone()
{
    m_viewModel->setCloneDefects({CloneDefect{CloneDefect::Kind::DropChild, "Results", {}, {}}});
    debugMenuAction(*m_window, "openDisplayModelDialogAction")->trigger();
    auto* dialog = m_window->findChild<DisplayModelDialog*>();
    auto* useClone = dialog->findChild<QCheckBox*>(QStringLiteral("m_useCloneCheckBox"));
    QTest::mouseClick(useClone, Qt::LeftButton, Qt::NoModifier, QPoint(8, useClone->height() / 2));
    auto* inView = dialog->findChild<QCheckBox*>(QStringLiteral("m_showCloneIn3dCheckBox"));
    QVERIFY(inView && inView->isEnabled());
    SceneView3D* view = m_window->sceneView();
    const int original = view->drawnItemCount();

    QTest::mouseClick(inView, Qt::LeftButton, Qt::NoModifier, QPoint(8, inView->height() / 2));
    QVERIFY(inView->isChecked());
    QVERIFY(view->viewModel() != std::static_pointer_cast<ViewModelInterface>(m_viewModel));
    QVERIFY(view->viewModel());
    // The clone lacks the results: their measurement points are not drawn.
    QVERIFY(view->drawnItemCount() < original);
    QVERIFY(!view->drawnItemNames().contains(QStringLiteral("MP 01")));

    // Hiding the dialog hands the original back to the draw area.
    dialog->hide();
    QCOMPARE(view->viewModel(), std::static_pointer_cast<ViewModelInterface>(m_viewModel));
    QCOMPARE(view->drawnItemCount(), original);
}

void tst_ReferenceApp::cloneComparisonReportsTheDefect()
{
    m_viewModel->setCloneDefects({CloneDefect{CloneDefect::Kind::FlipVisibility, "Punch", {}, {}}});
    debugMenuAction(*m_window, "openCloneComparisonDialogAction")->trigger();
    auto* dialog = m_window->findChild<DebugCloneDisplayModelDialog*>();
    QVERIFY(dialog);
    QVERIFY(m_window->openDialogs().contains(dialog));
    auto* report = dialog->findChild<QPlainTextEdit*>(QStringLiteral("m_outputTextField"));
    QVERIFY(report);
    QVERIFY2(report->toPlainText().contains(QStringLiteral("Visibility differs")), qPrintable(report->toPlainText()));
    QVERIFY(report->toPlainText().contains(QStringLiteral("Punch")));

    // Each opening is a fresh one-shot check: a faithful clone is now reported equal.
    m_viewModel->setCloneDefects({});
    debugMenuAction(*m_window, "openCloneComparisonDialogAction")->trigger();
    QTRY_COMPARE(m_window->findChildren<DebugCloneDisplayModelDialog*>().size(), 1);
    report = m_window->findChild<DebugCloneDisplayModelDialog*>()->findChild<QPlainTextEdit*>(
        QStringLiteral("m_outputTextField"));
    QCOMPARE(report->toPlainText().trimmed(), QStringLiteral("Trees are equal"));
}

void tst_ReferenceApp::pickingAPlotShowsItsTree()
{
    debugMenuAction(*m_window, "openDisplayModel2DDialogAction")->trigger();
    auto* dialog = m_window->findChild<DisplayModel2DDialog*>();
    QVERIFY(dialog);
    QVERIFY(QTest::qWaitForWindowExposed(dialog));
    auto* list = dialog->findChild<QListWidget*>(QStringLiteral("m_plotListWdg"));
    auto* tree = dialog->findChild<QTreeWidget*>(QStringLiteral("m_displayItemTreeWidget"));
    QVERIFY(list && tree);

    // Two process plots, two material generator plots and one label per plot.
    int plots = 0;
    int labels = 0;
    QSet<QString> shown;
    for (int row = 0; row < list->count(); ++row) {
        QListWidgetItem* entry = list->item(row);
        plots += entry->text().startsWith(QStringLiteral("Plot at (")) ? 1 : 0;
        labels += entry->text().startsWith(QStringLiteral("PlotLabel at (")) ? 1 : 0;
        list->scrollToItem(entry);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, list->visualItemRect(entry).center());
        QCOMPARE(list->currentRow(), row);
        QCOMPARE(tree->topLevelItemCount(), 1);
        shown.insert(tree->topLevelItem(0)->text(0));
    }
    QCOMPARE(plots, 4);
    QCOMPARE(labels, 4);
    QCOMPARE(shown,
             (QSet<QString>{QStringLiteral("Press force OP10"), QStringLiteral("Blank holder force"),
                            QStringLiteral("Flow curve DC04"), QStringLiteral("Forming limit curve DC04")}));
}

void tst_ReferenceApp::plotLabelsAreDrawnInTheSceneView()
{
    const QStringList labels = m_window->sceneView()->drawnPlotLabels();
    QCOMPARE(labels.size(), 4);
    QVERIFY(labels.contains(QStringLiteral("Press force OP10")));
    // A clone has no view, so the 3D view draws no plot labels for it.
    m_window->drawAreaPresenter()->showViewModel(m_viewModel->cloneSceneViewModel(false));
    QVERIFY(m_window->sceneView()->drawnPlotLabels().isEmpty());
}

void tst_ReferenceApp::savedModelLoadsBack()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString model = dir.filePath(QStringLiteral("sample.json"));
    const QString shot = dir.filePath(QStringLiteral("shot.png"));
    QProcess save;
    save.setProcessChannelMode(QProcess::MergedChannels);
    save.start(QStringLiteral(BRENNVIK_REFERENCEAPP),
               {QStringLiteral("--save-model"), model, QStringLiteral("--screenshot"), shot});
    QVERIFY(save.waitForFinished(60000));
    QVERIFY2(save.exitStatus() == QProcess::NormalExit && save.exitCode() == 0, save.readAll().constData());
    QVERIFY(QFileInfo(model).size() > 0);

    QProcess load;
    load.setProcessChannelMode(QProcess::MergedChannels);
    load.start(QStringLiteral(BRENNVIK_REFERENCEAPP),
               {QStringLiteral("--model"), model, QStringLiteral("--screenshot"), shot});
    QVERIFY(load.waitForFinished(60000));
    QVERIFY2(load.exitCode() == 0, load.readAll().constData());
    QVERIFY(!QImage(shot).isNull());
}

void tst_ReferenceApp::malformedModelFileIsRefused()
{
    QTemporaryDir dir;
    const QString model = dir.filePath(QStringLiteral("broken.json"));
    QFile file(model);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("{\n  \"format\": \"brennvik-display-model\",\n  \"version\": 1,\n  \"root\": {\"name\": ");
    file.close();
    QProcess app;
    app.start(QStringLiteral(BRENNVIK_REFERENCEAPP), {QStringLiteral("--model"), model});
    QVERIFY(app.waitForFinished(60000));
    QCOMPARE(app.exitStatus(), QProcess::NormalExit);
    // A file that fails to load is told apart from a usage error (status 2).
    QCOMPARE(app.exitCode(), 1);
    const QString message = QString::fromLocal8Bit(app.readAllStandardError());
    // One message naming the file with a line and column.
    // One message of ours (Qt may add notes of its own), naming the file with
    // the line and column where the text breaks off.
    const QStringList ours = message.split(QLatin1Char('\n')).filter(QStringLiteral("brennvik-referenceapp:"));
    QCOMPARE(ours.size(), 1);
    QVERIFY2(ours.first().contains(QRegularExpression(QStringLiteral("broken\\.json:4:\\d+: unexpected end"))),
             qPrintable(ours.first()));
}

QTEST_MAIN(tst_ReferenceApp)
#include "tst_referenceapp.moc"
