#pragma once

#include "HostExport.h"

#include <memory>

namespace Brennvik {

class VirtualDrawArea;

/// Common base of the host's presenters: each owns a virtual draw area.
class BRENNVIK_HOST_EXPORT BasePresenter
{
public:
    BasePresenter();
    virtual ~BasePresenter();
    BasePresenter(const BasePresenter&) = delete;
    BasePresenter& operator=(const BasePresenter&) = delete;

    /// Never null.
    VirtualDrawArea* getVirtualDrawArea() const;
    /// Replaces the draw area; null is ignored. Widgets of the old one are not carried over.
    void setVirtualDrawArea(std::unique_ptr<VirtualDrawArea> drawArea);

private:
    std::unique_ptr<VirtualDrawArea> m_virtualDrawArea;
};

} // namespace Brennvik
