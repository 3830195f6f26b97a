#include "PackedProperties.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <unordered_map>

namespace Brennvik {

namespace {

// Block layout: the number of business and of display properties (two
// 32-bit counts), then the business and then the display properties, each
// as its name and its value. A text is its length and its bytes; a length
// below 255 takes one byte, a longer one the byte 255 and a size_t.
using Count = std::uint32_t;
constexpr std::size_t HeaderSize = 2 * sizeof(Count);
constexpr unsigned char LongLength = 0xFF;

std::size_t packedSize(std::string_view text)
{
    return (text.size() < LongLength ? 1 : 1 + sizeof(std::size_t)) + text.size();
}

char* writeText(char* at, std::string_view text)
{
    if (text.size() < LongLength) {
        *at++ = static_cast<char>(text.size());
    } else {
        *at++ = static_cast<char>(LongLength);
        const std::size_t size = text.size();
        std::memcpy(at, &size, sizeof size);
        at += sizeof size;
    }
    std::memcpy(at, text.data(), text.size());
    return at + text.size();
}

std::string_view readText(const char*& at)
{
    std::size_t size = static_cast<unsigned char>(*at++);
    if (size == LongLength) {
        std::memcpy(&size, at, sizeof size);
        at += sizeof size;
    }
    const std::string_view text(at, size);
    at += size;
    return text;
}

Count readCount(const char* block, PackedProperties::Kind kind)
{
    Count count = 0;
    std::memcpy(&count, block + (kind == PackedProperties::Kind::Business ? 0 : sizeof(Count)), sizeof count);
    return count;
}

// The position after \a count properties from \a at.
const char* skipEntries(const char* at, Count count)
{
    for (; count > 0; --count) {
        readText(at);
        readText(at);
    }
    return at;
}

PackedProperties::Kind otherKind(PackedProperties::Kind kind)
{
    return kind == PackedProperties::Kind::Business ? PackedProperties::Kind::Display
                                                    : PackedProperties::Kind::Business;
}

// Calls visit(name, value) for the properties of \a kind in order, until it returns false.
template<typename Visit>
void visitEntries(const char* block, PackedProperties::Kind kind, Visit visit)
{
    if (!block)
        return;
    const char* at = block + HeaderSize;
    if (kind == PackedProperties::Kind::Display)
        at = skipEntries(at, readCount(block, PackedProperties::Kind::Business));
    for (Count i = readCount(block, kind); i > 0; --i) {
        const std::string_view name = readText(at);
        const std::string_view value = readText(at);
        if (!visit(name, value))
            return;
    }
}

} // namespace

PackedProperties::PackedProperties(const PackedProperties& other)
{
    *this = other;
}

PackedProperties& PackedProperties::operator=(const PackedProperties& other)
{
    if (this == &other)
        return *this;
    if (!other.m_block) {
        m_block.reset();
        return *this;
    }
    const std::size_t size = other.blockSize();
    std::unique_ptr<char[]> block(new char[size]);
    std::memcpy(block.get(), other.m_block.get(), size);
    m_block = std::move(block);
    return *this;
}

bool PackedProperties::empty(Kind kind) const
{
    return size(kind) == 0;
}

std::size_t PackedProperties::size(Kind kind) const
{
    return m_block ? readCount(m_block.get(), kind) : 0;
}

std::optional<std::string> PackedProperties::find(Kind kind, std::string_view name) const
{
    std::optional<std::string> found;
    visitEntries(m_block.get(), kind, [&found, name](std::string_view entryName, std::string_view value) {
        if (entryName != name)
            return true;
        found.emplace(value);
        return false;
    });
    return found;
}

void PackedProperties::appendTo(Kind kind, PropertyList& list) const
{
    visitEntries(m_block.get(), kind, [&list](std::string_view name, std::string_view value) {
        list.emplace_back(std::string(name), std::string(value));
        return true;
    });
}

PropertyList PackedProperties::list(Kind kind) const
{
    PropertyList properties;
    appendTo(kind, properties);
    return properties;
}

void PackedProperties::set(Kind kind, std::string_view name, std::string_view value)
{
    Entries changed = entries(kind);
    const auto it = std::find_if(changed.begin(), changed.end(), [name](const Entry& e) { return e.first == name; });
    if (it != changed.end())
        it->second = value;
    else
        changed.emplace_back(name, value);
    replace(kind, changed);
}

void PackedProperties::setAll(Kind kind, const PropertyList& properties)
{
    if (properties.empty())
        return;
    // Loaded items bring up to 100,000 properties: an index of the names
    // instead of a search of the list per property. The first of equal names
    // is the one that counts, as in set.
    Entries changed = entries(kind);
    std::unordered_map<std::string_view, std::size_t> positions;
    positions.reserve(changed.size() + properties.size());
    for (std::size_t i = 0; i < changed.size(); ++i)
        positions.emplace(changed[i].first, i);
    for (const auto& [name, value] : properties) {
        const auto [position, added] = positions.emplace(name, changed.size());
        if (added)
            changed.emplace_back(name, value);
        else
            changed[position->second].second = value;
    }
    replace(kind, changed);
}

PackedProperties::Entries PackedProperties::entries(Kind kind) const
{
    Entries result;
    result.reserve(size(kind));
    visitEntries(m_block.get(), kind, [&result](std::string_view name, std::string_view value) {
        result.emplace_back(name, value);
        return true;
    });
    return result;
}

void PackedProperties::replace(Kind kind, const Entries& changed)
{
    const Entries kept = entries(otherKind(kind));
    if (kind == Kind::Business)
        repack(changed, kept);
    else
        repack(kept, changed);
}

void PackedProperties::repack(const Entries& business, const Entries& display)
{
    if (business.empty() && display.empty()) {
        m_block.reset();
        return;
    }
    if (business.size() > std::numeric_limits<Count>::max() || display.size() > std::numeric_limits<Count>::max())
        throw std::length_error("PackedProperties: too many properties");
    std::size_t size = HeaderSize;
    for (const Entries* entries : {&business, &display}) {
        for (const auto& [name, value] : *entries)
            size += packedSize(name) + packedSize(value);
    }
    std::unique_ptr<char[]> block(new char[size]);
    const Count counts[2] = {static_cast<Count>(business.size()), static_cast<Count>(display.size())};
    std::memcpy(block.get(), counts, HeaderSize);
    char* at = block.get() + HeaderSize;
    for (const Entries* entries : {&business, &display}) {
        for (const auto& [name, value] : *entries)
            at = writeText(writeText(at, name), value);
    }
    m_block = std::move(block);
}

std::size_t PackedProperties::blockSize() const
{
    const char* block = m_block.get();
    const char* end = skipEntries(block + HeaderSize, readCount(block, Kind::Business));
    end = skipEntries(end, readCount(block, Kind::Display));
    return static_cast<std::size_t>(end - block);
}

} // namespace Brennvik
