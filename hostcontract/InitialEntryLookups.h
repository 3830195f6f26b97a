#pragma once

#include "HostExport.h"

#include <memory>
#include <string>

namespace Brennvik {

class DisplayItemInterface;

/// Context kinds with lookups of their own. Every other kind uses the
/// display model's default entry owner.
namespace ContextKind {
constexpr int ProcessStep = 6; ///< a process step: the entry is found by index
constexpr int Tool = 7;        ///< a tool: the entry is found by key
} // namespace ContextKind

/// The object that is active in the application (a process step, a tool,
/// a part, ...). Its kind decides how the display model dialog finds the
/// display item to show first.
class BRENNVIK_HOST_EXPORT ActiveContext
{
public:
    virtual ~ActiveContext() = default;
    virtual int getContextKind() const = 0;
};

/// Index type of the kind-6 lookup.
using Kind6Index = int;

/// Kind 6: maps an index (DisplayModel::getKind6Index) to a display item.
class BRENNVIK_HOST_EXPORT Kind6Provider
{
public:
    virtual ~Kind6Provider() = default;
    /// Empty when the index names no item.
    virtual std::shared_ptr<DisplayItemInterface> getDisplayItemAt(Kind6Index index) const = 0;
};

/// Key type of the kind-7 lookup.
using Kind7Key = std::string;

/// Kind 7: gives the key of the active object.
class BRENNVIK_HOST_EXPORT Kind7Source
{
public:
    virtual ~Kind7Source() = default;
    virtual Kind7Key getKey() const = 0;
};

/// Kind 7: finds the display item of a key.
class BRENNVIK_HOST_EXPORT Kind7Lookup
{
public:
    virtual ~Kind7Lookup() = default;
    /// Empty when no item has that key.
    virtual std::shared_ptr<DisplayItemInterface> findDisplayItem(const Kind7Key& key) const = 0;
};

/// Other kinds: owns the display item to show first.
class BRENNVIK_HOST_EXPORT DefaultEntryOwner
{
public:
    virtual ~DefaultEntryOwner() = default;
    virtual std::shared_ptr<DisplayItemInterface> getEntryDisplayItem() const = 0;
};

} // namespace Brennvik
