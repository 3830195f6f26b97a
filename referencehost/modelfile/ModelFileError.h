#pragma once

#include <hostcontract/HostExport.h>

#include <QString>

namespace Brennvik {

/// Why a model file could not be loaded, and where.
struct BRENNVIK_HOST_EXPORT ModelFileError
{
    /// The file name as given to the loader (or the name given with the data).
    QString file;
    /// 1-based; 0 when the error has no place in the text (an unreadable file).
    int line = 0;
    /// 1-based, in characters; 0 when line is 0.
    int column = 0;
    QString message;

    /// "file:line:column: message", or "file: message" without a position.
    QString toString() const;
};

} // namespace Brennvik
