#pragma once

#include <QString>

#include <cstdint>
#include <optional>

class QTreeWidget;
class QTreeWidgetItem;

namespace Brennvik {

class RowRemovalWatch;
class ViewModelInterface;

/// The property-name fragment that a search criterion of the search type box
/// stands for: empty for "Any (*)" (0), "pointer" (1), "display item type"
/// (2); nothing for any other criterion.
std::optional<QString> searchNameFragment(int criterion);

/// "Find next": the first row of \a tree after \a start (from the top when it
/// is null) whose display item has a property whose name contains
/// \a nameFragment (any name when it is empty) and whose value contains
/// \a searchValue, both ignoring case. Rows are visited depth first, pre-order,
/// collapsed ones included, and the search does not wrap. Null when nothing
/// matches or when \a watch sees rows go while the host is asked.
QTreeWidgetItem* findNextMatchingRow(QTreeWidget* tree, QTreeWidgetItem* start, const QString& nameFragment,
                                     const QString& searchValue, const RowRemovalWatch& watch);

/// The host's count of display items below and with the root of \a viewModel's
/// display model; 0 without a view model, display model or root.
std::uint64_t displayItemCount(const ViewModelInterface* viewModel);

} // namespace Brennvik
