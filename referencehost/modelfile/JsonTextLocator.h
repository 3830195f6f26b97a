#pragma once

#include "JsonPath.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

namespace Brennvik {

/// Finds where values are in a JSON text, for error messages that point at
/// the offending line and column. Works on the raw UTF-8 text, next to a
/// QJsonDocument parsed from it, which keeps no positions.
///
/// Lookups scan the text on demand rather than indexing every value up front:
/// they are needed only once a file turns out to be wrong, and an index of a
/// large snapshot would cost more memory than the model itself. The scanner
/// keeps its own stack instead of recursing, so any nesting is safe.
class BRENNVIK_HOST_EXPORT JsonTextLocator
{
public:
    /// 1-based line and column; columns count characters, not bytes.
    struct Position
    {
        int line = 1;
        int column = 1;
        bool operator==(const Position& other) const { return line == other.line && column == other.column; }
    };

    /// A key that occurs twice in one object.
    struct DuplicateKey
    {
        QString key;
        /// Byte offset of the second occurrence's opening quote.
        int offset = -1;
    };

    explicit JsonTextLocator(QByteArray text);

    /// Byte offset of the first character of the value at \a path, or -1 when
    /// the text holds no such value or is not well-formed on the way there.
    /// For a key that occurs more than once the last occurrence counts, as in
    /// QJsonDocument.
    int valueOffset(const JsonPath& path) const;
    /// Position of the value at \a path; when it does not exist, the position
    /// of its nearest ancestor that does (the top-level value at least).
    Position valuePosition(const JsonPath& path) const;
    /// Line and column of byte \a offset; an offset past the end gives the
    /// position just after the last character. A leading byte order mark
    /// takes no column.
    Position position(int offset) const;
    /// The first key, in text order, that repeats a key of the same object,
    /// keys compared as Qt's parser compares them; empty when there is none,
    /// the text is not well-formed or it nests deeper than the parser takes
    /// before a repeated key (the parser refuses it then). \a scanned, when
    /// set, is told the bytes scanned so far, every megabyte or so.
    std::optional<DuplicateKey> firstDuplicateKey(const std::function<void(int scanned)>& scanned = {}) const;
    /// True when the text ends inside a string, an object or an array: it was
    /// cut short (or never finished).
    bool endsInsideValue() const;
    /// Offset of the last character that is not JSON whitespace; -1 for none.
    int lastNonWhitespace() const;

private:
    /// Offset of the value at the longest existing prefix of \a path; the
    /// number of steps found goes to \a found.
    int walk(const JsonPath& path, int* found) const;
    int start() const;
    int skipWhitespace(int pos) const;
    /// Position after the string starting at \a pos; -1 when it is not a
    /// well-formed string. Decodes it into \a decoded when given.
    int skipString(int pos, QString* decoded) const;
    /// Position after the value starting at \a pos; -1 when it is cut short.
    int skipValue(int pos) const;

    QByteArray m_text;
};

} // namespace Brennvik
