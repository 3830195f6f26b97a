#include "RowText.h"

#include <boost/lexical_cast.hpp>

#include <algorithm>
#include <array>
#include <cstddef>

namespace Brennvik {

namespace {

// A host has a handful of item classes; beyond that many, the oldest is
// forgotten and cast again when it comes back.
constexpr std::size_t RememberedTypes = 16;

struct NonShellTypes
{
    std::array<const std::type_info*, RememberedTypes> types{};
    std::size_t next = 0;
};

// Rows are made on the GUI thread only.
NonShellTypes& nonShellTypes()
{
    static NonShellTypes types;
    return types;
}

} // namespace

bool isKnownNonShellType(const std::type_info& type)
{
    // By address: a class with a key function has one type_info object, and
    // a class that has several is merely cast again.
    const NonShellTypes& known = nonShellTypes();
    return std::find(known.types.begin(), known.types.end(), &type) != known.types.end();
}

void rememberNonShellType(const std::type_info& type)
{
    NonShellTypes& known = nonShellTypes();
    known.types[known.next] = &type;
    known.next = (known.next + 1) % RememberedTypes;
}

QString rowIndexText(int index)
{
    return QString::fromStdString(boost::lexical_cast<std::string>(index));
}

} // namespace Brennvik
