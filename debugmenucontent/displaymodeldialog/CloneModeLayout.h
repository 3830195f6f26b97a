#pragma once

#include <QSize>

#include <optional>

class QTreeWidget;
class QWidget;

namespace Brennvik {

/// Widens \a dialog for the second tree and property column of clone mode:
/// twice its width, within the available geometry of its screen, moved left
/// where the wider frame would reach past the screen's right edge. Returns
/// the size to give back when clone mode ends; empty when the dialog was left
/// as it was (maximised, full screen, or already as wide as the screen).
std::optional<QSize> widenForCloneMode(QWidget* dialog);

/// Expands the rows of \a cloned that correspond to the expanded rows of
/// \a original: rows at the same position among their siblings with the same
/// column-0 text, below corresponding parents. Collapsed rows are walked too,
/// so that their expanded descendants show when they are opened. The walk is
/// a loop; \a cloned emits no expansion signals meanwhile, which would mirror
/// each row back one at a time.
void mirrorExpansion(QTreeWidget* original, QTreeWidget* cloned);

} // namespace Brennvik
