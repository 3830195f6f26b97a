#include <hostcontract/DisplayModel2D.h>
#include <hostcontract/GenericPlotManager.h>

namespace Brennvik {

GenericPlotManager::GenericPlotManager(std::string title)
    : m_title(std::move(title))
    , m_displayModel(std::make_shared<DisplayModel2D>())
{
}

GenericPlotManager::~GenericPlotManager() = default;

DisplayModel2D* GenericPlotManager::getDisplayModel2D()
{
    return m_displayModel.get();
}

std::shared_ptr<DisplayModel2D> GenericPlotManager::sharedDisplayModel2D() const
{
    return m_displayModel;
}

void GenericPlotManager::setDisplayModel2D(std::shared_ptr<DisplayModel2D> model)
{
    m_displayModel = std::move(model);
}

const std::string& GenericPlotManager::title() const
{
    return m_title;
}

void GenericPlotManager::setTitle(std::string title)
{
    m_title = std::move(title);
}

} // namespace Brennvik
