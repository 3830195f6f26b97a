#include "PropertyPaneDriver.h"

#include "ContextMenuDriver.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QMenu>
#include <QTest>
#include <QToolTip>
#include <QTreeWidget>

namespace Brennvik::Test {

namespace {

QStringList enabledEntriesOfOpenMenu()
{
    QStringList enabled;
    if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
        for (QAction* action : menu->actions()) {
            if (!action->isSeparator() && action->isEnabled())
                enabled << action->text();
        }
    }
    return enabled;
}

PaneMenuVisit visitMenu(QAbstractItemView* view, const QPoint& pos, const QString& entry,
                        const std::function<void()>& whileOpen)
{
    PaneMenuVisit visit;
    QGuiApplication::clipboard()->setText(clipboardMarker());
    const ContextMenuVisit menu = rightClick(view, pos, entry, [&]() {
        visit.enabled = enabledEntriesOfOpenMenu();
        if (whileOpen)
            whileOpen();
    });
    visit.opened = menu.opened;
    visit.entries = menu.entries;
    visit.triggered = menu.triggered;
    visit.clipboard = QGuiApplication::clipboard()->text();
    return visit;
}

} // namespace

QString clipboardMarker()
{
    return QStringLiteral("<nothing copied>");
}

QPoint paneCellPos(QTreeWidget* pane, int row, int column)
{
    QTreeWidgetItem* item = pane->topLevelItem(row);
    if (!item)
        return QPoint(5, pane->viewport()->height() - 3);
    pane->scrollToItem(item);
    const QRect rowRect = pane->visualItemRect(item);
    const int left = pane->header()->sectionViewportPosition(column);
    return QPoint(left + pane->header()->sectionSize(column) / 2, rowRect.center().y());
}

PaneMenuVisit chooseFromPaneMenu(QTreeWidget* pane, int row, const QString& entry,
                                 const std::function<void()>& whileOpen)
{
    return visitMenu(pane, paneCellPos(pane, row), entry, whileOpen);
}

PaneMenuVisit chooseFromPaneHeaderMenu(QTreeWidget* pane, const QString& entry)
{
    QHeaderView* header = pane->header();
    return visitMenu(header, QPoint(header->sectionSize(0) / 2, header->height() / 2), entry, {});
}

QString pressCopyOnRow(QTreeWidget* pane, int row)
{
    QGuiApplication::clipboard()->setText(clipboardMarker());
    pane->setCurrentItem(pane->topLevelItem(row));
    pane->setFocus();
    QTest::keyClick(pane, Qt::Key_C, Qt::ControlModifier);
    return QGuiApplication::clipboard()->text();
}

QString hoverToolTip(QTreeWidget* pane, int row, int column)
{
    const QPoint pos = paneCellPos(pane, row, column);
    QHelpEvent help(QEvent::ToolTip, pos, pane->viewport()->mapToGlobal(pos));
    QApplication::sendEvent(pane->viewport(), &help);
    (void)QTest::qWaitFor([]() { return QToolTip::isVisible(); }, 2000);
    const QString text = QToolTip::isVisible() ? QToolTip::text() : QString();
    QToolTip::hideText();
    return text;
}

QString propertyLine(const Property& property)
{
    return QString::fromStdString(property.first) + QLatin1Char('\t') + QString::fromStdString(property.second);
}

QString propertyLines(const PropertyList& properties)
{
    QStringList lines;
    for (const Property& property : properties)
        lines << propertyLine(property);
    return lines.join(QLatin1Char('\n'));
}

} // namespace Brennvik::Test
