#include "SceneImport.h"

#include "SceneImportFlags.h"
#include "SceneModelBuilder.h"

#include <referencehost/model/FixedEntryOwner.h>
#include <referencehost/model/SceneContext.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>

#include <assimp/Importer.hpp>
#include <assimp/ProgressHandler.hpp>

#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

#include <algorithm>
#include <exception>
#include <new>

namespace Brennvik {

namespace {

/// Half of the per cent done: Assimp tells how far it has read the file.
class ReadProgress : public Assimp::ProgressHandler
{
public:
    explicit ReadProgress(const SceneImport::Progress& progress)
        : m_progress(progress)
    {
    }

    bool Update(float percentage) override
    {
        // Assimp gives a fraction of 1, or -1 when it cannot tell.
        if (m_progress && percentage >= 0)
            m_progress(static_cast<std::size_t>(std::min(percentage, 1.0f) * 50), 100);
        return true;
    }

private:
    const SceneImport::Progress& m_progress;
};

void setError(QString* error, const QString& name, const QString& reason)
{
    if (error)
        *error = name + QStringLiteral(": ") + reason;
}

/// The view model of \a scene, or null with the reason in \a reason.
std::shared_ptr<SceneViewModel> makeViewModel(const aiScene& scene, const QString& name,
                                              const SceneImport::Progress& progress, QString& reason)
{
    SceneModelBuilder builder(scene);
    SceneModelBuilder::Progress nodeProgress;
    if (progress) {
        nodeProgress = [&progress](std::size_t done, std::size_t total) {
            progress(50 + (total ? done * 50 / total : 50), 100);
        };
    }
    std::shared_ptr<DisplayItem> root = builder.build(nodeProgress);
    if (!root) {
        reason = QStringLiteral("the scene has no nodes");
        return nullptr;
    }
    auto viewModel = std::make_shared<SceneViewModel>();
    SceneDisplayModel& model = viewModel->displayModel();
    model.setRootDisplayItem(root);
    model.setActiveContext(std::make_shared<SceneContext>(0, QFileInfo(name).fileName().toStdString()));
    model.setDefaultEntryOwner(std::make_shared<FixedEntryOwner>(root));
    return viewModel;
}

/// Runs \a read on a fresh importer and makes the view model of its scene.
template<typename Read>
std::shared_ptr<SceneViewModel> import(const QString& name, QString* error, const SceneImport::Progress& progress,
                                       Read read)
{
    QString reason;
    try {
        Assimp::Importer importer;
        ReadProgress readProgress(progress);
        importer.SetProgressHandler(&readProgress);
        // The importer frees the handler it holds at its end: not ours.
        const auto releaseHandler = qScopeGuard([&importer] { importer.SetProgressHandler(nullptr); });
        const aiScene* scene = read(importer);
        std::shared_ptr<SceneViewModel> viewModel;
        if (!scene)
            reason = QStringLiteral("cannot import the scene: ") + QString::fromUtf8(importer.GetErrorString());
        else
            viewModel = makeViewModel(*scene, name, progress, reason);
        if (viewModel)
            return viewModel;
    } catch (const std::bad_alloc&) {
        reason = QStringLiteral("cannot import the scene: not enough memory");
    } catch (const std::exception& exception) {
        reason = QStringLiteral("cannot import the scene: ") + QString::fromUtf8(exception.what());
    }
    setError(error, name, reason);
    return nullptr;
}

} // namespace

std::shared_ptr<SceneViewModel> SceneImport::load(const QString& path, QString* error, const Progress& progress)
{
    return load(QFile::encodeName(path), error, progress);
}

std::shared_ptr<SceneViewModel> SceneImport::load(const QByteArray& nativePath, QString* error,
                                                  const Progress& progress)
{
    const QString name = QFile::decodeName(nativePath);
    // Assimp would wait for a writer on a FIFO: only ordinary files are read.
    const QFileInfo info(name);
    if (!info.exists()) {
        setError(error, name, QStringLiteral("cannot open the file: no such file"));
        return nullptr;
    }
    if (info.isDir()) {
        setError(error, name, QStringLiteral("cannot read the file: it is a directory"));
        return nullptr;
    }
    if (!info.isFile()) {
        setError(error, name, QStringLiteral("cannot read the file: it is not a regular file"));
        return nullptr;
    }
    return import(name, error, progress, [&nativePath](Assimp::Importer& importer) {
        return importer.ReadFile(nativePath.constData(), sceneImportFlags);
    });
}

std::shared_ptr<SceneViewModel> SceneImport::loadFromData(const QByteArray& data, const QByteArray& extension,
                                                          const QString& name, QString* error)
{
    if (data.isEmpty()) {
        setError(error, name, QStringLiteral("cannot import the scene: the file is empty"));
        return nullptr;
    }
    return import(name, error, {}, [&data, &extension](Assimp::Importer& importer) {
        return importer.ReadFileFromMemory(data.constData(), static_cast<std::size_t>(data.size()), sceneImportFlags,
                                           extension.constData());
    });
}

QStringList SceneImport::fileExtensions()
{
    aiString list;
    Assimp::Importer().GetExtensionList(list);
    QStringList extensions;
    // "*.3ds;*.obj;..."
    for (const QString& pattern : QString::fromUtf8(list.C_Str()).split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        QString extension = pattern.trimmed();
        if (extension.startsWith(QLatin1String("*.")))
            extension.remove(0, 2);
        if (!extension.isEmpty())
            extensions.append(extension.toLower());
    }
    extensions.sort();
    extensions.removeDuplicates();
    return extensions;
}

} // namespace Brennvik
