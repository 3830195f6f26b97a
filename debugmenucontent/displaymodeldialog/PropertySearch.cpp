#include "PropertySearch.h"

#include "RowRemovalWatch.h"

#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/DisplayItemInterface.h>
#include <hostcontract/DisplayModel.h>
#include <hostcontract/HostTypes.h>
#include <hostcontract/ViewModelInterface.h>

#include <QTreeWidget>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace Brennvik {

namespace {

// A search text, prepared once per search: Qt's case-insensitive match, with
// a byte-wise shortcut for the usual case of ASCII on both sides (the host's
// texts are UTF-8; converting every property to a QString would cost more than
// reading the properties).
class SearchText
{
public:
    explicit SearchText(const QString& text)
        : m_text(text)
        , m_utf8(text.toStdString())
        , m_ascii(isAscii(m_utf8))
    {
    }

    bool isEmpty() const { return m_text.isEmpty(); }

    /// Whether \a haystack contains the text, ignoring case.
    bool foundIn(const std::string& haystack) const
    {
        // Non-ASCII characters can fold to ASCII ones (the Kelvin sign to "k"),
        // so only an all-ASCII haystack takes the shortcut.
        if (m_ascii && isAscii(haystack)) {
            const auto equal = [](char a, char b) { return asciiLower(a) == asciiLower(b); };
            return std::search(haystack.begin(), haystack.end(), m_utf8.begin(), m_utf8.end(), equal) != haystack.end();
        }
        return QString::fromStdString(haystack).contains(m_text, Qt::CaseInsensitive);
    }

private:
    static bool isAscii(const std::string& text)
    {
        return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    }
    static char asciiLower(char c) { return (c >= 'A' && c <= 'Z') ? char(c - 'A' + 'a') : c; }

    QString m_text;
    std::string m_utf8;
    bool m_ascii;
};

// The name fragment and the value of one search.
struct SearchTerms
{
    SearchText nameFragment;
    SearchText value;
};

bool listMatches(const PropertyList& properties, const SearchTerms& terms)
{
    for (const Property& property : properties) {
        if (!terms.nameFragment.isEmpty() && !terms.nameFragment.foundIn(property.first))
            continue;
        if (terms.value.foundIn(property.second))
            return true;
    }
    return false;
}

// Whether the row's display item has a property matching the search. With an
// empty name fragment ("Any (*)") only the value counts.
bool rowMatches(QTreeWidgetItem* row, const SearchTerms& terms)
{
    DisplayItemTreeWidgetItem* itemRow = DisplayItemTreeWidgetItem::asDisplayItemRow(row);
    if (!itemRow)
        return false;
    const std::shared_ptr<DisplayItemInterface> item = itemRow->getDisplayItem();
    if (!item)
        return false;

    PropertyList businessObjectProperties;
    PropertyList displayItemProperties;
    item->getProperties(businessObjectProperties, displayItemProperties);
    return listMatches(businessObjectProperties, terms) || listMatches(displayItemProperties, terms);
}

// Whether \a row is the first to test: a pending start row is passed over
// (and the search begins after it) when it is met.
bool testsRow(QTreeWidgetItem* row, QTreeWidgetItem*& pendingStart)
{
    if (!pendingStart)
        return true;
    if (row == pendingStart)
        pendingStart = nullptr;
    return false;
}

// Pre-order from \a top with an explicit stack of (row, next child), so that
// a deep tree does not exhaust the call stack; children are read as the walk
// reaches them, as a recursive walk would. Null when nothing matches or rows
// went while the host was asked.
QTreeWidgetItem* findMatchingRow(QTreeWidgetItem* top, QTreeWidgetItem*& pendingStart, const SearchTerms& terms,
                                 const RowRemovalWatch& watch)
{
    const auto matches = [&](QTreeWidgetItem* row) { return testsRow(row, pendingStart) && rowMatches(row, terms); };
    if (matches(top))
        return watch.rowsRemoved() ? nullptr : top;
    std::vector<std::pair<QTreeWidgetItem*, int>> stack{{top, 0}};
    while (!stack.empty() && !watch.rowsRemoved()) {
        auto& [row, next] = stack.back();
        if (next >= row->childCount()) {
            stack.pop_back();
            continue;
        }
        QTreeWidgetItem* child = row->child(next++);
        if (matches(child))
            return watch.rowsRemoved() ? nullptr : child;
        stack.emplace_back(child, 0);
    }
    return nullptr;
}

} // namespace

std::optional<QString> searchNameFragment(int criterion)
{
    switch (criterion) {
    case 0:
        return QString();
    case 1:
        return QStringLiteral("pointer");
    case 2:
        return QStringLiteral("display item type");
    default:
        return std::nullopt;
    }
}

QTreeWidgetItem* findNextMatchingRow(QTreeWidget* tree, QTreeWidgetItem* start, const QString& nameFragment,
                                     const QString& searchValue, const RowRemovalWatch& watch)
{
    const SearchTerms terms{SearchText(nameFragment), SearchText(searchValue)};
    QTreeWidgetItem* pendingStart = start;
    for (int i = 0; i < tree->topLevelItemCount(); ++i) {
        QTreeWidgetItem* found = findMatchingRow(tree->topLevelItem(i), pendingStart, terms, watch);
        if (watch.rowsRemoved())
            return nullptr;
        if (found)
            return found;
    }
    return nullptr;
}

std::uint64_t displayItemCount(const ViewModelInterface* viewModel)
{
    if (!viewModel)
        return 0;
    DisplayModel* displayModel = viewModel->getDisplayModel();
    if (!displayModel)
        return 0;
    const std::shared_ptr<DisplayItemInterface> root = displayModel->getRootDisplayItem();
    return root ? root->getNumberOfDisplayItems() : 0;
}

} // namespace Brennvik
