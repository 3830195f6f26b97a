#pragma once

#include <QString>

namespace Brennvik {

/// \a text in double quotes for a message, cut to a few dozen characters
/// (marked with "..."), so that a huge key or name read from a file or a
/// model cannot make a huge message.
QString quotedExcerpt(const QString& text);

} // namespace Brennvik
