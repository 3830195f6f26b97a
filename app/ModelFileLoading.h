#pragma once

#include <QByteArray>

#include <memory>

namespace Brennvik {

class SceneViewModel;
struct ModelFileError;

/// Loads the model file named \a nativePath (its bytes as the system takes
/// them) and shows how far the load has come in a StartupProgress window
/// meanwhile. Null on failure, with the reason in \a error.
std::shared_ptr<SceneViewModel> loadModelFileShowingProgress(const QByteArray& nativePath, ModelFileError* error);

} // namespace Brennvik
