#pragma once

#include "HostExport.h"

#include <string>

namespace Brennvik {

class DisplayModel2D;

/// What a plot label in the 3D view stands for: a plot, by title and display model.
class BRENNVIK_HOST_EXPORT PlotDescription
{
public:
    /// \a model is not owned and may be null.
    PlotDescription(std::string title, DisplayModel2D* model);

    /// The plot's display model; may be null.
    DisplayModel2D* getDisplayModel2D() const { return m_displayModel2D; }
    void setDisplayModel2D(DisplayModel2D* model) { m_displayModel2D = model; }
    const std::string& getTitle() const { return m_title; }

private:
    std::string m_title;
    DisplayModel2D* m_displayModel2D;
};

} // namespace Brennvik
