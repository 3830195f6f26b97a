#pragma once

#include "CloneDefect.h"

#include <hostcontract/ViewModelInterface.h>

#include <memory>
#include <vector>

namespace Brennvik {

class EditorDisplayModel;
class SceneDisplayModel;
class ViewBase;

/// The view model of one 3D view: its display model, the label display model
/// (plot labels) and, for views with an editor, the editor's model.
///
/// cloneViewModel makes a real deep copy. Clone defects set with
/// setCloneDefects are built into every clone (see CloneDefect), so that the
/// clone diagnostics can be shown at work.
class BRENNVIK_HOST_EXPORT SceneViewModel : public ViewModelInterface
{
public:
    SceneViewModel();
    ~SceneViewModel() override;
    SceneViewModel(const SceneViewModel&) = delete;
    SceneViewModel& operator=(const SceneViewModel&) = delete;

    /// \name ViewModelInterface
    ///@{
    /// Same as cloneSceneViewModel.
    std::shared_ptr<ViewModelInterface> cloneViewModel(bool shareGeometry) const override;
    DisplayModel* getDisplayModel() const override;
    EditorDisplayModel* getEditorDisplayModel() const override;
    /// The view set with setView; null until then.
    ViewBase* getView() const override;
    DisplayModel* getLabelDisplayModel() const override;
    ///@}

    /// A deep copy: new items of the same concrete types in the same structure,
    /// with the same names, visibility, selection, flags and properties;
    /// geometry lists, the active context and the entry lookups point into the
    /// copy; the editor's primitives and the label model are copied too. The
    /// copy has no view, no clone defects and fresh update counters, and the
    /// copied items have no observers. \a shareGeometry changes nothing: this
    /// host keeps no geometry buffers.
    std::shared_ptr<SceneViewModel> cloneSceneViewModel(bool shareGeometry) const;

    SceneDisplayModel& displayModel() const;
    SceneDisplayModel& labelDisplayModel() const;
    /// Null while the view model has no editor.
    EditorDisplayModel* editorDisplayModel() const;
    /// Gives the view model an editor (if it has none) and returns its model.
    EditorDisplayModel& ensureEditorDisplayModel();
    /// Removes the editor and its primitives.
    void removeEditorDisplayModel();

    /// Not owned; may be null.
    void setView(ViewBase* view);

    /// The defects every later clone gets; empty for faithful clones.
    void setCloneDefects(std::vector<CloneDefect> defects);
    const std::vector<CloneDefect>& cloneDefects() const;
    /// How often this view model was cloned.
    int cloneCount() const;
    /// Defects that the last clone could not apply (target not found or unfit).
    const std::vector<CloneDefect>& lastCloneUnappliedDefects() const;

private:
    std::unique_ptr<SceneDisplayModel> m_displayModel;
    std::unique_ptr<SceneDisplayModel> m_labelDisplayModel;
    std::unique_ptr<EditorDisplayModel> m_editorDisplayModel;
    ViewBase* m_view = nullptr;
    std::vector<CloneDefect> m_cloneDefects;
    // Bookkeeping of the const clone operation.
    mutable int m_cloneCount = 0;
    mutable std::vector<CloneDefect> m_lastCloneUnappliedDefects;
};

} // namespace Brennvik
