#include <debugmenucontent/clonecomparison/DebugCloneDisplayModelDialog.h>
#include <debugmenucontent/displaymodel2d/DisplayModel2DDialog.h>
#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SceneViewModel.h>

#include "Plot2DHost.h"
#include "PropertyPaneDriver.h"
#include "ShownWindow.h"
#include "TestTree.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QCoreApplication>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSet>
#include <QTest>
#include <QTranslator>
#include <QTreeWidget>
#include <QXmlStreamReader>

#include <functional>
#include <memory>

using namespace Brennvik;

namespace {

const char* const GermanQm = ":/i18n/brennvik_debugmenu_de.qm";

struct TsMessage
{
    QString context;
    QString source;
    QString translation;
    QString type; // the translation's type attribute: empty when finished
};

// Every message of a .ts file; an unreadable or malformed file gives an error.
QList<TsMessage> readTs(const QString& path, QString* error)
{
    QList<TsMessage> messages;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = file.errorString();
        return messages;
    }
    QXmlStreamReader xml(&file);
    QString context;
    TsMessage message;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        const auto name = xml.name();
        if (name == QLatin1String("context")) {
            context.clear();
        } else if (name == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (name == QLatin1String("message")) {
            message = TsMessage{context, {}, {}, {}};
        } else if (name == QLatin1String("source")) {
            message.source = xml.readElementText();
        } else if (name == QLatin1String("translation")) {
            message.type = xml.attributes().value(QLatin1String("type")).toString();
            message.translation = xml.readElementText(QXmlStreamReader::IncludeChildElements);
            messages << message;
        }
    }
    if (xml.hasError())
        *error = QStringLiteral("line %1: %2").arg(xml.lineNumber()).arg(xml.errorString());
    return messages;
}

// The mnemonic markers of a text ("&&" is a literal ampersand).
int mnemonicCount(QString text)
{
    text.remove(QLatin1String("&&"));
    return text.count(QLatin1Char('&'));
}

QSet<QString> placeholders(const QString& text)
{
    QSet<QString> found;
    QRegularExpressionMatchIterator it = QRegularExpression(QStringLiteral("%L?\\d+")).globalMatch(text);
    while (it.hasNext())
        found.insert(it.next().captured());
    return found;
}

// The object of \a root named \a objectName; "name#k" is the k-th (from 1)
// of several with that name, in pre-order (clone mode reuses a name).
QObject* findObject(QWidget& root, const QString& objectName)
{
    const int hash = objectName.indexOf(QLatin1Char('#'));
    const QString name = hash < 0 ? objectName : objectName.left(hash);
    const int index = hash < 0 ? 0 : objectName.mid(hash + 1).toInt() - 1;
    if (root.objectName() == name)
        return index == 0 ? &root : nullptr;
    const QList<QObject*> found = root.findChildren<QObject*>(name);
    return index >= 0 && index < found.size() ? found.at(index) : nullptr;
}

// A text of a widget: "windowTitle", "text" (label, button, check box),
// "title" (group box), "header:N" (tree column N), "item:N" (combo box entry N).
QString textOf(QWidget& root, const QString& objectName, const QString& part)
{
    QObject* object = findObject(root, objectName);
    if (!object)
        return QStringLiteral("<no object %1>").arg(objectName);
    const QString kind = part.section(QLatin1Char(':'), 0, 0);
    const int index = part.section(QLatin1Char(':'), 1, 1).toInt();
    if (kind == QLatin1String("windowTitle"))
        if (auto* widget = qobject_cast<QWidget*>(object))
            return widget->windowTitle();
    if (kind == QLatin1String("text")) {
        if (auto* label = qobject_cast<QLabel*>(object))
            return label->text();
        if (auto* button = qobject_cast<QAbstractButton*>(object))
            return button->text();
    }
    if (kind == QLatin1String("title"))
        if (auto* group = qobject_cast<QGroupBox*>(object))
            return group->title();
    if (kind == QLatin1String("header"))
        if (auto* tree = qobject_cast<QTreeWidget*>(object))
            return index < tree->columnCount() ? tree->headerItem()->text(index) : QStringLiteral("<no column>");
    if (kind == QLatin1String("item"))
        if (auto* combo = qobject_cast<QComboBox*>(object))
            return index < combo->count() ? combo->itemText(index) : QStringLiteral("<no entry>");
    return QStringLiteral("<no %1 on %2 (%3)>")
        .arg(part, objectName, QString::fromLatin1(object->metaObject()->className()));
}

void addTextColumns()
{
    QTest::addColumn<QString>("objectName");
    QTest::addColumn<QString>("part");
    QTest::addColumn<QString>("german");
    QTest::addColumn<QString>("english");
}

void addTextRow(const QString& objectName, const QString& part, const QString& german, const QString& english)
{
    QTest::newRow(qPrintable(objectName + QLatin1Char(' ') + part)) << objectName << part << german << english;
}

/// The rows of the item tree and the two property panes, which both dialogs lay out alike.
void addItemTreeAndPropertyPaneRows()
{
    addTextRow("label_2", "text", "Eigenschaften des Geschäftsobjekts", "Business object properties");
    addTextRow("label", "text", "Eigenschaften des Anzeigeelements", "Display item properties");
    addTextRow("m_displayItemTreeWidget", "header:0", "Anzeigeelemente", "Display items");
    addTextRow("m_businessObjectProperties", "header:0", "Name", "Name");
    addTextRow("m_businessObjectProperties", "header:1", "Wert", "Value");
    addTextRow("m_displayItemProperties", "header:0", "Name", "Name");
    addTextRow("m_displayItemProperties", "header:1", "Wert", "Value");
}

} // namespace

class tst_Translations : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void germanTranslationIsEmbedded();
    void embeddedTranslationMatchesSource();
    void translationSourceHasNoUnfinishedMessage();
    void translationSourceCoversTheLibraryContexts();
    void translationsKeepMnemonicsAndPlaceholders();

    void displayModelDialogTexts_data();
    void displayModelDialogTexts();
    void cloneModeTexts_data();
    void cloneModeTexts();
    void cloneComparisonDialogTexts_data();
    void cloneComparisonDialogTexts();
    void displayModel2DDialogTexts_data();
    void displayModel2DDialogTexts();
    void treeWidgetActionTexts_data();
    void treeWidgetActionTexts();
    void noMatchToolTip_data();
    void noMatchToolTip();
    void propertyPaneMenuTexts_data();
    void propertyPaneMenuTexts();

private:
    // Builds the widget with the German translator installed and then
    // without it, and compares the row's text in both.
    void compareBothLanguages(const std::function<std::unique_ptr<QWidget>()>& make);

    QTranslator m_german;
    QList<TsMessage> m_messages;
};

void tst_Translations::initTestCase()
{
    QVERIFY(m_german.load(QString::fromLatin1(GermanQm)));
    QString error;
    m_messages = readTs(QStringLiteral(BRENNVIK_DE_TS_FILE), &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
}

void tst_Translations::germanTranslationIsEmbedded()
{
    QVERIFY(QFile::exists(QString::fromLatin1(GermanQm)));
    QVERIFY(!m_german.isEmpty());
    QCOMPARE(m_german.language(), QStringLiteral("de_DE"));
    QCOMPARE(m_german.translate("DisplayModelDialogClass", "Find next"), QStringLiteral("Weitersuchen"));
}

void tst_Translations::embeddedTranslationMatchesSource()
{
    // A stale .qm (built from an older .ts) shows here.
    int checked = 0;
    for (const TsMessage& message : qAsConst(m_messages)) {
        if (message.type == QLatin1String("obsolete") || message.type == QLatin1String("vanished"))
            continue;
        const QString embedded
            = m_german.translate(message.context.toUtf8().constData(), message.source.toUtf8().constData());
        QVERIFY2(embedded == message.translation,
                 qPrintable(QStringLiteral("%1 / %2: .qm has '%3', .ts has '%4'")
                                .arg(message.context, message.source, embedded, message.translation)));
        ++checked;
    }
    QVERIFY(checked >= 40);
}

void tst_Translations::translationSourceHasNoUnfinishedMessage()
{
    QVERIFY(!m_messages.isEmpty());
    QStringList open;
    for (const TsMessage& message : qAsConst(m_messages)) {
        if (!message.type.isEmpty() || message.translation.isEmpty())
            open << QStringLiteral("%1 / %2 (%3)")
                        .arg(message.context, message.source,
                             message.type.isEmpty() ? QStringLiteral("empty") : message.type);
    }
    QVERIFY2(open.isEmpty(), qPrintable(open.join(QLatin1String("; "))));
}

void tst_Translations::translationSourceCoversTheLibraryContexts()
{
    QSet<QString> contexts;
    for (const TsMessage& message : qAsConst(m_messages))
        contexts.insert(message.context);
    for (const char* context :
         {"DisplayModelDialogClass", "DebugCloneDisplayModelDialogClass", "DisplayModel2DDialogClass",
          "Brennvik::DisplayItemTreeWidget", "Brennvik::DisplayModel2DDialog", "Brennvik::PropertyPane"})
        QVERIFY2(contexts.contains(QString::fromLatin1(context)), context);
}

void tst_Translations::translationsKeepMnemonicsAndPlaceholders()
{
    for (const TsMessage& message : qAsConst(m_messages)) {
        const QString where = message.context + QLatin1String(" / ") + message.source;
        QVERIFY2(mnemonicCount(message.translation) == mnemonicCount(message.source), qPrintable(where));
        QVERIFY2(placeholders(message.translation) == placeholders(message.source), qPrintable(where));
    }
}

void tst_Translations::compareBothLanguages(const std::function<std::unique_ptr<QWidget>()>& make)
{
    QFETCH(QString, objectName);
    QFETCH(QString, part);
    QFETCH(QString, german);
    QFETCH(QString, english);
    {
        QVERIFY(QCoreApplication::installTranslator(&m_german));
        const auto removeTranslator = qScopeGuard([this] { QCoreApplication::removeTranslator(&m_german); });
        std::unique_ptr<QWidget> widget = make();
        QVERIFY(widget);
        QCOMPARE(textOf(*widget, objectName, part), german);
    }
    std::unique_ptr<QWidget> widget = make();
    QVERIFY(widget);
    QCOMPARE(textOf(*widget, objectName, part), english);
}

void tst_Translations::displayModelDialogTexts_data()
{
    addTextColumns();
    addTextRow("DisplayModelDialogClass", "windowTitle", "Anzeigemodell-Dialog", "DisplayModelDialog");
    addTextRow("m_searchValueLbl_3", "text", "Suchwert:", "Search Value:");
    addTextRow("m_searchTypeLbl_3", "text", "Suchkriterium:", "Search Criteria:");
    addTextRow("label_3", "text", "Anzahl der Anzeigeelemente:", "Number of Display Items:");
    addTextRow("m_displayItemCountPB", "text", "Aktualisieren", "Update");
    addTextRow("m_findDisplayItemPB", "text", "Weitersuchen", "Find next");
    addTextRow("m_useCloneCheckBox", "text", "Klon", "Clone");
    addTextRow("m_showCloneIn3dCheckBox", "text", "Klon in der 3D-Ansicht zeigen", "Show Clone in 3D View");
    addTextRow("m_propertyCompareMode", "text", "Nur Eigenschaften gespiegelter Elemente vergleichen",
               "Only compare mirrored item properties");
    addItemTreeAndPropertyPaneRows();
    // The dialog adds its search criteria without looking them up.
    addTextRow("m_searchTypeCB", "item:0", "Any (*)", "Any (*)");
    addTextRow("m_searchTypeCB", "item:1", "pointer", "pointer");
    addTextRow("m_searchTypeCB", "item:2", "display item type", "display item type");
}

void tst_Translations::displayModelDialogTexts()
{
    compareBothLanguages([] { return std::make_unique<DisplayModelDialog>(nullptr); });
}

void tst_Translations::cloneModeTexts_data()
{
    addTextColumns();
    addTextRow("m_clonedDisplayItemTreeWidget", "header:0", "Geklonte Anzeigeelemente", "Cloned display items");
    addTextRow("m_lbl_cloned_business_obj_props", "text", "Eigenschaften des geklonten Geschäftsobjekts",
               "Cloned business object properties");
    addTextRow("m_lbl_cloned_display_props", "text", "Eigenschaften des geklonten Anzeigeelements",
               "Cloned display item properties");
    // The cloned business pane carries the original pane's object name.
    addTextRow("m_businessObjectProperties#2", "header:0", "Name", "Name");
    addTextRow("m_businessObjectProperties#2", "header:1", "Wert", "Value");
    addTextRow("m_clonedDisplayItemProperties", "header:0", "Name", "Name");
    addTextRow("m_clonedDisplayItemProperties", "header:1", "Wert", "Value");
}

void tst_Translations::cloneModeTexts()
{
    compareBothLanguages([]() -> std::unique_ptr<QWidget> {
        auto dialog = std::make_unique<DisplayModelDialog>(nullptr);
        auto root = std::make_shared<DisplayItem>("Root");
        dialog->setViewModel(Test::makeViewModel(root));
        dialog->m_useCloneCheckBox->setChecked(true);
        if (!dialog->findChild<QTreeWidget*>(QStringLiteral("m_clonedDisplayItemTreeWidget")))
            return nullptr;
        return dialog;
    });
}

void tst_Translations::cloneComparisonDialogTexts_data()
{
    addTextColumns();
    addTextRow("DebugCloneDisplayModelDialogClass", "windowTitle", "Anzeigemodell-Dialog", "DisplayModelDialog");
    addTextRow("bkLabel", "text", "Anzeigemodell", "Display Model");
    addTextRow("bkLabel_2", "text", "Geklontes Anzeigemodell", "Cloned Display Model");
}

void tst_Translations::cloneComparisonDialogTexts()
{
    compareBothLanguages([] {
        auto root = std::make_shared<DisplayItem>("Root");
        return std::make_unique<DebugCloneDisplayModelDialog>(nullptr, Test::makeViewModel(root));
    });
}

void tst_Translations::displayModel2DDialogTexts_data()
{
    addTextColumns();
    addTextRow("DisplayModel2DDialogClass", "windowTitle", "2D-Anzeigemodell-Dialog", "DisplayModel2DDialog");
    addTextRow("m_updateListPB", "text", "Liste aktualisieren", "Update List");
    addTextRow("groupBox", "title", "Anzeigeelemente", "Display items");
    addItemTreeAndPropertyPaneRows();
}

void tst_Translations::displayModel2DDialogTexts()
{
    Test::Plot2DHost host;
    compareBothLanguages([&host] { return std::make_unique<DisplayModel2DDialog>(host.presenter(), nullptr); });
}

void tst_Translations::treeWidgetActionTexts_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("germanText");
    QTest::addColumn<QString>("germanStatusTip");
    QTest::addColumn<QString>("englishText");
    QTest::addColumn<QString>("englishStatusTip");
    QTest::newRow("select") << 0 << "Anzeigeelement &auswählen/abwählen"
                            << "Wählt das Anzeigeelement aus oder hebt die Auswahl auf"
                            << "&Select/deselect display item"
                            << "Select or deselect the display item";
    QTest::newRow("delete") << 1 << "Anzeigeelement &löschen"
                            << "Löscht ein Anzeigeelement"
                            << "&Delete display item"
                            << "Delete a display item";
    QTest::newRow("invisible") << 2 << "Teilbaum unsichtbar machen"
                               << "Macht rekursiv alle Elemente des Teilbaums unsichtbar"
                               << "Make subtree invisible"
                               << "Make recursively all items in the subtree invisible";
    QTest::newRow("visible") << 3 << "Teilbaum sichtbar machen"
                             << "Macht rekursiv alle Elemente des Teilbaums sichtbar"
                             << "Make subtree visible"
                             << "Make recursively all items in the subtree visible";
}

void tst_Translations::treeWidgetActionTexts()
{
    QFETCH(int, index);
    QFETCH(QString, germanText);
    QFETCH(QString, germanStatusTip);
    QFETCH(QString, englishText);
    QFETCH(QString, englishStatusTip);

    // The tree's own actions, in the order it makes them.
    const auto actionOf = [index](const DisplayItemTreeWidget& tree) -> QAction* {
        const QList<QAction*> actions = tree.findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly);
        return actions.size() == 4 ? actions.at(index) : nullptr;
    };
    {
        QVERIFY(QCoreApplication::installTranslator(&m_german));
        const auto removeTranslator = qScopeGuard([this] { QCoreApplication::removeTranslator(&m_german); });
        DisplayItemTreeWidget tree(nullptr, true);
        QAction* action = actionOf(tree);
        QVERIFY(action);
        QCOMPARE(action->text(), germanText);
        QCOMPARE(action->statusTip(), germanStatusTip);
    }
    DisplayItemTreeWidget tree(nullptr, true);
    QAction* action = actionOf(tree);
    QVERIFY(action);
    QCOMPARE(action->text(), englishText);
    QCOMPARE(action->statusTip(), englishStatusTip);
}

void tst_Translations::noMatchToolTip_data()
{
    QTest::addColumn<bool>("german");
    QTest::addColumn<QString>("toolTip");
    QTest::newRow("German") << true << QStringLiteral("keine weitere Übereinstimmung unterhalb der aktuellen Zeile");
    QTest::newRow("English") << false << QStringLiteral("no further match below the current row");
}

// Shown on the search field only after a find that found nothing.
void tst_Translations::noMatchToolTip()
{
    QFETCH(bool, german);
    QFETCH(QString, toolTip);
    if (german)
        QVERIFY(QCoreApplication::installTranslator(&m_german));
    const auto removeTranslator = qScopeGuard([this] { QCoreApplication::removeTranslator(&m_german); });
    DisplayModelDialog dialog(nullptr);
    dialog.setViewModel(Test::makeViewModel(std::make_shared<DisplayItem>("Root")));
    QTest::keyClicks(dialog.m_searchValueLE, QStringLiteral("nowhere"));
    QCOMPARE(dialog.m_searchValueLE->toolTip(), QString());
    QTest::mouseClick(dialog.m_findDisplayItemPB, Qt::LeftButton);
    QCOMPARE(dialog.m_searchValueLE->toolTip(), toolTip);
}

void tst_Translations::propertyPaneMenuTexts_data()
{
    QTest::addColumn<bool>("german");
    QTest::addColumn<QStringList>("entries");
    QTest::newRow("German") << true
                            << QStringList{"Wert kopieren", "Name und Wert kopieren", "Alle Eigenschaften kopieren"};
    QTest::newRow("English") << false << QStringList{"Copy value", "Copy name and value", "Copy all properties"};
}

void tst_Translations::propertyPaneMenuTexts()
{
    QFETCH(bool, german);
    QFETCH(QStringList, entries);

    if (german)
        QVERIFY(QCoreApplication::installTranslator(&m_german));
    const auto removeTranslator = qScopeGuard([this] { QCoreApplication::removeTranslator(&m_german); });
    DisplayModelDialog dialog(nullptr);
    QVERIFY(Test::showAtOrigin(dialog));
    // The entries are looked up each time the menu opens.
    const Test::PaneMenuVisit visit = Test::chooseFromPaneMenu(dialog.m_displayItemProperties, -1, QString());
    QVERIFY(visit.opened);
    QCOMPARE(visit.entries, entries);
}

QTEST_MAIN(tst_Translations)
#include "tst_translations.moc"
