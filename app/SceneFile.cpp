#include "SceneFile.h"

#include "StartupProgress.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#ifdef BRENNVIK_WITH_SCENE_IMPORT
#include <referencehost/sceneimport/SceneImport.h>
#endif

namespace Brennvik {

bool canImportScenes()
{
#ifdef BRENNVIK_WITH_SCENE_IMPORT
    return true;
#else
    return false;
#endif
}

std::shared_ptr<SceneViewModel> importSceneFile(const QByteArray& nativePath, QString* error)
{
#ifdef BRENNVIK_WITH_SCENE_IMPORT
    StartupProgress progress(QCoreApplication::translate("main", "Importing %1...")
                                 .arg(QFileInfo(QFile::decodeName(nativePath)).fileName()));
    return SceneImport::load(nativePath, error,
                             [&progress](std::size_t done, std::size_t total) { progress.report(done, total); });
#else
    if (error) {
        *error = QFile::decodeName(nativePath)
            + QStringLiteral(": cannot import the scene: this build has no scene import (built without Assimp)");
    }
    return nullptr;
#endif
}

QString sceneFileFilter()
{
    QStringList patterns;
#ifdef BRENNVIK_WITH_SCENE_IMPORT
    for (const QString& extension : SceneImport::fileExtensions())
        patterns << QStringLiteral("*.") + extension;
#endif
    const QString anyFile = QCoreApplication::translate("main", "All files (*)");
    if (patterns.isEmpty())
        return anyFile;
    return QCoreApplication::translate("main", "3D scenes (%1)").arg(patterns.join(QLatin1Char(' ')))
        + QStringLiteral(";;") + anyFile;
}

} // namespace Brennvik
