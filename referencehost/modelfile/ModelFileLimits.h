#pragma once

#include <hostcontract/HostExport.h>

#include <QtGlobal>

namespace Brennvik {

/// Bounds on what a model file may hold. A file beyond them is refused as a
/// whole, so that a damaged or hostile file cannot exhaust memory or the
/// stack; the defaults are far above what the application builds.
struct BRENNVIK_HOST_EXPORT ModelFileLimits
{
    /// Display items in all trees together.
    int maxItems = 1000000;
    /// Levels of items, the root being level 1. The loader recurses once per level.
    int maxDepth = 256;
    /// Characters of a name: item and primitive names, property names, ids,
    /// shell type and name, context names, keys.
    int maxNameLength = 1024;
    /// Characters of a property value or a label.
    int maxTextLength = 65536;
    /// Entries of one list: properties of an item or primitive, geometry
    /// items of a module, process steps, edit primitives.
    int maxListLength = 100000;
    /// Bytes of the file.
    qint64 maxFileSize = qint64(512) * 1024 * 1024;
};

} // namespace Brennvik
