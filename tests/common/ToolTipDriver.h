#pragma once

#include <QPoint>
#include <QString>

class QAbstractItemView;

namespace Brennvik::Test {

/// Asks \a view for the tool tip at \a viewportPos the way a resting mouse
/// does: a QHelpEvent of type ToolTip goes to the viewport. Any tool tip shown
/// before is taken down first. Returns the text of the tool tip shown then;
/// empty when none is shown.
QString toolTipAt(QAbstractItemView* view, const QPoint& viewportPos);

/// Takes down the tool tip shown, if any, at once (QToolTip::hideText lets it
/// linger for a while).
void takeDownToolTip();

} // namespace Brennvik::Test
