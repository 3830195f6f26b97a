#include "MessageText.h"

namespace Brennvik {

namespace {

constexpr int kExcerptLength = 40;

} // namespace

QString quotedExcerpt(const QString& text)
{
    if (text.size() <= kExcerptLength)
        return QLatin1Char('"') + text + QLatin1Char('"');
    int length = kExcerptLength;
    // Never half a surrogate pair.
    if (text.at(length - 1).isHighSurrogate())
        --length;
    return QLatin1Char('"') + text.left(length) + QStringLiteral("...\"");
}

} // namespace Brennvik
