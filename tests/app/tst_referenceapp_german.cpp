// The reference application under --lang de: every text a user reads in its
// windows, menus and dialogs is German, but for those that stay English on
// purpose, listed below with the reason.
#include "ContextMenuDriver.h"
#include "StartupProgressWatch.h"

#include <ModelFileLoading.h>
#include <ReferenceMainWindow.h>

#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>

#include <referencehost/model/SampleModel.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/modelfile/ModelFile.h>

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QMap>
#include <QMenu>
#include <QMenuBar>
#include <QScopeGuard>
#include <QStatusBar>
#include <QToolButton>
#include <QTemporaryDir>
#include <QTranslator>
#include <QTreeWidget>
#include <QtTest>

#include <memory>

using namespace Brennvik;

namespace {

// Texts that read the same in both languages, each with its reason.
const QMap<QString, QString> SameInBothLanguages{
    {QStringLiteral("1"), QStringLiteral("the forms' column placeholders, fixed by the dialogs' forms")},
    {QStringLiteral("2"), QStringLiteral("the forms' column placeholders, fixed by the dialogs' forms")},
    {QStringLiteral("Name"), QStringLiteral("the property panes' column: the same word in German")},
    {QStringLiteral("Any (*)"), QStringLiteral("the search criteria entries are fixed by the display model dialog")},
    {QStringLiteral("pointer"), QStringLiteral("the search criteria entries are fixed by the display model dialog")},
    {QStringLiteral("display item type"),
     QStringLiteral("the search criteria entries are fixed by the display model dialog")},
};

// Texts that stay English because they are made of untranslated parts.
bool staysEnglish(const QString& text, QString* reason)
{
    // The 2D dialog's plot list rows are built as narrow text, never looked up.
    if (text.startsWith(QLatin1String("Plot at (")) || text.startsWith(QLatin1String("PlotLabel at ("))) {
        *reason = QStringLiteral("2D plot list rows are built without translation by the 2D dialog");
        return true;
    }
    const auto same = SameInBothLanguages.constFind(text);
    if (same != SameInBothLanguages.cend()) {
        *reason = same.value();
        return true;
    }
    return false;
}

// The menu bar's overflow menu repeats menus of the bar, whose titles are
// collected already; how many overflow depends on the font's widths.
bool isOverflowMenu(const QWidget* window, const QMenu* menu)
{
    for (const QMenuBar* bar : window->findChildren<QMenuBar*>()) {
        const auto* more = bar->findChild<QToolButton*>(QStringLiteral("qt_menubar_ext_button"));
        if (more && more->menu() == menu)
            return true;
    }
    return false;
}

// Every text a user reads in \a window, keyed by where it is: window titles,
// labels, buttons, group boxes, tree headers, combo box entries, menus and
// their entries, and the status bar. Rows of trees and lists hold the host's
// data (item names), not texts of the application, and are left out.
void collectTexts(QWidget* window, const QString& prefix, QMap<QString, QString>& texts)
{
    texts.insert(prefix + QStringLiteral("/windowTitle"), window->windowTitle());
    const QList<QWidget*> widgets = window->findChildren<QWidget*>();
    for (int i = 0; i < widgets.size(); ++i) {
        QWidget* widget = widgets.at(i);
        const QString key
            = QStringLiteral("%1/%2:%3")
                  .arg(prefix)
                  .arg(i)
                  .arg(widget->objectName().isEmpty() ? QString::fromLatin1(widget->metaObject()->className())
                                                      : widget->objectName());
        if (auto* label = qobject_cast<QLabel*>(widget); label && !label->text().isEmpty())
            texts.insert(key + QStringLiteral("/text"), label->text());
        if (auto* button = qobject_cast<QAbstractButton*>(widget); button && !button->text().isEmpty())
            texts.insert(key + QStringLiteral("/text"), button->text());
        if (auto* group = qobject_cast<QGroupBox*>(widget))
            texts.insert(key + QStringLiteral("/title"), group->title());
        if (auto* tree = qobject_cast<QTreeWidget*>(widget))
            for (int column = 0; column < tree->columnCount(); ++column)
                texts.insert(key + QStringLiteral("/header%1").arg(column), tree->headerItem()->text(column));
        if (auto* combo = qobject_cast<QComboBox*>(widget))
            for (int entry = 0; entry < combo->count(); ++entry)
                texts.insert(key + QStringLiteral("/entry%1").arg(entry), combo->itemText(entry));
        if (auto* menu = qobject_cast<QMenu*>(widget); menu && !isOverflowMenu(window, menu)) {
            texts.insert(key + QStringLiteral("/title"), menu->title());
            const QList<QAction*> actions = menu->actions();
            for (int a = 0; a < actions.size(); ++a) {
                if (actions.at(a)->isSeparator())
                    continue;
                texts.insert(key + QStringLiteral("/action%1").arg(a), actions.at(a)->text());
            }
        }
        if (auto* status = qobject_cast<QStatusBar*>(widget))
            texts.insert(key + QStringLiteral("/message"), status->currentMessage());
    }
}

// The entries of the main window's tree context menu on its first row.
QStringList treeContextMenuEntries(ReferenceMainWindow& window)
{
    DisplayItemTreeWidget* tree = window.displayItemTree();
    QTreeWidgetItem* row = tree->topLevelItem(0);
    if (!row)
        return {};
    return Test::rightClick(tree, tree->visualItemRect(row).center()).entries;
}

// All texts of the application as a user sees them with every dialog open.
QMap<QString, QString> applicationTexts()
{
    const std::shared_ptr<SceneViewModel> viewModel = buildSampleViewModel();
    ReferenceMainWindow window(viewModel);
    window.show();
    window.openDisplayModelDialog();
    window.openCloneComparisonDialog();
    window.openDisplayModel2DDialog();

    QMap<QString, QString> texts;
    collectTexts(&window, QStringLiteral("main"), texts);
    const QList<QWidget*> dialogs = window.openDialogs();
    for (int i = 0; i < dialogs.size(); ++i)
        collectTexts(dialogs.at(i), QStringLiteral("window%1").arg(i), texts);
    const QStringList entries = treeContextMenuEntries(window);
    for (int i = 0; i < entries.size(); ++i)
        texts.insert(QStringLiteral("main/treeContextMenu/%1").arg(i), entries.at(i));
    return texts;
}

} // namespace

class tst_ReferenceAppGerman : public QObject
{
    Q_OBJECT
private slots:
    void everyTextIsTranslated();
    void widgetKitEntriesAreGerman();
    void loadingWindowIsGerman();
};

void tst_ReferenceAppGerman::everyTextIsTranslated()
{
    const QMap<QString, QString> english = applicationTexts();

    QTranslator library;
    QTranslator application;
    QVERIFY(library.load(QStringLiteral(":/i18n/brennvik_debugmenu_de.qm")));
    QVERIFY(application.load(QStringLiteral(":/i18n/brennvik_referenceapp_de.qm")));
    QCoreApplication::installTranslator(&library);
    QCoreApplication::installTranslator(&application);
    const QMap<QString, QString> german = applicationTexts();
    QCoreApplication::removeTranslator(&application);
    QCoreApplication::removeTranslator(&library);

    QCOMPARE(german.keys(), english.keys());
    QVERIFY(english.size() > 60);
    QStringList untranslated;
    int keptOnPurpose = 0;
    for (auto it = english.cbegin(); it != english.cend(); ++it) {
        const QString text = german.value(it.key());
        if (text != it.value() || text.isEmpty())
            continue;
        QString reason;
        if (staysEnglish(text, &reason))
            ++keptOnPurpose;
        else
            untranslated << QStringLiteral("%1: '%2'").arg(it.key(), text);
    }
    QVERIFY2(untranslated.isEmpty(), qPrintable(untranslated.join(QLatin1String("\n"))));
    QVERIFY(keptOnPurpose > 0);
}

void tst_ReferenceAppGerman::widgetKitEntriesAreGerman()
{
    QTranslator application;
    QVERIFY(application.load(QStringLiteral(":/i18n/brennvik_referenceapp_de.qm")));
    QCoreApplication::installTranslator(&application);
    const auto removeTranslator = qScopeGuard([&application]() { QCoreApplication::removeTranslator(&application); });
    const std::shared_ptr<SceneViewModel> viewModel = buildSampleViewModel();
    ReferenceMainWindow window(viewModel);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    const QStringList entries = treeContextMenuEntries(window);

    for (const char* german : {"Rekursiv aufklappen", "Alle zuklappen", "Kopieren"})
        QVERIFY2(entries.contains(QString::fromUtf8(german)), qPrintable(entries.join(QLatin1String(", "))));
}

void tst_ReferenceAppGerman::loadingWindowIsGerman()
{
    QTemporaryDir directory;
    QVERIFY(directory.isValid());
    const QString file = directory.filePath(QStringLiteral("model.json"));
    QString saveError;
    QVERIFY2(ModelFile::save(*buildSampleViewModel(), file, &saveError), qPrintable(saveError));

    QTranslator application;
    QVERIFY(application.load(QStringLiteral(":/i18n/brennvik_referenceapp_de.qm")));
    QCoreApplication::installTranslator(&application);
    const auto removeTranslator = qScopeGuard([&application]() { QCoreApplication::removeTranslator(&application); });
    Test::StartupProgressWatch watch;
    ModelFileError error;
    QVERIFY2(loadModelFileShowingProgress(QFile::encodeName(file), &error), qPrintable(error.toString()));
    QCOMPARE(watch.shownText, QStringLiteral("model.json wird geladen..."));
}

QTEST_MAIN(tst_ReferenceAppGerman)
#include "tst_referenceapp_german.moc"
