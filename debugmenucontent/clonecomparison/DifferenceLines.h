#pragma once

#include <QObject>

#include <functional>
#include <memory>

class QPlainTextEdit;
class QTextBlock;
class QTreeWidget;

namespace Brennvik {

class DisplayItemInterface;

/// Calls back with the text block under the mouse when the user double clicks
/// a plain-text edit; the edit's own handling of the click goes on as usual.
class LineDoubleClickWatch : public QObject
{
public:
    using LineDoubleClicked = std::function<void(const QTextBlock& line)>;

    /// Watches \a edit's viewport; the watch is a child of \a edit.
    LineDoubleClickWatch(QPlainTextEdit* edit, LineDoubleClicked lineDoubleClicked);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPlainTextEdit* m_edit;
    LineDoubleClicked m_lineDoubleClicked;
};

/// Makes the first row of \a tree (in pre-order) that shows \a item current,
/// with every row above it expanded and the row scrolled into view. Nothing
/// happens when no row shows it. Asks the host nothing.
void showItemRow(QTreeWidget* tree, const std::shared_ptr<DisplayItemInterface>& item);

} // namespace Brennvik
