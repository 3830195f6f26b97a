#pragma once

namespace Brennvik {

/// The columns of a display item row: the name with the visibility icon,
/// then the row's index text (left empty where a row shows none).
enum RowColumn : int {
    NameColumn = 0,
    IndexColumn = 1,
};

} // namespace Brennvik
