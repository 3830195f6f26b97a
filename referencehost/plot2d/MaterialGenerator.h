#pragma once

#include <hostcontract/HostExport.h>

class QWidget;

namespace Brennvik {

/// Name of the application object property that holds the material
/// generator window (a QWidget*), whose plots the debug tools list as well.
BRENNVIK_HOST_EXPORT extern const char* const MaterialGeneratorProperty;

/// Stores \a window in the application's "MaterialGenerator" property; null
/// removes the property. The property is removed by itself when the window
/// is destroyed. Needs an application object.
BRENNVIK_HOST_EXPORT void setMaterialGeneratorWindow(QWidget* window);

/// The window in the property; null when there is none or it holds no widget.
BRENNVIK_HOST_EXPORT QWidget* materialGeneratorWindow();

} // namespace Brennvik
