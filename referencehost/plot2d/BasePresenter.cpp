#include <hostcontract/BasePresenter.h>
#include <hostcontract/VirtualDrawArea.h>

namespace Brennvik {

BasePresenter::BasePresenter()
    : m_virtualDrawArea(std::make_unique<VirtualDrawArea>())
{
}

BasePresenter::~BasePresenter() = default;

VirtualDrawArea* BasePresenter::getVirtualDrawArea() const
{
    return m_virtualDrawArea.get();
}

void BasePresenter::setVirtualDrawArea(std::unique_ptr<VirtualDrawArea> drawArea)
{
    if (drawArea)
        m_virtualDrawArea = std::move(drawArea);
}

} // namespace Brennvik
