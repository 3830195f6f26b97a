#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

namespace Brennvik {

class SceneViewModel;

// The application's side of importing 3D scene files: progress and the
// file dialog's filter. Builds without Assimp import nothing.

/// Whether this build imports scene files.
bool canImportScenes();

/// Imports the scene file named \a nativePath, showing how far it has come
/// in a small window. Null with "file: reason" in \a error.
std::shared_ptr<SceneViewModel> importSceneFile(const QByteArray& nativePath, QString* error);

/// The file dialog's filters: every format the importer reads, then any file.
QString sceneFileFilter();

} // namespace Brennvik
