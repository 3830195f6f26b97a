#include "ModelFileLoading.h"

#include "StartupProgress.h"

#include <referencehost/model/SceneViewModel.h>
#include <referencehost/modelfile/ModelFile.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace Brennvik {

std::shared_ptr<SceneViewModel> loadModelFileShowingProgress(const QByteArray& nativePath, ModelFileError* error)
{
    const QString fileName = QFileInfo(QFile::decodeName(nativePath)).fileName();
    StartupProgress progress(QCoreApplication::translate("ModelFileLoading", "Loading %1...").arg(fileName));
    return ModelFile::load(nativePath, error, {},
                           [&progress](std::size_t done, std::size_t total) { progress.report(done, total); });
}

} // namespace Brennvik
