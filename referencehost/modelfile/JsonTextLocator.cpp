#include "JsonTextLocator.h"

#include <QSet>

#include <algorithm>

#include <vector>

namespace Brennvik {

namespace {

bool isWhitespace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool isContinuationByte(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// Qt's parser refuses objects and arrays nested deeper than this.
constexpr std::size_t kParserNestingLimit = 1024;

/// \a key as Qt's parser compares it with a key written without escapes:
/// a surrogate that is not part of a pair stands for U+FFFD.
QString keyAsParserCompares(QString key)
{
    for (int i = 0; i < key.size(); ++i) {
        const QChar c = key.at(i);
        if (c.isHighSurrogate() && i + 1 < key.size() && key.at(i + 1).isLowSurrogate())
            ++i;
        else if (c.isSurrogate())
            key[i] = QChar::ReplacementCharacter;
    }
    return key;
}

int hexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

} // namespace

JsonTextLocator::JsonTextLocator(QByteArray text)
    : m_text(std::move(text))
{
}

int JsonTextLocator::valueOffset(const JsonPath& path) const
{
    int found = 0;
    const int offset = walk(path, &found);
    return found == path.size() ? offset : -1;
}

JsonTextLocator::Position JsonTextLocator::valuePosition(const JsonPath& path) const
{
    int found = 0;
    return position(walk(path, &found));
}

JsonTextLocator::Position JsonTextLocator::position(int offset) const
{
    const int end = std::min(std::max(offset, 0), int(m_text.size()));
    Position result;
    int lineStart = m_text.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    for (int i = lineStart; i < end; ++i) {
        if (m_text[i] == '\n') {
            ++result.line;
            lineStart = i + 1;
        }
    }
    for (int i = lineStart; i < end; ++i) {
        if (!isContinuationByte(m_text[i]))
            ++result.column;
    }
    return result;
}

std::optional<JsonTextLocator::DuplicateKey>
JsonTextLocator::firstDuplicateKey(const std::function<void(int scanned)>& scanned) const
{
    constexpr int reportEvery = 1 << 20;
    int nextReport = reportEvery;
    struct Frame
    {
        bool object = false;
        bool expectKey = false;
        QSet<QString> keys;
    };
    std::vector<Frame> frames;
    int pos = start();
    while (pos >= 0 && pos < m_text.size()) {
        if (pos >= nextReport && scanned) {
            scanned(pos);
            nextReport = pos + reportEvery;
        }
        const char c = m_text[pos];
        if (c == '{' || c == '[') {
            // Past the parser's limit the file is refused for its nesting
            // anyway; keys kept per level would cost memory in proportion to
            // the file instead.
            if (frames.size() == kParserNestingLimit)
                return std::nullopt;
            frames.push_back(Frame{c == '{', c == '{', {}});
            ++pos;
        } else if (c == '}' || c == ']') {
            if (frames.empty())
                return std::nullopt;
            frames.pop_back();
            ++pos;
        } else if (c == ',') {
            if (!frames.empty() && frames.back().object)
                frames.back().expectKey = true;
            ++pos;
        } else if (c == '"') {
            const bool isKey = !frames.empty() && frames.back().object && frames.back().expectKey;
            QString key;
            const int keyStart = pos;
            pos = skipString(pos, isKey ? &key : nullptr);
            if (isKey && pos >= 0) {
                // Keys that differ only in lone surrogates are one key to the
                // parser when only one of them is escaped; taking them as one
                // here as well may refuse a pair the parser would keep apart,
                // but lets no repeated key through.
                key = keyAsParserCompares(std::move(key));
                Frame& frame = frames.back();
                if (frame.keys.contains(key))
                    return DuplicateKey{key, keyStart};
                frame.keys.insert(key);
                frame.expectKey = false;
            }
        } else {
            // Whitespace, ':' and the characters of numbers and literals.
            ++pos;
        }
    }
    return std::nullopt;
}

bool JsonTextLocator::endsInsideValue() const
{
    int depth = 0;
    int pos = start();
    while (pos < m_text.size()) {
        const char c = m_text[pos];
        if (c == '"') {
            pos = skipString(pos, nullptr);
            if (pos < 0)
                return true;
            continue;
        }
        if (c == '{' || c == '[')
            ++depth;
        else if ((c == '}' || c == ']') && depth > 0)
            --depth;
        ++pos;
    }
    return depth > 0;
}

int JsonTextLocator::lastNonWhitespace() const
{
    int pos = m_text.size() - 1;
    while (pos >= start() && isWhitespace(m_text[pos]))
        --pos;
    return pos >= start() ? pos : -1;
}

int JsonTextLocator::walk(const JsonPath& path, int* found) const
{
    *found = 0;
    int pos = skipWhitespace(start());
    for (const JsonPath::Step& step : path.steps()) {
        if (pos >= m_text.size())
            return pos;
        int next = -1;
        if (const auto* key = std::get_if<QString>(&step)) {
            if (m_text[pos] != '{')
                return pos;
            int at = pos + 1;
            while (true) {
                at = skipWhitespace(at);
                if (at >= m_text.size() || m_text[at] != '"')
                    break;
                QString memberKey;
                at = skipWhitespace(skipString(at, &memberKey));
                if (at < 0 || at >= m_text.size() || m_text[at] != ':')
                    break;
                at = skipWhitespace(at + 1);
                if (memberKey == *key)
                    next = at;
                at = skipWhitespace(skipValue(at));
                if (at < 0 || at >= m_text.size() || m_text[at] != ',')
                    break;
                ++at;
            }
        } else {
            const int index = std::get<int>(step);
            if (m_text[pos] != '[' || index < 0)
                return pos;
            int at = skipWhitespace(pos + 1);
            for (int i = 0; at >= 0 && at < m_text.size() && m_text[at] != ']'; ++i) {
                if (i == index) {
                    next = at;
                    break;
                }
                at = skipWhitespace(skipValue(at));
                if (at < 0 || at >= m_text.size() || m_text[at] != ',')
                    break;
                at = skipWhitespace(at + 1);
            }
        }
        if (next < 0)
            return pos;
        pos = next;
        ++*found;
    }
    return pos;
}

int JsonTextLocator::start() const
{
    return m_text.startsWith("\xEF\xBB\xBF") ? 3 : 0;
}

int JsonTextLocator::skipWhitespace(int pos) const
{
    if (pos < 0)
        return pos;
    while (pos < m_text.size() && isWhitespace(m_text[pos]))
        ++pos;
    return pos;
}

int JsonTextLocator::skipString(int pos, QString* decoded) const
{
    if (pos < 0 || pos >= m_text.size() || m_text[pos] != '"')
        return -1;
    ++pos;
    int runStart = pos;
    const auto flushRun = [&](int runEnd) {
        if (decoded && runEnd > runStart)
            decoded->append(QString::fromUtf8(m_text.constData() + runStart, static_cast<int>(runEnd - runStart)));
    };
    while (pos < m_text.size()) {
        const char c = m_text[pos];
        if (c == '"') {
            flushRun(pos);
            return pos + 1;
        }
        if (c != '\\') {
            ++pos;
            continue;
        }
        flushRun(pos);
        if (pos + 1 >= m_text.size())
            return -1;
        const char escape = m_text[pos + 1];
        pos += 2;
        QChar character;
        switch (escape) {
        case '"':
            character = QLatin1Char('"');
            break;
        case '\\':
            character = QLatin1Char('\\');
            break;
        case '/':
            character = QLatin1Char('/');
            break;
        case 'b':
            character = QLatin1Char('\b');
            break;
        case 'f':
            character = QLatin1Char('\f');
            break;
        case 'n':
            character = QLatin1Char('\n');
            break;
        case 'r':
            character = QLatin1Char('\r');
            break;
        case 't':
            character = QLatin1Char('\t');
            break;
        case 'u': {
            if (pos + 4 > m_text.size())
                return -1;
            int unit = 0;
            for (int i = 0; i < 4; ++i) {
                const int digit = hexValue(m_text[pos + i]);
                if (digit < 0)
                    return -1;
                unit = unit * 16 + digit;
            }
            pos += 4;
            // Surrogate pairs arrive as two escapes; QString keeps UTF-16 as is.
            character = QChar(static_cast<ushort>(unit));
            break;
        }
        default:
            // QJsonDocument takes an unknown escape as the character itself.
            character = QLatin1Char(escape);
            break;
        }
        if (decoded)
            decoded->append(character);
        runStart = pos;
    }
    return -1;
}

int JsonTextLocator::skipValue(int pos) const
{
    if (pos < 0 || pos >= m_text.size())
        return -1;
    const char first = m_text[pos];
    if (first == '"')
        return skipString(pos, nullptr);
    if (first == '{' || first == '[') {
        int depth = 0;
        while (pos < m_text.size()) {
            const char c = m_text[pos];
            if (c == '"') {
                pos = skipString(pos, nullptr);
                if (pos < 0)
                    return -1;
                continue;
            }
            if (c == '{' || c == '[') {
                ++depth;
            } else if (c == '}' || c == ']') {
                if (--depth == 0)
                    return pos + 1;
            }
            ++pos;
        }
        return -1;
    }
    while (pos < m_text.size()) {
        const char c = m_text[pos];
        if (c == ',' || c == '}' || c == ']' || isWhitespace(c))
            break;
        ++pos;
    }
    return pos;
}

} // namespace Brennvik
