#include "ReferenceMainWindow.h"

#include "LazyDisplayItemRows.h"
#include "ProcessPlots.h"
#include "SceneFile.h"
#include "SceneView3D.h"

#include <debugmenucontent/clonecomparison/DebugCloneDisplayModelDialog.h>
#include <debugmenucontent/displaymodel2d/DisplayModel2DDialog.h>

#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>

#include <hostcontract/BkHQWidget2D.h>
#include <hostcontract/DisplayItemInterface.h>
#include <hostcontract/MainWindowPresenter.h>
#include <hostcontract/ProcessDesignerPresenter.h>
#include <hostcontract/ViewBase.h>

#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneDrawAreaPresenter.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/plot2d/MaterialGenerator.h>

#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QMimeData>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QSplitter>
#include <QMenuBar>
#include <QStatusBar>

namespace Brennvik {

ReferenceMainWindow::ReferenceMainWindow(std::shared_ptr<SceneViewModel> viewModel, QWidget* parent)
    : QMainWindow(parent)
    , m_viewModel(std::move(viewModel))
    , m_drawAreaPresenter(std::make_unique<SceneDrawAreaPresenter>())
    , m_mainWindowPresenter(std::make_unique<MainWindowPresenter>())
    , m_plots(std::make_unique<ProcessPlots>())
    , m_view(std::make_unique<ViewBase>())
    , m_tree(new DisplayItemTreeWidget(nullptr, true))
    , m_rows(new LazyDisplayItemRows(m_tree))
    , m_sceneView(new SceneView3D)
{
    setObjectName(QStringLiteral("referenceMainWindow"));
    setWindowTitle(tr("Brennvik reference host"));
    m_tree->setObjectName(QStringLiteral("displayItemTree"));
    m_tree->setHeaderLabel(tr("Display items"));
    m_tree->header()->setSectionResizeMode(0, QHeaderView::Stretch);

    // The 3D view above, the process plots of the draw-area set below it.
    auto* plotStrip = new QWidget;
    plotStrip->setObjectName(QStringLiteral("processPlots"));
    auto* plotLayout = new QHBoxLayout(plotStrip);
    plotLayout->setContentsMargins(0, 0, 0, 0);
    for (BkHQWidget2D* plot : m_plots->createProcessPlotWidgets(plotStrip)) {
        plotLayout->addWidget(plot);
        m_mainWindowPresenter->getLeftProcessDesigner()->addDrawArea2D(plot);
    }
    auto* drawAreas = new QSplitter(Qt::Vertical);
    drawAreas->setObjectName(QStringLiteral("drawAreaSplitter"));
    drawAreas->addWidget(m_sceneView);
    drawAreas->addWidget(plotStrip);
    drawAreas->setStretchFactor(0, 3);
    drawAreas->setStretchFactor(1, 2);

    auto* splitter = new QSplitter(Qt::Horizontal, this);
    splitter->setObjectName(QStringLiteral("mainSplitter"));
    splitter->addWidget(m_tree);
    splitter->addWidget(drawAreas);
    splitter->setStretchFactor(0, 2);
    splitter->setStretchFactor(1, 3);
    setCentralWidget(splitter);

    m_view->setViewWidget(m_sceneView);

    // The material generator is a window of its own that the application names.
    m_materialGenerator = m_plots->createMaterialGeneratorWindow();
    setMaterialGeneratorWindow(m_materialGenerator);

    // The draw area draws whatever its presenter is handed: the dialogs hand
    // it a clone and back.
    m_drawAreaPresenter->setChangeCallback(
        [this](const std::shared_ptr<ViewModelInterface>& viewModel) { showInSceneView(viewModel); });

    createMenus();
    setAcceptDrops(true);
    attachViewModel();
}

void ReferenceMainWindow::attachViewModel()
{
    // The 3D view is the view model's view; plot labels in it lead to the plots.
    m_viewModel->setView(m_view.get());
    m_plots->addPlotLabels(*m_viewModel);
    m_drawAreaPresenter->showViewModel(m_viewModel);
    m_viewModel->displayModel().setUpdateCallback([this]() { onModelUpdated(); });
    rebuildTree();
}

void ReferenceMainWindow::detachViewModel()
{
    delete m_cloneComparisonDialog;
    delete m_displayModelDialog;
    m_displayModelDialog = nullptr;
    m_rows->clear();
    m_viewModel->setView(nullptr);
    m_viewModel->displayModel().setUpdateCallback({});
    if (const std::shared_ptr<SceneViewModel> foreign = m_foreignViewModel.lock())
        foreign->displayModel().setUpdateCallback({});
    m_foreignViewModel.reset();
}

void ReferenceMainWindow::showViewModel(std::shared_ptr<SceneViewModel> viewModel)
{
    if (!viewModel || viewModel == m_viewModel)
        return;
    const bool dialogWasOpen = m_displayModelDialog && m_displayModelDialog->isVisible();
    detachViewModel();
    m_viewModel = std::move(viewModel);
    attachViewModel();
    if (m_displayModel2DDialog)
        m_displayModel2DDialog->setViewModel(m_viewModel);
    if (dialogWasOpen)
        openDisplayModelDialog();
}

QString ReferenceMainWindow::openSceneFile(const QString& path)
{
    QString error;
    std::shared_ptr<SceneViewModel> viewModel = importSceneFile(QFile::encodeName(path), &error);
    if (!viewModel) {
        // Not modal: the window stays usable, and nothing waits for the box.
        auto* box = new QMessageBox(QMessageBox::Warning, windowTitle(), error, QMessageBox::Ok, this);
        box->setObjectName(QStringLiteral("sceneErrorBox"));
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->open();
        return error;
    }
    showViewModel(std::move(viewModel));
    setWindowTitle(tr("Brennvik reference host - %1").arg(QFileInfo(path).fileName()));
    return {};
}

QWidget* ReferenceMainWindow::openSceneFileDialog()
{
    auto* dialog = new QFileDialog(this, tr("Open a 3D scene"));
    dialog->setObjectName(QStringLiteral("openSceneDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setNameFilter(sceneFileFilter());
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& path) { openSceneFile(path); });
    dialog->open();
    return dialog;
}

namespace {

/// The local file a drag carries, if it carries exactly one.
QString draggedFile(const QMimeData* data)
{
    if (!data || !data->hasUrls() || data->urls().size() != 1 || !data->urls().first().isLocalFile())
        return {};
    return data->urls().first().toLocalFile();
}

/// A menu entry with a shortcut, named \a objectName, that calls \a slot of
/// \a receiver. QMenu's overload for this changed its argument order in Qt 6.
template<typename Receiver, typename Slot>
QAction* addShortcutAction(QMenu* menu, const QString& text, const QKeySequence& shortcut, const Receiver* receiver,
                           Slot slot, const char* objectName)
{
    QAction* action = menu->addAction(text);
    action->setShortcut(shortcut);
    action->setObjectName(QLatin1String(objectName));
    QObject::connect(action, &QAction::triggered, receiver, slot);
    return action;
}

} // namespace

void ReferenceMainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (canImportScenes() && !draggedFile(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void ReferenceMainWindow::dropEvent(QDropEvent* event)
{
    const QString path = draggedFile(event->mimeData());
    if (path.isEmpty())
        return;
    event->acceptProposedAction();
    // Imported once the drop is done: the source of the drag is not kept waiting.
    QMetaObject::invokeMethod(
        this, [this, path]() { openSceneFile(path); }, Qt::QueuedConnection);
}

ReferenceMainWindow::~ReferenceMainWindow()
{
    // The dialogs go first: the display model dialog may hand the presenter
    // its view model back, the 2D dialog holds the main-window presenter.
    delete m_cloneComparisonDialog;
    delete m_displayModel2DDialog;
    delete m_displayModelDialog;
    delete m_materialGenerator;
    m_rows->clear();
    m_viewModel->setView(nullptr);
    m_drawAreaPresenter->setChangeCallback({});
    m_viewModel->displayModel().setUpdateCallback({});
    if (const std::shared_ptr<SceneViewModel> foreign = m_foreignViewModel.lock())
        foreign->displayModel().setUpdateCallback({});
}

void ReferenceMainWindow::createMenus()
{
    QMenu* fileMenu = menuBar()->addMenu(tr("&File"));
    fileMenu->setObjectName(QStringLiteral("fileMenu"));
    if (canImportScenes()) {
        addShortcutAction(
            fileMenu, tr("&Open..."), QKeySequence::Open, this, [this]() { openSceneFileDialog(); }, "openSceneAction");
    }
    addShortcutAction(fileMenu, tr("&Quit"), QKeySequence(tr("Ctrl+Q")), this, &QWidget::close, "quitAction");

    QMenu* viewMenu = menuBar()->addMenu(tr("&View"));
    viewMenu->addAction(tr("&Rebuild tree"), this, &ReferenceMainWindow::rebuildTree);
    viewMenu->addAction(tr("&Expand all"), m_rows, &LazyDisplayItemRows::expandAll);
    viewMenu->addAction(tr("&Collapse all"), m_tree, &QTreeWidget::collapseAll);

    createDebugMenu();

    QMenu* windowMenu = menuBar()->addMenu(tr("&Window"));
    windowMenu->addAction(tr("&Material generator"), this, [this]() {
        if (m_materialGenerator) {
            m_materialGenerator->show();
            m_materialGenerator->raise();
        }
    });
}

void ReferenceMainWindow::createDebugMenu()
{
    // Ctrl+Shift: the dialogs' own windows keep the plain Ctrl keys.
    QMenu* debugMenu = menuBar()->addMenu(tr("&Debug"));
    debugMenu->setObjectName(QStringLiteral("debugMenu"));
    addShortcutAction(
        debugMenu, tr("Display &model..."), QKeySequence(tr("Ctrl+Shift+D")), this,
        [this]() { openDisplayModelDialog(); }, "openDisplayModelDialogAction");
    addShortcutAction(
        debugMenu, tr("&Clone comparison..."), QKeySequence(tr("Ctrl+Shift+C")), this,
        [this]() { openCloneComparisonDialog(); }, "openCloneComparisonDialogAction");
    addShortcutAction(
        debugMenu, tr("&2D display models..."), QKeySequence(tr("Ctrl+Shift+P")), this,
        [this]() { openDisplayModel2DDialog(); }, "openDisplayModel2DDialogAction");
}

void ReferenceMainWindow::closeEvent(QCloseEvent* event)
{
    QMainWindow::closeEvent(event);
    if (!event->isAccepted())
        return;
    rememberPlacement();
    // The dialogs and the material generator are windows of their own: left
    // open, they would keep the application running without its main window.
    for (QWidget* window : openDialogs())
        window->close();
}

void ReferenceMainWindow::setSettings(QSettings* settings)
{
    m_placement.setSettings(settings);
}

void ReferenceMainWindow::rememberPlacement() const
{
    m_placement.remember(this);
    const QList<QWidget*> windows{m_materialGenerator, m_displayModelDialog, m_cloneComparisonDialog,
                                  m_displayModel2DDialog};
    for (const QWidget* window : windows) {
        if (window)
            m_placement.remember(window);
    }
}

void ReferenceMainWindow::onModelUpdated()
{
    if (m_sceneView->viewModel() == m_viewModel)
        m_sceneView->refresh();
    // Rows without a dialog follow their items' visibility but not the tree's
    // structure: after an update that changed the number of items, the tree
    // is built anew once the current event is done.
    const std::shared_ptr<DisplayItemInterface> root = m_viewModel->getDisplayModel()->getRootDisplayItem();
    const quint64 count = root ? root->getNumberOfDisplayItems() : 0;
    if (count != m_shownItemCount)
        QMetaObject::invokeMethod(this, &ReferenceMainWindow::rebuildTree, Qt::QueuedConnection);
}

void ReferenceMainWindow::showInSceneView(const std::shared_ptr<ViewModelInterface>& viewModel)
{
    if (const std::shared_ptr<SceneViewModel> previous = m_foreignViewModel.lock())
        previous->displayModel().setUpdateCallback({});
    m_foreignViewModel.reset();

    QString caption = tr("3D view");
    if (viewModel && viewModel != m_viewModel) {
        caption = tr("3D view (clone)");
        if (const auto scene = std::dynamic_pointer_cast<SceneViewModel>(viewModel)) {
            m_foreignViewModel = scene;
            scene->displayModel().setUpdateCallback([this]() { m_sceneView->refresh(); });
        }
    }
    m_sceneView->setViewModel(viewModel, caption);
}

DisplayModelDialog* ReferenceMainWindow::openDisplayModelDialog()
{
    if (!m_displayModelDialog) {
        // As the application's Debug menu does it: parent, view model, draw area.
        m_displayModelDialog = new DisplayModelDialog(this);
        m_displayModelDialog->setViewModel(m_viewModel);
        m_displayModelDialog->setDrawAreaPresenter(m_drawAreaPresenter.get());
        m_placement.placeBeside(m_displayModelDialog, this);
    }
    m_displayModelDialog->show();
    m_displayModelDialog->raise();
    return m_displayModelDialog;
}

DebugCloneDisplayModelDialog* ReferenceMainWindow::openCloneComparisonDialog()
{
    // A one-shot check: each opening clones the view model afresh.
    delete m_cloneComparisonDialog;
    m_cloneComparisonDialog = new DebugCloneDisplayModelDialog(this, m_viewModel);
    m_cloneComparisonDialog->setAttribute(Qt::WA_DeleteOnClose);
    m_placement.placeBeside(m_cloneComparisonDialog, this);
    m_cloneComparisonDialog->show();
    return m_cloneComparisonDialog;
}

DisplayModel2DDialog* ReferenceMainWindow::openDisplayModel2DDialog()
{
    if (!m_displayModel2DDialog) {
        // As the application's Debug menu does it: presenter and parent, then the view model.
        m_displayModel2DDialog = new DisplayModel2DDialog(*m_mainWindowPresenter, this);
        m_displayModel2DDialog->setViewModel(m_viewModel);
        m_placement.placeBeside(m_displayModel2DDialog, this);
    }
    m_displayModel2DDialog->show();
    m_displayModel2DDialog->raise();
    return m_displayModel2DDialog;
}

QList<QWidget*> ReferenceMainWindow::openDialogs() const
{
    QList<QWidget*> dialogs;
    if (m_materialGenerator && m_materialGenerator->isVisible())
        dialogs << m_materialGenerator;
    if (m_displayModelDialog && m_displayModelDialog->isVisible())
        dialogs << m_displayModelDialog;
    if (m_cloneComparisonDialog && m_cloneComparisonDialog->isVisible())
        dialogs << m_cloneComparisonDialog;
    if (m_displayModel2DDialog && m_displayModel2DDialog->isVisible())
        dialogs << m_displayModel2DDialog;
    return dialogs;
}

void ReferenceMainWindow::showEvent(QShowEvent* event)
{
    if (!m_placed) {
        m_placed = true;
        m_placement.placeMainWindow(this);
        if (m_materialGenerator)
            m_placement.placeBeside(m_materialGenerator, this);
    }
    QMainWindow::showEvent(event);
    // The material generator opens with the application.
    if (m_materialGenerator && !m_materialGenerator->isVisible())
        m_materialGenerator->show();
}

void ReferenceMainWindow::rebuildTree()
{
    // The top two levels open; expanding a row makes its children's rows.
    if (QTreeWidgetItem* top = m_rows->showRoot(m_viewModel->getDisplayModel()->getRootDisplayItem())) {
        m_rows->fetchChildren(top);
        top->setExpanded(true);
        for (int i = 0; i < top->childCount(); ++i) {
            m_rows->fetchChildren(top->child(i));
            top->child(i)->setExpanded(true);
        }
    }
    updateStatus();
}

void ReferenceMainWindow::updateStatus()
{
    const std::shared_ptr<DisplayItemInterface> root = m_viewModel->getDisplayModel()->getRootDisplayItem();
    m_shownItemCount = root ? root->getNumberOfDisplayItems() : 0;
    statusBar()->showMessage(tr("%1 display items").arg(m_shownItemCount));
}

} // namespace Brennvik
