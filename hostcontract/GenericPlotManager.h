#pragma once

#include "DisplayModel2DProvider.h"
#include "HostExport.h"

#include <memory>
#include <string>

namespace Brennvik {

class DisplayModel2D;

/// Manages one 2D plot: its title and the display model it draws.
class BRENNVIK_HOST_EXPORT GenericPlotManager : public DisplayModel2DProvider
{
public:
    /// A manager with a new, empty display model.
    explicit GenericPlotManager(std::string title = std::string());
    ~GenericPlotManager() override;
    GenericPlotManager(const GenericPlotManager&) = delete;
    GenericPlotManager& operator=(const GenericPlotManager&) = delete;

    /// Null after setDisplayModel2D(nullptr).
    DisplayModel2D* getDisplayModel2D() override;

    /// The display model, shared; empty when there is none.
    std::shared_ptr<DisplayModel2D> sharedDisplayModel2D() const;
    /// Shares \a model with the manager; null leaves the plot without a model.
    void setDisplayModel2D(std::shared_ptr<DisplayModel2D> model);
    const std::string& title() const;
    void setTitle(std::string title);

private:
    std::string m_title;
    std::shared_ptr<DisplayModel2D> m_displayModel;
};

} // namespace Brennvik
