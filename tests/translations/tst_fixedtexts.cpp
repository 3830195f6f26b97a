#include <debugmenucontent/clonecomparison/DebugCloneDisplayModelDialog.h>
#include <debugmenucontent/displaymodel2d/DisplayModel2DDialog.h>
#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>

#include <referencehost/model/SceneViewModel.h>

#include "../common/Plot2DHost.h"
#include "../common/TestTree.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

#include <memory>

using namespace Brennvik;
using namespace Brennvik::Test;

namespace {

// What a user reads on \a object: a label's or button's text, a group's
// title, a tree's header labels, a combo box's entries with their data, a
// window's title. Joined by "|" where there are several.
QString shownText(const QObject* object)
{
    if (auto* label = qobject_cast<const QLabel*>(object))
        return label->text();
    if (auto* button = qobject_cast<const QAbstractButton*>(object))
        return button->text();
    if (auto* group = qobject_cast<const QGroupBox*>(object))
        return group->title();
    if (auto* tree = qobject_cast<const QTreeWidget*>(object)) {
        QStringList headers;
        for (int i = 0; i < tree->columnCount(); ++i)
            headers << tree->headerItem()->text(i);
        return headers.join(QLatin1Char('|'));
    }
    if (auto* combo = qobject_cast<const QComboBox*>(object)) {
        QStringList entries;
        for (int i = 0; i < combo->count(); ++i)
            entries << combo->itemText(i) + QLatin1Char('=') + combo->itemData(i).toString();
        return entries.join(QLatin1Char('|'));
    }
    if (auto* window = qobject_cast<const QWidget*>(object); window && window->isWindow())
        return window->windowTitle();
    return QStringLiteral("<no text>");
}

// The push buttons that Enter clicks, by object name.
QStringList defaultButtons(const QWidget& dialog)
{
    QStringList names;
    for (const QPushButton* button : dialog.findChildren<QPushButton*>()) {
        if (button->isDefault())
            names << button->objectName();
    }
    return names;
}

} // namespace

// The texts, titles, object names, modality and default buttons that the
// three dialogs have always shown and that hosts' tools and users rely on:
// changes made around them must leave them as they are.
class tst_FixedTexts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void texts_data();
    void texts();
    void layoutsKeepTheirNames_data();
    void layoutsKeepTheirNames();
    void windows_data();
    void windows();

private:
    QWidget* dialogNamed(const QString& name) const;

    std::unique_ptr<Plot2DHost> m_plotHost;
    std::shared_ptr<SceneViewModel> m_viewModel;
    std::unique_ptr<DisplayModelDialog> m_displayModelDialog;
    std::unique_ptr<DisplayModelDialog> m_cloneModeDialog;
    std::unique_ptr<DebugCloneDisplayModelDialog> m_cloneComparisonDialog;
    std::unique_ptr<DisplayModel2DDialog> m_dialog2D;
};

void tst_FixedTexts::initTestCase()
{
    m_plotHost = std::make_unique<Plot2DHost>();
    m_viewModel = makeViewModel(buildTree({"root", {{"a"}}}));

    m_displayModelDialog = std::make_unique<DisplayModelDialog>(nullptr);
    m_displayModelDialog->setViewModel(m_viewModel);
    m_cloneModeDialog = std::make_unique<DisplayModelDialog>(nullptr);
    m_cloneModeDialog->setViewModel(m_viewModel);
    m_cloneModeDialog->m_useCloneCheckBox->click();
    QVERIFY(m_cloneModeDialog->m_useCloneCheckBox->isChecked());
    m_cloneComparisonDialog = std::make_unique<DebugCloneDisplayModelDialog>(nullptr, m_viewModel);
    m_dialog2D = std::make_unique<DisplayModel2DDialog>(m_plotHost->presenter(), nullptr);

    // A dialog picks its default button when it is shown.
    for (QWidget* dialog :
         {static_cast<QWidget*>(m_displayModelDialog.get()), static_cast<QWidget*>(m_cloneModeDialog.get()),
          static_cast<QWidget*>(m_cloneComparisonDialog.get()), static_cast<QWidget*>(m_dialog2D.get())}) {
        dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(dialog));
    }
}

void tst_FixedTexts::cleanupTestCase()
{
    m_dialog2D.reset();
    m_cloneComparisonDialog.reset();
    m_cloneModeDialog.reset();
    m_displayModelDialog.reset();
    m_plotHost.reset();
}

QWidget* tst_FixedTexts::dialogNamed(const QString& name) const
{
    if (name == QLatin1String("display model"))
        return m_displayModelDialog.get();
    if (name == QLatin1String("display model, clone mode"))
        return m_cloneModeDialog.get();
    if (name == QLatin1String("clone comparison"))
        return m_cloneComparisonDialog.get();
    if (name == QLatin1String("2D"))
        return m_dialog2D.get();
    return nullptr;
}

void tst_FixedTexts::texts_data()
{
    QTest::addColumn<QString>("dialog");
    QTest::addColumn<QString>("objectName");
    QTest::addColumn<QString>("text");

    const auto row = [](const char* dialog, const char* objectName, const char* text) {
        QTest::addRow("%s: %s", dialog, objectName) << dialog << objectName << text;
    };
    const char* const dmd = "display model";
    row(dmd, "DisplayModelDialogClass", "DisplayModelDialog");
    row(dmd, "m_searchValueLbl_3", "Search Value:");
    row(dmd, "m_searchTypeLbl_3", "Search Criteria:");
    row(dmd, "m_searchTypeCB", "Any (*)=0|pointer=1|display item type=2");
    row(dmd, "label_3", "Number of Display Items:");
    row(dmd, "m_displayItemCountPB", "Update");
    row(dmd, "m_findDisplayItemPB", "Find next");
    row(dmd, "m_useCloneCheckBox", "Clone");
    row(dmd, "m_showCloneIn3dCheckBox", "Show Clone in 3D View");
    row(dmd, "m_propertyCompareMode", "Only compare mirrored item properties");
    row(dmd, "label_2", "Business object properties");
    row(dmd, "m_businessObjectProperties", "Name|Value");
    row(dmd, "label", "Display item properties");
    row(dmd, "m_displayItemProperties", "Name|Value");
    row(dmd, "m_displayItemTreeWidget", "Display items");

    const char* const clone = "display model, clone mode";
    row(clone, "m_clonedDisplayItemTreeWidget", "Cloned display items");
    row(clone, "m_lbl_cloned_business_obj_props", "Cloned business object properties");
    row(clone, "m_lbl_cloned_display_props", "Cloned display item properties");
    row(clone, "m_clonedDisplayItemProperties", "Name|Value");

    const char* const cmp = "clone comparison";
    row(cmp, "DebugCloneDisplayModelDialogClass", "DisplayModelDialog");
    row(cmp, "bkLabel", "Display Model");
    row(cmp, "bkLabel_2", "Cloned Display Model");
    row(cmp, "m_displayItemTree", "1");
    row(cmp, "m_clonedDisplayItemTree", "1");

    const char* const d2 = "2D";
    row(d2, "DisplayModel2DDialogClass", "DisplayModel2DDialog");
    row(d2, "m_updateListPB", "Update List");
    row(d2, "groupBox", "Display items");
    row(d2, "m_displayItemTreeWidget", "Display items");
    row(d2, "label_2", "Business object properties");
    row(d2, "m_businessObjectProperties", "Name|Value");
    row(d2, "label", "Display item properties");
    row(d2, "m_displayItemProperties", "Name|Value");
}

void tst_FixedTexts::texts()
{
    QFETCH(QString, dialog);
    QFETCH(QString, objectName);
    QFETCH(QString, text);
    QWidget* window = dialogNamed(dialog);
    QVERIFY(window);
    const QObject* object = window->objectName() == objectName ? window : window->findChild<QObject*>(objectName);
    QVERIFY2(object, qPrintable(objectName));
    QCOMPARE(shownText(object), text);
}

void tst_FixedTexts::layoutsKeepTheirNames_data()
{
    QTest::addColumn<QString>("dialog");
    QTest::addColumn<QStringList>("widgets");
    QTest::addColumn<QStringList>("layouts");

    QTest::newRow("display model") << "display model" << QStringList{"frame", "m_searchValueLE", "m_displayItemCountLE"}
                                   << QStringList{"verticalLayout",
                                                  "gridLayout",
                                                  "horizontalLayout_2",
                                                  "horizontalLayout",
                                                  "horizontalLayout_3",
                                                  "m_mainHLayout",
                                                  "_2",
                                                  "_3",
                                                  "_4"};
    QTest::newRow("display model, clone mode")
        << "display model, clone mode" << QStringList{}
        << QStringList{"m_vl_clonedProperties", "m_hl_cloned_business_props", "m_hl_cloned_display_props"};
    QTest::newRow("clone comparison") << "clone comparison" << QStringList{"m_outputTextField"}
                                      << QStringList{"gridLayout"};
    QTest::newRow("2D") << "2D" << QStringList{"m_plotListWdg"}
                        << QStringList{"verticalLayout", "hboxLayout", "vboxLayout", "hboxLayout1", "hboxLayout2"};
}

void tst_FixedTexts::layoutsKeepTheirNames()
{
    QFETCH(QString, dialog);
    QFETCH(QStringList, widgets);
    QFETCH(QStringList, layouts);
    QWidget* window = dialogNamed(dialog);
    QVERIFY(window);
    for (const QString& name : widgets)
        QVERIFY2(window->findChild<QWidget*>(name), qPrintable(name));
    for (const QString& name : layouts)
        QVERIFY2(window->findChild<QLayout*>(name), qPrintable(name));
}

void tst_FixedTexts::windows_data()
{
    QTest::addColumn<QString>("dialog");
    QTest::addColumn<bool>("modal");
    QTest::addColumn<QStringList>("defaultButtons");

    QTest::newRow("display model") << "display model" << false << QStringList{"m_displayItemCountPB"};
    QTest::newRow("display model, clone mode")
        << "display model, clone mode" << false << QStringList{"m_displayItemCountPB"};
    QTest::newRow("clone comparison") << "clone comparison" << true << QStringList{};
    QTest::newRow("2D") << "2D" << false << QStringList{};
}

void tst_FixedTexts::windows()
{
    QFETCH(QString, dialog);
    QFETCH(bool, modal);
    QFETCH(QStringList, defaultButtons);
    QWidget* window = dialogNamed(dialog);
    QVERIFY(window);
    QCOMPARE(window->isModal(), modal);
    QCOMPARE(::defaultButtons(*window), defaultButtons);
}

QTEST_MAIN(tst_FixedTexts)
#include "tst_fixedtexts.moc"
