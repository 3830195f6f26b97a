#include <hostcontract/PlotDescription.h>

namespace Brennvik {

PlotDescription::PlotDescription(std::string title, DisplayModel2D* model)
    : m_title(std::move(title))
    , m_displayModel2D(model)
{
}

} // namespace Brennvik
