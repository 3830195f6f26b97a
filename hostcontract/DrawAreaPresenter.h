#pragma once

#include "HostExport.h"

#include <memory>

namespace Brennvik {

class ViewModelInterface;

/// Presenter of one 3D draw area.
class BRENNVIK_HOST_EXPORT DrawAreaPresenter
{
public:
    virtual ~DrawAreaPresenter() = default;

    /// The draw area draws \a viewModel from now on (empty: nothing).
    virtual void showViewModel(std::shared_ptr<ViewModelInterface> viewModel) = 0;
    /// The view model drawn now; empty if none.
    virtual std::shared_ptr<ViewModelInterface> getViewModel() const = 0;
};

} // namespace Brennvik
