#pragma once

#include <QByteArray>
#include <QString>

namespace Brennvik::Test {

/// What one input did to the model-file loader.
struct ModelFileFuzzOutcome
{
    /// The input loaded into a model (with the default limits).
    bool loaded = false;
    /// The error when it did not load, as "file:line:column: message".
    QString error;
    /// Empty when the loader behaved; otherwise what it did wrong: an error
    /// without a place in the text, a loaded model that cannot be saved or
    /// does not load back to the same file, or tight limits that let through
    /// what the defaults refuse.
    QString finding;
};

/// Feeds \a data to ModelFile::loadFromData and checks the result: either a
/// model that survives a save-and-load round trip byte for byte, or one error
/// positioned inside the text. The fuzzer and the corpus replay test both
/// call this, so a file that once broke the fuzzer replays the same way.
ModelFileFuzzOutcome checkModelFileInput(const QByteArray& data);

} // namespace Brennvik::Test
