#pragma once

#include <QJsonObject>

namespace Brennvik {

/// Bytes of QJsonDocument(\a document).toJson(QJsonDocument::Indented),
/// found without making the text, so that a text too large to be written or
/// read is refused before it takes memory. Recursion follows the nesting of
/// \a document.
qint64 indentedJsonSize(const QJsonObject& document);

} // namespace Brennvik
