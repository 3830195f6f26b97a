#include "Plot2DHost.h"

#include <hostcontract/BkHQWidget2D.h>
#include <hostcontract/DisplayItem2D.h>
#include <hostcontract/DisplayModel2D.h>
#include <hostcontract/GenericPlotManager.h>
#include <hostcontract/PlotDescription.h>
#include <hostcontract/ProcessDesignerPresenter.h>

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/plot2d/PlotLabelItem.h>

#include <QTest>

namespace Brennvik::Test {

Plot2DHost::Plot2DHost()
    : m_window(std::make_unique<QWidget>(nullptr, Qt::FramelessWindowHint))
    , m_viewWidget(new QWidget(m_window.get()))
    , m_viewModel(std::make_shared<SceneViewModel>())
{
    m_window->setGeometry(0, 0, 1000, 800);
    m_viewWidget->setGeometry(0, 0, 1, 1);
    m_view.setViewWidget(m_viewWidget);
    m_viewModel->setView(&m_view);
    m_viewModel->labelDisplayModel().setRootDisplayItem(std::make_shared<DisplayItem>("Labels"));
}

Plot2DHost::~Plot2DHost()
{
    // Plot widgets go with the window, before the managers they draw from.
    m_window.reset();
}

void Plot2DHost::show()
{
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

BkHQWidget2D* Plot2DHost::addPlot(const QPoint& pos, std::shared_ptr<DisplayItem2D> root, bool inDesigner)
{
    auto manager = std::make_unique<GenericPlotManager>("Plot");
    manager->getDisplayModel2D()->setRootDisplayItem(std::move(root));
    auto* plot = new BkHQWidget2D(m_window.get());
    plot->setGeometry(QRect(pos, QSize(120, 80)));
    plot->setPlotManager(manager.get());
    plot->show();
    if (inDesigner)
        m_presenter.getLeftProcessDesigner()->addDrawArea2D(plot);
    m_managers.push_back(std::move(manager));
    return plot;
}

DisplayModel2D* Plot2DHost::modelOf(const BkHQWidget2D* plot)
{
    return plot->getPlotManager() ? plot->getPlotManager()->getDisplayModel2D() : nullptr;
}

std::shared_ptr<PlotLabelItem> Plot2DHost::addLabel(const std::string& name, const Vector<float, 3>& anchor,
                                                    std::shared_ptr<DisplayItem2D> root, bool withDescription)
{
    std::shared_ptr<PlotDescription> description;
    if (withDescription) {
        auto model = std::make_shared<DisplayModel2D>();
        model->setRootDisplayItem(std::move(root));
        description = std::make_shared<PlotDescription>(name, model.get());
        m_labelModels.push_back(std::move(model));
    }
    auto label = std::make_shared<PlotLabelItem>(name, name, description, anchor);
    auto labels = std::dynamic_pointer_cast<DisplayItem>(m_viewModel->labelDisplayModel().getRootDisplayItem());
    labels->appendChild(label);
    return label;
}

DisplayModel2D* Plot2DHost::modelOf(const PlotLabelItem& label)
{
    return label.getPlotDescription() ? label.getPlotDescription()->getDisplayModel2D() : nullptr;
}

} // namespace Brennvik::Test
