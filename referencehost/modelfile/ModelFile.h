#pragma once

#include "LoadProgress.h"
#include "ModelFileError.h"
#include "ModelFileLimits.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace Brennvik {

class SceneViewModel;

/// Model snapshots as JSON files: a view model's display tree, label tree,
/// entry lookups and edit primitives (the format is described in
/// docs/model-file-format.md). Loading either gives a complete new view model
/// or one positioned error; nothing is ever half-loaded.
class BRENNVIK_HOST_EXPORT ModelFile
{
public:
    /// The "format" value of every model file.
    static constexpr const char* formatName = "brennvik-display-model";
    /// The "version" this host writes and reads.
    static constexpr int formatVersion = 1;

    /// Reads the model file at \a path. Null on failure, with the reason in
    /// \a error (which may be null). \a progress, when set, is told how far
    /// the load has come (see ModelFileProgress).
    static std::shared_ptr<SceneViewModel> load(const QString& path, ModelFileError* error,
                                                const ModelFileLimits& limits = {},
                                                const ModelFileProgress& progress = {});
    /// As load(), for the file name's bytes as the system takes them, which
    /// need not be valid text; messages show it as QFile::decodeName() does.
    static std::shared_ptr<SceneViewModel> load(const QByteArray& nativePath, ModelFileError* error,
                                                const ModelFileLimits& limits = {},
                                                const ModelFileProgress& progress = {});
    /// Reads a model from \a json; \a name stands for the file in messages.
    static std::shared_ptr<SceneViewModel> loadFromData(const QByteArray& json, const QString& name,
                                                        ModelFileError* error, const ModelFileLimits& limits = {},
                                                        const ModelFileProgress& progress = {});

    /// Writes \a viewModel to \a path, replacing the file only once all of it
    /// is written. False with "path: reason" in \a error (which may be null).
    static bool save(const SceneViewModel& viewModel, const QString& path, QString* error,
                     const ModelFileLimits& limits = {});
    /// As save(), for the file name's bytes as the system takes them, which
    /// need not be valid text; messages show it as QFile::decodeName() does.
    static bool save(const SceneViewModel& viewModel, const QByteArray& nativePath, QString* error,
                     const ModelFileLimits& limits = {});
    /// The file's text for \a viewModel (indented, keys in alphabetical order,
    /// so the same model always gives the same bytes); empty when the model
    /// cannot be written, with the reason in \a error (which may be null).
    static QByteArray toJson(const SceneViewModel& viewModel, QString* error = nullptr,
                             const ModelFileLimits& limits = {});
};

} // namespace Brennvik
