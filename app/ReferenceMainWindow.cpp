#include "ReferenceMainWindow.h"

#include "SceneView3D.h"

#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/DisplayItemInterface.h>

#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneDrawAreaPresenter.h>
#include <referencehost/model/SceneViewModel.h>

#include <QHeaderView>
#include <QSplitter>
#include <QMenuBar>
#include <QStatusBar>

namespace Brennvik {

namespace {

void addRows(QTreeWidgetItem* parentRow, const std::shared_ptr<DisplayItemInterface>& item)
{
    int index = 0;
    for (const std::shared_ptr<DisplayItemInterface>& child : item->getChildren()) {
        auto* row = new DisplayItemTreeWidgetItem(parentRow, child, nullptr, false);
        row->setItemIndex(index++);
        addRows(row, child);
    }
}

} // namespace

ReferenceMainWindow::ReferenceMainWindow(std::shared_ptr<SceneViewModel> viewModel, QWidget* parent)
    : QMainWindow(parent)
    , m_viewModel(std::move(viewModel))
    , m_drawAreaPresenter(std::make_unique<SceneDrawAreaPresenter>())
    , m_tree(new DisplayItemTreeWidget(nullptr, true))
    , m_sceneView(new SceneView3D)
{
    setWindowTitle(tr("Brennvik reference host"));
    m_tree->setObjectName(QStringLiteral("displayItemTree"));
    m_tree->setHeaderLabel(tr("Display items"));
    m_tree->header()->setSectionResizeMode(0, QHeaderView::Stretch);

    auto* splitter = new QSplitter(Qt::Horizontal, this);
    splitter->setObjectName(QStringLiteral("mainSplitter"));
    splitter->addWidget(m_tree);
    splitter->addWidget(m_sceneView);
    splitter->setStretchFactor(0, 2);
    splitter->setStretchFactor(1, 3);
    setCentralWidget(splitter);

    // The draw area draws whatever its presenter is handed: the dialogs hand
    // it a clone and back.
    m_drawAreaPresenter->setChangeCallback(
        [this](const std::shared_ptr<ViewModelInterface>& viewModel) { showInSceneView(viewModel); });
    m_drawAreaPresenter->showViewModel(m_viewModel);

    QMenu* viewMenu = menuBar()->addMenu(tr("&View"));
    viewMenu->addAction(tr("&Rebuild tree"), this, &ReferenceMainWindow::rebuildTree);
    viewMenu->addAction(tr("&Expand all"), m_tree, &QTreeWidget::expandAll);
    viewMenu->addAction(tr("&Collapse all"), m_tree, &QTreeWidget::collapseAll);

    QMenu* debugMenu = menuBar()->addMenu(tr("&Debug"));
    debugMenu->setObjectName(QStringLiteral("debugMenu"));
    QAction* displayModelAction = debugMenu->addAction(tr("Display &model..."), this, [this]() { openDisplayModelDialog(); });
    displayModelAction->setObjectName(QStringLiteral("openDisplayModelDialogAction"));

    m_viewModel->displayModel().setUpdateCallback([this]() { onModelUpdated(); });

    rebuildTree();
    resize(1280, 820);
}

ReferenceMainWindow::~ReferenceMainWindow()
{
    // The dialog goes first: it may hand the presenter its view model back.
    delete m_displayModelDialog;
    m_drawAreaPresenter->setChangeCallback({});
    m_viewModel->displayModel().setUpdateCallback({});
    if (const std::shared_ptr<SceneViewModel> foreign = m_foreignViewModel.lock())
        foreign->displayModel().setUpdateCallback({});
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
    }
    m_displayModelDialog->show();
    m_displayModelDialog->raise();
    return m_displayModelDialog;
}

QList<QWidget*> ReferenceMainWindow::openDialogs() const
{
    QList<QWidget*> dialogs;
    if (m_displayModelDialog && m_displayModelDialog->isVisible())
        dialogs << m_displayModelDialog;
    return dialogs;
}

void ReferenceMainWindow::rebuildTree()
{
    m_tree->clear();
    const std::shared_ptr<DisplayItemInterface> root = m_viewModel->getDisplayModel()->getRootDisplayItem();
    if (root) {
        auto* top = new DisplayItemTreeWidgetItem(m_tree, root, nullptr, false);
        addRows(top, root);
        top->setExpanded(true);
        for (int i = 0; i < top->childCount(); ++i)
            top->child(i)->setExpanded(true);
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
