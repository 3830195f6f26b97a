#include "PropertyPaneCopy.h"

#include <QAction>
#include <QClipboard>
#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMenu>
#include <QPointer>
#include <QStringList>
#include <QTreeWidget>

#include <optional>

namespace Brennvik {

namespace {

void copyToClipboard(const QString& text)
{
    QGuiApplication::clipboard()->setText(text);
}

// Ctrl+C on a pane copies its current row. The whole row is copied, because
// the whole row shows as selected, whichever cell the user clicked.
class CopyKeyFilter : public QObject
{
public:
    explicit CopyKeyFilter(QTreeWidget* pane)
        : QObject(pane)
        , m_pane(pane)
    {
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched != m_pane || !isCopyKey(event))
            return false;
        // Claimed ahead of any window shortcut and of the view's own copy of one cell.
        event->accept();
        if (event->type() == QEvent::KeyPress) {
            if (const QTreeWidgetItem* row = m_pane->currentItem())
                copyToClipboard(propertyRowLine(*row));
        }
        return true;
    }

private:
    static bool isCopyKey(QEvent* event)
    {
        if (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress)
            return false;
        return static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy);
    }

    QTreeWidget* m_pane;
};

enum class CopyEntry { Value, NameAndValue, AllProperties };

// What \a entry copies from the pane as it is now (the host's events may have
// rebuilt it while the menu was open); nothing when the row or all rows have gone.
std::optional<QString> textToCopy(const QTreeWidget& pane, int row, CopyEntry entry)
{
    if (entry == CopyEntry::AllProperties) {
        if (pane.topLevelItemCount() == 0)
            return std::nullopt;
        return propertyPaneText(pane);
    }
    const QTreeWidgetItem* item = pane.topLevelItem(row);
    if (!item)
        return std::nullopt;
    return entry == CopyEntry::Value ? item->text(1) : propertyRowLine(*item);
}

void addEntry(QMenu* menu, const QString& text, CopyEntry entry, bool enabled)
{
    QAction* action = menu->addAction(text);
    action->setData(int(entry));
    action->setEnabled(enabled);
}

// \a row is the top-level row the menu was opened on, -1 for none.
void showCopyMenu(QTreeWidget* pane, int row, const QPoint& globalPos)
{
    // Parented for the pane's look. Whoever owns the pane may delete it, and
    // the menu with it, while the menu is open: exec then chooses nothing.
    QPointer<QMenu> menu = new QMenu(pane);
    const bool onRow = pane->topLevelItem(row) != nullptr;
    addEntry(menu, QCoreApplication::translate("Brennvik::PropertyPane", "Copy value"), CopyEntry::Value, onRow);
    addEntry(menu, QCoreApplication::translate("Brennvik::PropertyPane", "Copy name and value"),
             CopyEntry::NameAndValue, onRow);
    addEntry(menu, QCoreApplication::translate("Brennvik::PropertyPane", "Copy all properties"),
             CopyEntry::AllProperties, pane->topLevelItemCount() > 0);

    const QAction* chosen = menu->exec(globalPos);
    if (chosen) {
        if (const std::optional<QString> text = textToCopy(*pane, row, CopyEntry(chosen->data().toInt())))
            copyToClipboard(*text);
    }
    delete menu;
}

} // namespace

QString propertyRowLine(const QTreeWidgetItem& row)
{
    return row.text(0) + QLatin1Char('\t') + row.text(1);
}

QString propertyPaneText(const QTreeWidget& pane)
{
    QStringList lines;
    for (int i = 0; i < pane.topLevelItemCount(); ++i)
        lines << propertyRowLine(*pane.topLevelItem(i));
    return lines.join(QLatin1Char('\n'));
}

void addPropertyCopying(QTreeWidget* pane)
{
    if (!pane)
        return;
    pane->setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(pane, &QWidget::customContextMenuRequested, pane, [pane](const QPoint& pos) {
        showCopyMenu(pane, pane->indexOfTopLevelItem(pane->itemAt(pos)), pane->viewport()->mapToGlobal(pos));
    });
    // The header offers the whole pane only.
    QHeaderView* header = pane->header();
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(header, &QWidget::customContextMenuRequested, pane, [pane, header](const QPoint& pos) {
        showCopyMenu(pane, -1, header->viewport()->mapToGlobal(pos));
    });
    pane->installEventFilter(new CopyKeyFilter(pane));
}

} // namespace Brennvik
