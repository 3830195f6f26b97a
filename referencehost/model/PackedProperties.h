#pragma once

#include <hostcontract/HostExport.h>
#include <hostcontract/HostTypes.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Brennvik {

/// The business and the display properties of one display item, packed into
/// one heap block of lengths and text (names included).
///
/// A generated model holds millions of items with a few short properties
/// each: as two lists of string pairs they took about 300 bytes per item,
/// packed they take about 50. The lists are made only when someone asks for
/// them. Each list keeps its order; a name is in a list at most once when it
/// was put there through set or setAll.
class BRENNVIK_HOST_EXPORT PackedProperties
{
public:
    /// Which of the two lists.
    enum class Kind : std::uint8_t {
        Business,
        Display,
    };

    PackedProperties() = default;
    PackedProperties(const PackedProperties& other);
    PackedProperties& operator=(const PackedProperties& other);
    PackedProperties(PackedProperties&& other) noexcept = default;
    PackedProperties& operator=(PackedProperties&& other) noexcept = default;
    ~PackedProperties() = default;

    bool empty(Kind kind) const;
    std::size_t size(Kind kind) const;
    /// The value of the first property called \a name; empty if there is none.
    std::optional<std::string> find(Kind kind, std::string_view name) const;
    /// Appends the properties of \a kind to \a list, in order.
    void appendTo(Kind kind, PropertyList& list) const;
    /// The properties of \a kind, in order.
    PropertyList list(Kind kind) const;

    /// Replaces the value of \a name in place, or appends the property.
    void set(Kind kind, std::string_view name, std::string_view value);
    /// Sets each of \a properties in order as set would (a repeated name keeps
    /// its first place and its last value), in time linear in both lists.
    void setAll(Kind kind, const PropertyList& properties);

private:
    using Entry = std::pair<std::string_view, std::string_view>;
    using Entries = std::vector<Entry>;

    /// The entries of \a kind as views into the block.
    Entries entries(Kind kind) const;
    /// Puts \a changed in the place of the properties of \a kind.
    void replace(Kind kind, const Entries& changed);
    /// Packs \a business and \a display into a new block; the views may point
    /// into the old one, which goes only afterwards.
    void repack(const Entries& business, const Entries& display);
    std::size_t blockSize() const;

    // Null when both lists are empty.
    std::unique_ptr<char[]> m_block;
};

} // namespace Brennvik
