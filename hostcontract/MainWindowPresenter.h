#pragma once

#include "HostExport.h"

#include <memory>

namespace Brennvik {

class ProcessDesignerPresenter;

/// Presenter of the application's main window with its two process designers.
class BRENNVIK_HOST_EXPORT MainWindowPresenter
{
public:
    MainWindowPresenter();
    ~MainWindowPresenter();
    MainWindowPresenter(const MainWindowPresenter&) = delete;
    MainWindowPresenter& operator=(const MainWindowPresenter&) = delete;

    /// Never null.
    ProcessDesignerPresenter* getLeftProcessDesigner() const;
    /// Never null.
    ProcessDesignerPresenter* getRightProcessDesigner() const;

private:
    std::unique_ptr<ProcessDesignerPresenter> m_leftProcessDesigner;
    std::unique_ptr<ProcessDesignerPresenter> m_rightProcessDesigner;
};

} // namespace Brennvik
