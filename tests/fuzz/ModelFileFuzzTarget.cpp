#include "ModelFileFuzzTarget.h"

#include <referencehost/model/SceneViewModel.h>
#include <referencehost/modelfile/ModelFile.h>

#include <QList>

namespace Brennvik::Test {

namespace {

const QString kName = QStringLiteral("fuzz.json");

// Limits far below the defaults, so that short inputs reach every limit check.
ModelFileLimits tightLimits()
{
    ModelFileLimits limits;
    limits.maxItems = 8;
    limits.maxDepth = 4;
    limits.maxNameLength = 24; // long enough for every item kind
    limits.maxTextLength = 16;
    limits.maxListLength = 3;
    return limits;
}

// Empty when \a error is a proper positioned error about \a data.
QString checkError(const QByteArray& data, const ModelFileError& error)
{
    if (error.message.isEmpty())
        return QStringLiteral("an error without a message");
    if (error.file != kName)
        return QStringLiteral("the error names \"%1\" instead of the file").arg(error.file);
    // loadFromData has no file-level errors for inputs within the size
    // limit: every error must point into the text.
    if (error.line < 1 || error.column < 1)
        return QStringLiteral("an error without a position: %1").arg(error.toString());
    const QList<QByteArray> lines = data.split('\n');
    if (error.line > lines.size())
        return QStringLiteral("the error's line is past the end (%1 lines): %2")
            .arg(lines.size())
            .arg(error.toString());
    // Columns count characters, never more than the line's bytes (+1 for
    // the place just after its last character). A leading byte order mark
    // takes no column.
    const int lineBytes = lines.at(error.line - 1).size();
    if (error.column > lineBytes + 1)
        return QStringLiteral("the error's column is past the end of line %1 (%2 bytes): %3")
            .arg(error.line)
            .arg(lineBytes)
            .arg(error.toString());
    return {};
}

} // namespace

ModelFileFuzzOutcome checkModelFileInput(const QByteArray& data)
{
    ModelFileFuzzOutcome outcome;
    ModelFileError error;
    const auto model = ModelFile::loadFromData(data, kName, &error);
    outcome.loaded = model != nullptr;

    // Tight limits may only refuse more, never less, and never without a place.
    ModelFileError tightError;
    const auto tightModel = ModelFile::loadFromData(data, kName, &tightError, tightLimits());

    if (!model) {
        outcome.error = error.toString();
        outcome.finding = checkError(data, error);
        if (outcome.finding.isEmpty() && tightModel)
            outcome.finding
                = QStringLiteral("loads with tight limits but not with the defaults: %1").arg(outcome.error);
        return outcome;
    }
    if (!tightModel) {
        outcome.finding = checkError(data, tightError);
        if (!outcome.finding.isEmpty())
            outcome.finding.prepend(QStringLiteral("with tight limits: "));
    }

    // A loaded model must save, and what it saves must load back to the same text.
    QString saveError;
    const QByteArray saved = ModelFile::toJson(*model, &saveError);
    if (saved.isEmpty()) {
        outcome.finding = QStringLiteral("a loaded model cannot be saved: %1").arg(saveError);
        return outcome;
    }
    ModelFileError reloadError;
    const auto reloaded = ModelFile::loadFromData(saved, kName, &reloadError);
    if (!reloaded) {
        outcome.finding = QStringLiteral("a saved model does not load: %1").arg(reloadError.toString());
        return outcome;
    }
    const QByteArray savedAgain = ModelFile::toJson(*reloaded, &saveError);
    if (savedAgain != saved)
        outcome.finding = QStringLiteral("saving the reloaded model gives other text (%1 bytes, then %2 bytes)")
                              .arg(saved.size())
                              .arg(savedAgain.size());
    return outcome;
}

} // namespace Brennvik::Test
