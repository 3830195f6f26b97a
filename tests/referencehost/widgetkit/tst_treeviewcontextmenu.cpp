#include <hostcontract/TreeViewContextMenu.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QMenu>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <functional>

using namespace Brennvik;

namespace {

const QString ExpandText = QStringLiteral("Expand recursively");
const QString CollapseText = QStringLiteral("Collapse all");
const QString CopyText = QStringLiteral("Copy");

// What the test saw of the open menu.
struct Visit
{
    bool opened = false;
    QStringList entries; ///< texts in order, separators as "-"
    QMap<QString, bool> enabled;
    int result = -2;
    QAction* chosen = nullptr;
};

// Opens \a menu with show(). A zero-delay timer started before the menu
// runs its own event loop finds the popup, reads it and lets \a act use it.
// \a notChosen is what show() must overwrite.
Visit openAndAct(TreeViewContextMenu& menu, QAction* notChosen, const std::function<void(QMenu*)>& act)
{
    Visit visit;
    visit.chosen = notChosen;
    QTimer::singleShot(0, [&]() {
        auto* popup = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!popup)
            return;
        visit.opened = true;
        for (QAction* action : popup->actions()) {
            visit.entries << (action->isSeparator() ? QStringLiteral("-") : action->text());
            if (!action->isSeparator())
                visit.enabled.insert(action->text(), action->isEnabled());
        }
        act(popup);
    });
    visit.result = menu.show(&visit.chosen);
    return visit;
}

// Chooses the entry like a user with the keyboard.
std::function<void(QMenu*)> choose(const QString& text)
{
    return [text](QMenu* popup) {
        for (QAction* action : popup->actions()) {
            if (action->text() == text) {
                popup->setActiveAction(action);
                QTest::keyClick(popup, Qt::Key_Return);
                return;
            }
        }
        QTest::keyClick(popup, Qt::Key_Escape);
    };
}

std::function<void(QMenu*)> pressEscape()
{
    return [](QMenu* popup) { QTest::keyClick(popup, Qt::Key_Escape); };
}

// A subclass that renames and reshapes the kit's entries.
class CustomisedMenu : public TreeViewContextMenu
{
public:
    using TreeViewContextMenu::TreeViewContextMenu;

    int adjustCalls = 0;
    int entriesWhenAdjusted = 0;

protected:
    QString actionText(int builtInAction) override
    {
        if (builtInAction == ExpandRecursively)
            return QStringLiteral("Open everything below");
        return TreeViewContextMenu::actionText(builtInAction);
    }

    QString actionToolTip(int builtInAction) override { return QStringLiteral("tip %1").arg(builtInAction); }

    void adjustMenu() override
    {
        ++adjustCalls;
        entriesWhenAdjusted = menu()->actions().size();
        // Drops "Collapse all".
        for (QAction* action : menu()->actions()) {
            if (action->text() == CollapseText)
                menu()->removeAction(action);
        }
    }
};

} // namespace

class tst_TreeViewContextMenu : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void entriesInOrderAndCallerActionFires_data();
    void entriesInOrderAndCallerActionFires();
    void contextIndexIsColumnZeroOfTheRow();
    void copyPutsSubtreeOnClipboard_data();
    void copyPutsSubtreeOnClipboard();
    void subtreeAsTextOfInvalidIndexIsEmpty();
    void expandRecursivelyExpandsWholeSubtree();
    void collapseAllCollapsesEveryRow();
    void dismissingChoosesNothing_data();
    void dismissingChoosesNothing();
    void emptySpaceDisablesRowEntries();
    void subclassShapesBuiltInEntries();
    void callerActionsOutliveTheMenu();
    void viewDeletedWhileOpen();

private:
    QTreeWidgetItem* item(const QString& text) const;
    QPoint pointOn(const QString& text, int column = 0) const;

    QTreeWidget* m_tree = nullptr;
    QAction m_notChosen{QStringLiteral("not chosen")};
};

void tst_TreeViewContextMenu::init()
{
    m_tree = new QTreeWidget;
    m_tree->setColumnCount(3);
    auto* root = new QTreeWidgetItem(m_tree, {"Root", "r1", "r2"});
    auto* childA = new QTreeWidgetItem(root, {"Child A", "a1", ""});
    new QTreeWidgetItem(childA, {"Grand A1", "g1", "g2"});
    new QTreeWidgetItem(root, {"Child B", "b1", "b2"});
    auto* other = new QTreeWidgetItem(m_tree, {"Other", "o1", "o2"});
    new QTreeWidgetItem(other, {"Other child", "oc1", "oc2"});
    m_tree->resize(500, 400);
    m_tree->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_tree));
    QGuiApplication::clipboard()->clear();
}

void tst_TreeViewContextMenu::cleanup()
{
    delete m_tree;
    m_tree = nullptr;
}

QTreeWidgetItem* tst_TreeViewContextMenu::item(const QString& text) const
{
    const QList<QTreeWidgetItem*> found = m_tree->findItems(text, Qt::MatchExactly | Qt::MatchRecursive);
    return found.isEmpty() ? nullptr : found.first();
}

QPoint tst_TreeViewContextMenu::pointOn(const QString& text, int column) const
{
    QTreeWidgetItem* row = item(text);
    if (!row)
        return QPoint(-1, -1);
    m_tree->scrollToItem(row);
    const QRect rect = m_tree->visualItemRect(row);
    return QPoint(m_tree->header()->sectionViewportPosition(column) + 4, rect.center().y());
}

void tst_TreeViewContextMenu::entriesInOrderAndCallerActionFires_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<int>("expectedResult");

    // Menu: First, Second, -, Expand, Collapse, Copy, -, Trailing
    QTest::newRow("first caller action") << "First" << 0;
    QTest::newRow("second caller action") << "Second" << 1;
    QTest::newRow("trailing action") << "Trailing" << 7;
}

void tst_TreeViewContextMenu::entriesInOrderAndCallerActionFires()
{
    QFETCH(QString, entry);
    QFETCH(int, expectedResult);

    QAction first("First");
    QAction second("Second");
    QAction trailing("Trailing");
    QSignalSpy firstSpy(&first, &QAction::triggered);
    QSignalSpy secondSpy(&second, &QAction::triggered);
    QSignalSpy trailingSpy(&trailing, &QAction::triggered);

    TreeViewContextMenu menu(m_tree, pointOn("Child A"));
    menu.appendAction(&first, true);
    menu.appendAction(&trailing, false);
    menu.appendAction(&second, true);
    const Visit visit = openAndAct(menu, &m_notChosen, choose(entry));

    QVERIFY(visit.opened);
    QCOMPARE(visit.entries, QStringList({"First", "Second", "-", ExpandText, CollapseText, CopyText, "-", "Trailing"}));
    QCOMPARE(visit.result, expectedResult);
    QCOMPARE(visit.chosen->text(), entry);
    QCOMPARE(firstSpy.count(), entry == "First" ? 1 : 0);
    QCOMPARE(secondSpy.count(), entry == "Second" ? 1 : 0);
    QCOMPARE(trailingSpy.count(), entry == "Trailing" ? 1 : 0);
    // Choosing a caller entry leaves the tree alone.
    QVERIFY(!item("Child A")->isExpanded());
    QVERIFY(QGuiApplication::clipboard()->text().isEmpty());
}

void tst_TreeViewContextMenu::contextIndexIsColumnZeroOfTheRow()
{
    TreeViewContextMenu menu(m_tree, pointOn("Other", 2));
    QCOMPARE(menu.contextIndex().data().toString(), QString("Other"));
    QCOMPARE(menu.contextIndex().column(), 0);

    TreeViewContextMenu nowhere(m_tree, QPoint(10, m_tree->viewport()->height() - 5));
    QVERIFY(!nowhere.contextIndex().isValid());
}

void tst_TreeViewContextMenu::copyPutsSubtreeOnClipboard_data()
{
    QTest::addColumn<QString>("row");
    QTest::addColumn<QString>("expected");

    QTest::newRow("root with nested children") << "Root"
                                               << "Root\tr1\tr2\n"
                                                  "  Child A\ta1\t\n"
                                                  "    Grand A1\tg1\tg2\n"
                                                  "  Child B\tb1\tb2";
    QTest::newRow("top-level row") << "Other"
                                   << "Other\to1\to2\n  Other child\toc1\toc2";
    QTest::newRow("inner row") << "Child A"
                               << "Child A\ta1\t\n  Grand A1\tg1\tg2";
    QTest::newRow("leaf") << "Grand A1"
                          << "Grand A1\tg1\tg2";
}

void tst_TreeViewContextMenu::copyPutsSubtreeOnClipboard()
{
    QFETCH(QString, row);
    QFETCH(QString, expected);

    m_tree->expandAll(); // every row reachable by the mouse
    TreeViewContextMenu menu(m_tree, pointOn(row, 1));
    QCOMPARE(menu.contextIndex().data().toString(), row);
    const Visit visit = openAndAct(menu, &m_notChosen, choose(CopyText));

    QCOMPARE(visit.result, 2); // Expand, Collapse, Copy: no caller entries, no separator
    QCOMPARE(visit.chosen->text(), CopyText);
    QCOMPARE(QGuiApplication::clipboard()->text(), expected);
    QCOMPARE(TreeViewContextMenu::subtreeAsText(menu.contextIndex()), expected);
}

void tst_TreeViewContextMenu::subtreeAsTextOfInvalidIndexIsEmpty()
{
    QVERIFY(TreeViewContextMenu::subtreeAsText(QModelIndex()).isNull());
}

void tst_TreeViewContextMenu::expandRecursivelyExpandsWholeSubtree()
{
    m_tree->collapseAll();
    TreeViewContextMenu menu(m_tree, pointOn("Root"));
    const Visit visit = openAndAct(menu, &m_notChosen, choose(ExpandText));

    QVERIFY(visit.opened);
    QCOMPARE(visit.entries, QStringList({ExpandText, CollapseText, CopyText}));
    QCOMPARE(visit.result, 0);
    QVERIFY(item("Root")->isExpanded());
    QVERIFY(item("Child A")->isExpanded());
    QVERIFY(!item("Other")->isExpanded()); // outside the subtree
}

void tst_TreeViewContextMenu::collapseAllCollapsesEveryRow()
{
    m_tree->expandAll();
    QVERIFY(item("Child A")->isExpanded());
    TreeViewContextMenu menu(m_tree, pointOn("Other child"));
    const Visit visit = openAndAct(menu, &m_notChosen, choose(CollapseText));

    QCOMPARE(visit.result, 1);
    for (const char* row : {"Root", "Child A", "Other"})
        QVERIFY2(!item(row)->isExpanded(), qPrintable(row));
}

void tst_TreeViewContextMenu::dismissingChoosesNothing_data()
{
    QTest::addColumn<bool>("byEscape");
    QTest::newRow("escape key") << true;
    QTest::newRow("closed") << false;
}

void tst_TreeViewContextMenu::dismissingChoosesNothing()
{
    QFETCH(bool, byEscape);

    QAction callerAction("Caller");
    QSignalSpy spy(&callerAction, &QAction::triggered);
    TreeViewContextMenu menu(m_tree, pointOn("Root"));
    menu.appendAction(&callerAction, true);
    const Visit visit = openAndAct(
        menu, &m_notChosen, byEscape ? pressEscape() : [](QMenu* popup) { popup->close(); });

    QVERIFY(visit.opened);
    QCOMPARE(visit.result, -1);
    QCOMPARE(visit.chosen, static_cast<QAction*>(nullptr));
    QCOMPARE(spy.count(), 0);
    QVERIFY(!item("Root")->isExpanded());
}

void tst_TreeViewContextMenu::emptySpaceDisablesRowEntries()
{
    m_tree->expandAll();
    const QPoint below(10, m_tree->viewport()->height() - 5);
    QVERIFY(!m_tree->indexAt(below).isValid());

    TreeViewContextMenu menu(m_tree, below);
    const Visit visit = openAndAct(menu, &m_notChosen, choose(CollapseText));

    QCOMPARE(visit.entries, QStringList({ExpandText, CollapseText, CopyText}));
    QCOMPARE(visit.enabled.value(ExpandText), false);
    QCOMPARE(visit.enabled.value(CopyText), false);
    QCOMPARE(visit.enabled.value(CollapseText), true);
    QCOMPARE(visit.result, 1);
    QVERIFY(!item("Root")->isExpanded());
}

void tst_TreeViewContextMenu::subclassShapesBuiltInEntries()
{
    QAction callerAction("Caller");
    CustomisedMenu menu(m_tree, pointOn("Root"));
    menu.appendAction(&callerAction, true);
    QStringList toolTips;
    const Visit visit = openAndAct(menu, &m_notChosen, [&](QMenu* popup) {
        for (QAction* action : popup->actions()) {
            if (!action->isSeparator())
                toolTips << action->toolTip();
        }
        choose("Open everything below")(popup);
    });

    QCOMPARE(menu.adjustCalls, 1);
    QCOMPARE(menu.entriesWhenAdjusted, 5); // caller, separator, three built-in
    QCOMPARE(visit.entries, QStringList({"Caller", "-", "Open everything below", CopyText}));
    QCOMPARE(toolTips, QStringList({"Caller", "tip 0", "tip 2"}));
    QCOMPARE(visit.result, 2);
    QVERIFY(item("Child A")->isExpanded());
}

void tst_TreeViewContextMenu::callerActionsOutliveTheMenu()
{
    auto* callerAction = new QAction("Caller", m_tree);
    QPointer<QAction> guard(callerAction);
    const int menusBefore = m_tree->findChildren<QMenu*>().size();
    {
        auto* menu = new TreeViewContextMenu(m_tree, pointOn("Root"));
        menu->appendAction(callerAction, true);
        const Visit visit = openAndAct(*menu, &m_notChosen, choose("Caller"));
        QCOMPARE(visit.result, 0);
        QCOMPARE(visit.chosen, callerAction);
        QCOMPARE(m_tree->findChildren<QMenu*>().size(), menusBefore + 1);
        delete menu;
    }
    QVERIFY(!guard.isNull());
    QCOMPARE(m_tree->findChildren<QMenu*>().size(), menusBefore);
}

void tst_TreeViewContextMenu::viewDeletedWhileOpen()
{
    QAction callerAction("Caller");
    QSignalSpy spy(&callerAction, &QAction::triggered);
    auto* menu = new TreeViewContextMenu(m_tree, pointOn("Root"));
    menu->appendAction(&callerAction, true);
    QPointer<QTreeWidget> tree(m_tree);
    const Visit visit = openAndAct(*menu, &m_notChosen, [this](QMenu*) {
        delete m_tree;
        m_tree = nullptr;
    });

    QVERIFY(visit.opened);
    QVERIFY(tree.isNull());
    QCOMPARE(visit.result, -1);
    QCOMPARE(visit.chosen, static_cast<QAction*>(nullptr));
    QCOMPARE(spy.count(), 0);
    // Neither a second opening nor the deletion touch the gone view or menu.
    QAction* chosen = &callerAction;
    QCOMPARE(menu->show(&chosen), -1);
    QCOMPARE(chosen, static_cast<QAction*>(nullptr));
    delete menu;
}

QTEST_MAIN(tst_TreeViewContextMenu)
#include "tst_treeviewcontextmenu.moc"
