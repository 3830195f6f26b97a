#pragma once

#include "HostExport.h"

#include <memory>

namespace Brennvik {

class DisplayModel;
class EditorDisplayModel;
class ViewBase;

/// The host's view model: owns the display models one 3D view draws.
class BRENNVIK_HOST_EXPORT ViewModelInterface
{
public:
    virtual ~ViewModelInterface() = default;

    /// A new deep copy of this view model and its display models. The bool
    /// asks the host to share the geometry buffers with the original (false:
    /// copy them too).
    virtual std::shared_ptr<ViewModelInterface> cloneViewModel(bool shareGeometry) const = 0;
    virtual DisplayModel* getDisplayModel() const = 0;
    /// May be null: not every view has an editor.
    virtual EditorDisplayModel* getEditorDisplayModel() const = 0;
    /// The 3D view that shows this view model; may be null.
    virtual ViewBase* getView() const = 0;
    /// The display model whose tree holds the plot labels; may be null.
    virtual DisplayModel* getLabelDisplayModel() const = 0;
};

} // namespace Brennvik
