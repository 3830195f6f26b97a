#include "CloneDefect.h"

#include <array>
#include <utility>

namespace Brennvik {

namespace {

constexpr std::array<std::pair<CloneDefect::Kind, std::string_view>, 8> KindNames{{
    {CloneDefect::Kind::DropChild, "drop-child"},
    {CloneDefect::Kind::AddChild, "add-child"},
    {CloneDefect::Kind::ShareChild, "share-child"},
    {CloneDefect::Kind::ChangeChildType, "change-type"},
    {CloneDefect::Kind::FlipVisibility, "flip-visibility"},
    {CloneDefect::Kind::ChangePropertyValue, "change-property"},
    {CloneDefect::Kind::RepeatChild, "repeat-child"},
    {CloneDefect::Kind::DropGeometryEntry, "drop-geometry-entry"},
}};

} // namespace

std::string CloneDefect::toString(Kind kind)
{
    for (const auto& [k, name] : KindNames) {
        if (k == kind)
            return std::string(name);
    }
    return {};
}

std::optional<CloneDefect::Kind> CloneDefect::kindFromString(std::string_view text)
{
    for (const auto& [k, name] : KindNames) {
        if (name == text)
            return k;
    }
    return std::nullopt;
}

std::string CloneDefect::toString() const
{
    return toString(kind) + ":" + target;
}

std::optional<CloneDefect> CloneDefect::fromString(std::string_view text)
{
    const auto colon = text.find(':');
    if (colon == std::string_view::npos)
        return std::nullopt;
    const auto kind = kindFromString(text.substr(0, colon));
    const auto target = text.substr(colon + 1);
    if (!kind || target.empty())
        return std::nullopt;
    CloneDefect defect;
    defect.kind = *kind;
    defect.target = std::string(target);
    return defect;
}

bool CloneDefect::operator==(const CloneDefect& other) const
{
    return kind == other.kind && target == other.target && property == other.property && value == other.value;
}

} // namespace Brennvik
