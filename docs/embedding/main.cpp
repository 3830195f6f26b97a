// A host's main window whose Debug menu opens the three dialogs. The view
// model and the presenters come from the reference host here; a host passes
// its own implementations of the same contract classes instead.
#include <debugmenucontent/clonecomparison/DebugCloneDisplayModelDialog.h>
#include <debugmenucontent/displaymodel2d/DisplayModel2DDialog.h>
#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>

#include <hostcontract/MainWindowPresenter.h>

#include <referencehost/model/SampleModel.h>
#include <referencehost/model/SceneDrawAreaPresenter.h>
#include <referencehost/model/SceneViewModel.h>

#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>

#include <memory>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);

    // What the 3D view draws, and the presenter of that draw area: the
    // display model dialog shows its clone mode through it.
    const std::shared_ptr<Brennvik::SceneViewModel> viewModel = Brennvik::buildSampleViewModel();
    Brennvik::SceneDrawAreaPresenter drawAreaPresenter;
    drawAreaPresenter.showViewModel(viewModel);
    // The main window's presenter; its process designers hold the 2D plots.
    Brennvik::MainWindowPresenter mainWindowPresenter;

    QMainWindow window;
    QMenu* debugMenu = window.menuBar()->addMenu(QStringLiteral("&Debug"));
    const auto showAndRaise = [](QWidget* dialog) {
        dialog->show();
        dialog->raise();
    };

    // Closing these two dialogs only hides them: keep one instance of each
    // and show it again.
    auto* displayModelDialog = new Brennvik::DisplayModelDialog(&window);
    displayModelDialog->setViewModel(viewModel);
    displayModelDialog->setDrawAreaPresenter(&drawAreaPresenter);
    debugMenu->addAction(QStringLiteral("Display model..."), displayModelDialog,
                         [=]() { showAndRaise(displayModelDialog); });

    auto* plotsDialog = new Brennvik::DisplayModel2DDialog(mainWindowPresenter, &window);
    plotsDialog->setViewModel(viewModel);
    debugMenu->addAction(QStringLiteral("2D display models..."), plotsDialog, [=]() { showAndRaise(plotsDialog); });

    // The clone comparison is a modal one-shot check made when it opens:
    // make a new one each time.
    debugMenu->addAction(QStringLiteral("Clone comparison..."), &window, [&window, viewModel]() {
        auto* dialog = new Brennvik::DebugCloneDisplayModelDialog(&window, viewModel);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->show();
    });

    window.resize(800, 600);
    window.show();
    return app.exec();
}
