#include <hostcontract/MainWindowPresenter.h>
#include <hostcontract/ProcessDesignerPresenter.h>

#include <referencehost/model/HostCallLog.h>

namespace Brennvik {

MainWindowPresenter::MainWindowPresenter()
    : m_leftProcessDesigner(std::make_unique<ProcessDesignerPresenter>())
    , m_rightProcessDesigner(std::make_unique<ProcessDesignerPresenter>())
{
}

MainWindowPresenter::~MainWindowPresenter() = default;

ProcessDesignerPresenter* MainWindowPresenter::getLeftProcessDesigner() const
{
    HostCallLog::note("getLeftProcessDesigner");
    return m_leftProcessDesigner.get();
}

ProcessDesignerPresenter* MainWindowPresenter::getRightProcessDesigner() const
{
    return m_rightProcessDesigner.get();
}

} // namespace Brennvik
