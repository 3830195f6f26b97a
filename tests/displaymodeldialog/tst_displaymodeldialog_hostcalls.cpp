// The order in which the display model dialog asks the host while it builds
// its tree: hosts that compute their active context or its lookups from the
// model rely on the whole tree having been asked for first.

#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>

#include <hostcontract/EditorDisplayModel.h>
#include <hostcontract/InitialEntryLookups.h>

#include <referencehost/model/SceneViewModel.h>

#include "LoggingHost.h"

#include <QTest>
#include <QTreeWidget>

#include <memory>

using namespace Brennvik;
using Brennvik::Test::CallLog;
using Brennvik::Test::LoggingDisplayModel;
using Brennvik::Test::LoggingEntryLookups;
using Brennvik::Test::LoggingItem;
using Brennvik::Test::LoggingViewModel;

namespace {

// No active context at all.
constexpr int NoContext = -1;
// A kind without lookups of its own: the default entry owner's.
constexpr int OtherKind = 1;

} // namespace

class tst_DisplayModelDialogHostCalls : public QObject
{
    Q_OBJECT

private slots:
    void buildAsksForTheInitialEntryLast_data();
    void buildAsksForTheInitialEntryLast();
};

void tst_DisplayModelDialogHostCalls::buildAsksForTheInitialEntryLast_data()
{
    QTest::addColumn<int>("contextKind");
    QTest::addColumn<QStringList>("entryCalls");
    QTest::addColumn<QString>("currentText");

    QTest::newRow("process step") << ContextKind::ProcessStep
                                  << QStringList{"getActiveContext", "getContextKind", "getKind6Provider",
                                                 "getKind6Index", "getDisplayItemAt"}
                                  << "a1";
    QTest::newRow("tool") << ContextKind::Tool << QStringList{"getActiveContext", "getContextKind", "getKind7Source",
                                                              "getKind7Lookup",   "getKey",         "findDisplayItem"}
                          << "a1";
    QTest::newRow("other kind") << OtherKind
                                << QStringList{"getActiveContext", "getContextKind", "getDefaultEntryOwner",
                                               "getEntryDisplayItem"}
                                << "a1";
    QTest::newRow("no context") << NoContext << QStringList{"getActiveContext"} << QString();
}

void tst_DisplayModelDialogHostCalls::buildAsksForTheInitialEntryLast()
{
    QFETCH(int, contextKind);
    QFETCH(QStringList, entryCalls);
    QFETCH(QString, currentText);

    const CallLog log = std::make_shared<QStringList>();
    auto root = std::make_shared<LoggingItem>("root", log);
    auto a = std::make_shared<LoggingItem>("a", log);
    auto a1 = std::make_shared<LoggingItem>("a1", log);
    auto b = std::make_shared<LoggingItem>("b", log);
    a->appendChild(a1);
    root->appendChild(a);
    root->appendChild(b);

    auto scene = std::make_shared<SceneViewModel>();
    scene->ensureEditorDisplayModel().addEditModelPrimitive("primitive");
    std::shared_ptr<LoggingEntryLookups> lookups;
    if (contextKind != NoContext)
        lookups = std::make_shared<LoggingEntryLookups>(contextKind, a1, log);
    auto viewModel
        = std::make_shared<LoggingViewModel>(scene, std::make_unique<LoggingDisplayModel>(root, lookups, log), log);

    DisplayModelDialog dialog(nullptr);
    log->clear();
    dialog.setViewModel(viewModel);

    // Top row, its subtree depth first, the edit-model rows, then the entry.
    const QStringList expected
        = QStringList{"getDisplayModel", "getRootDisplayItem", "getChildren root",     "getChildren a",
                      "getChildren a1",  "getChildren b",      "getEditorDisplayModel"}
        + entryCalls;
    QCOMPARE(*log, expected);

    // The entry found last is still the row made current.
    QTreeWidget* tree = dialog.findChild<QTreeWidget*>(QStringLiteral("m_displayItemTreeWidget"));
    QVERIFY(tree);
    QCOMPARE(tree->topLevelItemCount(), 1);
    QCOMPARE(tree->topLevelItem(0)->childCount(), 3);
    QTreeWidgetItem* current = tree->currentItem();
    QCOMPARE(current ? current->text(0) : QString(), currentText);
    if (current)
        QVERIFY(current->isSelected());
    // Only the navigation to an entry expands the top row.
    QCOMPARE(tree->topLevelItem(0)->isExpanded(), contextKind != NoContext);
}

QTEST_MAIN(tst_DisplayModelDialogHostCalls)
#include "tst_displaymodeldialog_hostcalls.moc"
