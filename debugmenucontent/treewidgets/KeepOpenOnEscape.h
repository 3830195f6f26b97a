#pragma once

class QDialog;

namespace Brennvik {

/// Makes Escape leave \a dialog open. A tool dialog that Escape hides is
/// easily lost: users press Escape to drop a context menu that never opened.
/// Popups and menus still close on Escape (they are windows of their own), and
/// the window's close button still closes the dialog.
void keepOpenOnEscape(QDialog& dialog);

} // namespace Brennvik
