#pragma once

#include <functional>

class QDialog;
class QLineEdit;

namespace Brennvik {

/// Gives \a field the width of a typical search value, a 64-bit address, as
/// its minimum, in its font of the moment: the form's layout would squeeze it
/// to a few characters.
void fitSearchField(QLineEdit& field);

/// The keys users expect of a search in \a dialog: Enter in \a field and F3
/// anywhere in the dialog run \a findNext; Ctrl+F goes to \a field with its
/// text selected. Enter elsewhere still goes to the dialog's default button.
void installSearchKeys(QDialog& dialog, QLineEdit& field, std::function<void()> findNext);

} // namespace Brennvik
