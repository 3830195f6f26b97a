#include <hostcontract/MainWindowPresenter.h>
#include <hostcontract/ProcessDesignerPresenter.h>

namespace Brennvik {

MainWindowPresenter::MainWindowPresenter()
    : m_leftProcessDesigner(std::make_unique<ProcessDesignerPresenter>())
    , m_rightProcessDesigner(std::make_unique<ProcessDesignerPresenter>())
{
}

MainWindowPresenter::~MainWindowPresenter() = default;

ProcessDesignerPresenter* MainWindowPresenter::getLeftProcessDesigner() const
{
    return m_leftProcessDesigner.get();
}

ProcessDesignerPresenter* MainWindowPresenter::getRightProcessDesigner() const
{
    return m_rightProcessDesigner.get();
}

} // namespace Brennvik
