#include <debugmenucontent/displaymodel2d/DisplayItemTreeWidgetItem2D.h>
#include <debugmenucontent/displaymodel2d/DisplayModel2DDialog.h>
#include <debugmenucontent/displaymodel2d/ViewModelHolder.h>

#include <hostcontract/BkHQWidget2D.h>
#include <hostcontract/DisplayItem2D.h>
#include <hostcontract/DisplayModel2D.h>
#include <hostcontract/GenericPlotManager.h>
#include <hostcontract/ProcessDesignerPresenter.h>
#include <hostcontract/VirtualDrawArea.h>

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/plot2d/MaterialGenerator.h>
#include <referencehost/plot2d/PlotLabelItem.h>

#include "../common/CursorRecordingItem.h"
#include "../common/DebugIcons.h"
#include "../common/Plot2DHost.h"
#include "../common/ShownWindow.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QMetaMethod>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <memory>
#include <string>
#include <vector>

using namespace Brennvik;
using Brennvik::Test::debugIconName;
using Brennvik::Test::Plot2DHost;

namespace {

// An item whose property lists the test chooses, and which counts how often they were asked for.
class PropertyItem : public DisplayItem2D
{
public:
    PropertyItem(std::string name, PropertyList business, PropertyList display)
        : DisplayItem2D(std::move(name))
        , m_business(std::move(business))
        , m_display(std::move(display))
    {
    }
    void getProperties(PropertyList& business, PropertyList& display) const override
    {
        ++calls;
        business.insert(business.end(), m_business.begin(), m_business.end());
        display.insert(display.end(), m_display.begin(), m_display.end());
    }
    mutable int calls = 0;

private:
    PropertyList m_business;
    PropertyList m_display;
};

// An item that notes the application's override cursor each time a row asks
// for its name: what a user sees while the dialog builds its tree.
class CursorNotingItem : public DisplayItem2D
{
public:
    CursorNotingItem(std::string name, std::shared_ptr<Brennvik::Test::CursorLog> log)
        : DisplayItem2D(std::move(name))
        , m_log(std::move(log))
    {
    }
    std::string getDisplayName() const override
    {
        m_log->append(Brennvik::Test::currentOverrideCursor());
        return DisplayItem2D::getDisplayName();
    }

private:
    std::shared_ptr<Brennvik::Test::CursorLog> m_log;
};

// A plot tree written as "root(a(a1),b)".
std::shared_ptr<DisplayItem2D> plotTree(const QString& shape)
{
    std::vector<std::shared_ptr<DisplayItem2D>> stack;
    std::shared_ptr<DisplayItem2D> root;
    QString name;
    auto flush = [&]() {
        if (name.isEmpty())
            return;
        auto item = std::make_shared<DisplayItem2D>(name.toStdString());
        if (stack.empty())
            root = item;
        else
            stack.back()->appendChild(item);
        stack.push_back(item);
        name.clear();
    };
    for (const QChar c : shape) {
        if (c == '(') {
            flush();
        } else if (c == ',' || c == ')') {
            flush();
            stack.pop_back();
        } else {
            name += c;
        }
    }
    flush();
    return root;
}

// The tree widget's rows in the same notation.
QString rowShape(const QTreeWidgetItem* row)
{
    QString text = row->text(0);
    if (row->childCount() > 0) {
        QStringList children;
        for (int i = 0; i < row->childCount(); ++i)
            children << rowShape(row->child(i));
        text += "(" + children.join(",") + ")";
    }
    return text;
}

QString treeShape(const QTreeWidget* tree)
{
    QStringList rows;
    for (int i = 0; i < tree->topLevelItemCount(); ++i)
        rows << rowShape(tree->topLevelItem(i));
    return rows.join(";");
}

QStringList listTexts(const QListWidget* list)
{
    QStringList texts;
    for (int i = 0; i < list->count(); ++i)
        texts << list->item(i)->text();
    return texts;
}

QStringList propertyLines(const QTreeWidget* tree)
{
    QStringList lines;
    for (int i = 0; i < tree->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = tree->topLevelItem(i);
        lines << row->text(0) + "=" + row->text(1) + " [" + row->toolTip(1) + "]";
    }
    return lines;
}

// The dialog makes nothing but 2D rows (type 1000); the row class is internal
// to the library, so it is told by its type here.
DisplayItemTreeWidgetItem2D* rowOf(QTreeWidgetItem* row)
{
    return row && row->type() == QTreeWidgetItem::UserType ? static_cast<DisplayItemTreeWidgetItem2D*>(row) : nullptr;
}

} // namespace

class tst_DisplayModel2DDialog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    // Form and meta-object
    void formStructureAndTexts();
    void metaObjectAnswers();
    void holderBaseEnablesItsWidget();
    void setViewModelLeavesDialogEnabled();

    // Listing
    void constructionSelectsFirstRowWithoutTree();
    void emptyListWithoutPlotsOrViewModel();
    void plotRowsByScreenPosition_data();
    void plotRowsByScreenPosition();
    void labelRowsTruncated_data();
    void labelRowsTruncated();
    void labelsSortedByScreenPosition();
    void hiddenPlotsAndInvisibleLabelsAreNotListed();
    void plotsComeBeforeLabels();
    void labelsNeedALiveViewModel();
    void materialGeneratorPlotsAreListedTooEvenTwice();
    void materialGeneratorPropertyWithoutWidgetIsIgnored();
    void selectingRowsShowsTheirModels();
    void missingModelsGiveEmptyTrees();
    void runClearsTreeFirstThenShowsFirstRow();

    // Tree
    void treeMirrorsModelWithNoRowExpanded();
    void childAddedIsAppendedLast();
    void removedChildTakesItsRowAndSubtree();
    void removedChildWithoutRowLeavesTreeUnchanged();
    void displayItemsModifiedPrintsOncePerListing_data();
    void displayItemsModifiedPrintsOncePerListing();
    void propertiesGoToTheirTreesInOrder();
    void rowWithoutPropertiesLeavesBothTreesEmpty();
    void modifiedCurrentItemIsPrintedAgain();
    void updateVisiblityRefreshesRowsBelowStart();
    void updateVisiblityAfterTheTreeWasEmptiedDoesNothing();
    void setDisplayModel2DShowsModel();

    // Double click
    void doubleClickColumnZeroTogglesCurrentRow();
    void doubleClickColumnOneDoesNothing();
    void doubleClickActsOnCurrentRowNotTheReportedOne();

    // What the dialog does for its users
    void escapeKeepsDialogOpen_data();
    void escapeKeepsDialogOpen();
    void rebuildShowsWaitCursor_data();
    void rebuildShowsWaitCursor();

private:
    DisplayModel2DDialog* makeDialog(bool show = true);
    void clickListRow(int row);
    void doubleClick(QTreeWidgetItem* row, int column);
    QTreeWidget* tree() const { return m_dialog->m_displayItemTreeWidget; }
    QListWidget* list() const { return m_dialog->m_plotListWdg; }

    std::unique_ptr<Plot2DHost> m_host;
    DisplayModel2DDialog* m_dialog = nullptr;
};

void tst_DisplayModel2DDialog::init()
{
    m_host = std::make_unique<Plot2DHost>();
    m_host->show();
}

void tst_DisplayModel2DDialog::cleanup()
{
    delete m_dialog;
    m_dialog = nullptr;
    m_host.reset();
    setMaterialGeneratorWindow(nullptr);
}

DisplayModel2DDialog* tst_DisplayModel2DDialog::makeDialog(bool show)
{
    m_dialog = new DisplayModel2DDialog(m_host->presenter(), nullptr);
    if (show) {
        m_dialog->move(0, 0);
        m_dialog->show();
        if (!QTest::qWaitForWindowExposed(m_dialog))
            qWarning("dialog not exposed");
    }
    return m_dialog;
}

void tst_DisplayModel2DDialog::clickListRow(int row)
{
    QListWidgetItem* item = list()->item(row);
    QVERIFY(item);
    list()->scrollToItem(item);
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, Qt::NoModifier, list()->visualItemRect(item).center());
}

void tst_DisplayModel2DDialog::doubleClick(QTreeWidgetItem* row, int column)
{
    tree()->scrollToItem(row);
    QRect rect = tree()->visualItemRect(row);
    QVERIFY(rect.isValid());
    // The rectangle of the wanted column within the row.
    const int left = tree()->header()->sectionViewportPosition(column);
    rect.setLeft(left);
    rect.setWidth(tree()->header()->sectionSize(column));
    const QPoint pos = rect.center();
    // What a user's double click delivers: press and release, then the double click.
    QTest::mousePress(tree()->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
    QTest::mouseRelease(tree()->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
    QTest::mouseDClick(tree()->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
    QTest::mouseRelease(tree()->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
}

// ---------------------------------------------------------------- form and meta-object

void tst_DisplayModel2DDialog::formStructureAndTexts()
{
    makeDialog(false);
    static_assert(std::is_base_of_v<QDialog, DisplayModel2DDialog>, "a dialog");
    static_assert(std::is_base_of_v<ViewModelHolder, DisplayModel2DDialog>, "a holder");
    static_assert(std::is_base_of_v<Ui::DisplayModel2DDialogClass, DisplayModel2DDialog>, "its form");

    QCOMPARE(m_dialog->objectName(), QStringLiteral("DisplayModel2DDialogClass"));
    QCOMPARE(m_dialog->size(), QSize(620, 792));
    QCOMPARE(m_dialog->windowTitle(), QStringLiteral("DisplayModel2DDialog"));
    QCOMPARE(m_dialog->windowFlags() & Qt::WindowType_Mask, Qt::Dialog);

    QCOMPARE(m_dialog->verticalLayout->objectName(), QStringLiteral("verticalLayout"));
    QCOMPARE(m_dialog->layout(), m_dialog->verticalLayout);
    for (QLayout* layout :
         {static_cast<QLayout*>(m_dialog->verticalLayout), static_cast<QLayout*>(m_dialog->hboxLayout),
          static_cast<QLayout*>(m_dialog->vboxLayout), static_cast<QLayout*>(m_dialog->hboxLayout1),
          static_cast<QLayout*>(m_dialog->hboxLayout2)}) {
        QCOMPARE(layout->spacing(), 6);
        QCOMPARE(layout->contentsMargins(), QMargins(11, 11, 11, 11));
    }
    QCOMPARE(m_dialog->verticalLayout->count(), 3);
    QCOMPARE(m_dialog->verticalLayout->itemAt(0)->widget(), m_dialog->m_plotListWdg);
    QCOMPARE(m_dialog->verticalLayout->itemAt(1)->widget(), m_dialog->m_updateListPB);
    QCOMPARE(m_dialog->verticalLayout->itemAt(2)->widget(), m_dialog->groupBox);

    QVERIFY(qobject_cast<BKListWidget*>(m_dialog->m_plotListWdg));
    QCOMPARE(m_dialog->m_plotListWdg->objectName(), QStringLiteral("m_plotListWdg"));
    QVERIFY(qobject_cast<BKPushButton*>(m_dialog->m_updateListPB));
    QCOMPARE(m_dialog->m_updateListPB->objectName(), QStringLiteral("m_updateListPB"));
    QCOMPARE(m_dialog->m_updateListPB->text(), QStringLiteral("Update List"));
    QVERIFY(!m_dialog->m_updateListPB->autoDefault());
    QCOMPARE(m_dialog->m_updateListPB->sizePolicy().horizontalPolicy(), QSizePolicy::Minimum);
    QCOMPARE(m_dialog->m_updateListPB->sizePolicy().verticalPolicy(), QSizePolicy::Fixed);

    QCOMPARE(m_dialog->groupBox->objectName(), QStringLiteral("groupBox"));
    QCOMPARE(m_dialog->groupBox->title(), QStringLiteral("Display items"));
    QCOMPARE(m_dialog->groupBox->layout(), m_dialog->hboxLayout);
    QCOMPARE(m_dialog->hboxLayout->itemAt(0)->widget(), tree());
    QCOMPARE(m_dialog->hboxLayout->itemAt(1)->layout(), m_dialog->vboxLayout);
    QCOMPARE(tree()->parentWidget(), m_dialog->groupBox);
    QCOMPARE(QString(tree()->metaObject()->className()), QStringLiteral("QTreeWidget"));
    QCOMPARE(tree()->objectName(), QStringLiteral("m_displayItemTreeWidget"));
    QVERIFY(!tree()->expandsOnDoubleClick());

    QCOMPARE(m_dialog->vboxLayout->itemAt(0)->layout(), m_dialog->hboxLayout1);
    QCOMPARE(m_dialog->vboxLayout->itemAt(1)->widget(), m_dialog->m_businessObjectProperties);
    QCOMPARE(m_dialog->vboxLayout->itemAt(2)->layout(), m_dialog->hboxLayout2);
    QCOMPARE(m_dialog->vboxLayout->itemAt(3)->widget(), m_dialog->m_displayItemProperties);
    QCOMPARE(m_dialog->hboxLayout1->itemAt(0)->widget(), m_dialog->label_2);
    QCOMPARE(m_dialog->hboxLayout2->itemAt(0)->widget(), m_dialog->label);
    for (QHBoxLayout* row : {m_dialog->hboxLayout1, m_dialog->hboxLayout2}) {
        QSpacerItem* spacer = row->itemAt(1)->spacerItem();
        QVERIFY(spacer);
        QCOMPARE(spacer->sizeHint(), QSize(40, 20));
        QCOMPARE(spacer->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
        QCOMPARE(spacer->sizePolicy().verticalPolicy(), QSizePolicy::Minimum);
    }
    QCOMPARE(m_dialog->label_2->text(), QStringLiteral("Business object properties"));
    QCOMPARE(m_dialog->label->text(), QStringLiteral("Display item properties"));

    // The constructor's headers replace the form's "1" and "2".
    QCOMPARE(tree()->headerItem()->text(0), QStringLiteral("Display items"));
    for (QTreeWidget* properties : {m_dialog->m_businessObjectProperties, m_dialog->m_displayItemProperties}) {
        QCOMPARE(properties->columnCount(), 2);
        QCOMPARE(properties->headerItem()->text(0), QStringLiteral("Name"));
        QCOMPARE(properties->headerItem()->text(1), QStringLiteral("Value"));
    }
    QCOMPARE(m_dialog->m_businessObjectProperties->objectName(), QStringLiteral("m_businessObjectProperties"));
    QCOMPARE(m_dialog->m_displayItemProperties->objectName(), QStringLiteral("m_displayItemProperties"));

    // The form's own headers, before the constructor replaces them.
    Ui::DisplayModel2DDialogClass form;
    QDialog plain;
    form.setupUi(&plain);
    QCOMPARE(plain.objectName(), QStringLiteral("DisplayModel2DDialogClass"));
    QCOMPARE(form.m_displayItemTreeWidget->headerItem()->text(0), QStringLiteral("1"));
    for (QTreeWidget* properties : {form.m_businessObjectProperties, form.m_displayItemProperties}) {
        QCOMPARE(properties->headerItem()->text(0), QStringLiteral("1"));
        QCOMPARE(properties->headerItem()->text(1), QStringLiteral("2"));
    }
    QDialog named;
    named.setObjectName("named");
    form.setupUi(&named);
    QCOMPARE(named.objectName(), QStringLiteral("named"));
}

void tst_DisplayModel2DDialog::metaObjectAnswers()
{
    makeDialog(false);
    const QMetaObject* meta = m_dialog->metaObject();
    QCOMPARE(QString(meta->className()), QStringLiteral("Brennvik::DisplayModel2DDialog"));
    QCOMPARE(meta->superClass(), &QDialog::staticMetaObject);

    QStringList slotNames;
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        QCOMPARE(method.methodType(), QMetaMethod::Slot);
        QCOMPARE(method.access(), QMetaMethod::Private);
        slotNames << QString(method.methodSignature());
    }
    QCOMPARE(
        slotNames,
        (QStringList{"onDisplayItemTreeWidgetCurrentItemChanged(QTreeWidgetItem*,QTreeWidgetItem*)",
                     "onDisplayItemTreeWidgetItemDoubleClicked(QTreeWidgetItem*,int)", "onUpdateListPBClicked()"}));
    QCOMPARE(meta->propertyCount(), meta->propertyOffset());

    QCOMPARE(m_dialog->qt_metacast("Brennvik::DisplayModel2DDialog"), static_cast<void*>(m_dialog));
    QCOMPARE(m_dialog->qt_metacast("ViewModelHolder"), static_cast<void*>(static_cast<ViewModelHolder*>(m_dialog)));
    QCOMPARE(m_dialog->qt_metacast("Ui::DisplayModel2DDialogClass"),
             static_cast<void*>(static_cast<Ui::DisplayModel2DDialogClass*>(m_dialog)));
    QCOMPARE(m_dialog->qt_metacast("QDialog"), static_cast<void*>(static_cast<QDialog*>(m_dialog)));
    QCOMPARE(m_dialog->qt_metacast("Brennvik::ViewModelHolder"), nullptr);
}

void tst_DisplayModel2DDialog::holderBaseEnablesItsWidget()
{
    QWidget widget;
    ViewModelHolder holder(&widget);
    auto viewModel = std::make_shared<SceneViewModel>();
    holder.setViewModel(nullptr);
    QVERIFY(!widget.isEnabled());
    holder.setViewModel(viewModel);
    QVERIFY(widget.isEnabled());
    holder.setViewModel(nullptr);
    QVERIFY(!widget.isEnabled());
}

void tst_DisplayModel2DDialog::setViewModelLeavesDialogEnabled()
{
    makeDialog();
    m_dialog->setViewModel(nullptr);
    QVERIFY(m_dialog->isEnabled());
    m_dialog->setViewModel(m_host->viewModel());
    QVERIFY(m_dialog->isEnabled());
    m_dialog->setEnabled(false);
    m_dialog->setViewModel(m_host->viewModel());
    QVERIFY(!m_dialog->isEnabled());
}

// ---------------------------------------------------------------- listing

void tst_DisplayModel2DDialog::constructionSelectsFirstRowWithoutTree()
{
    m_host->addPlot(QPoint(10, 20), plotTree("Force(Axes,Curves)"));
    makeDialog(false);
    QCOMPARE(listTexts(list()), QStringList{"Plot at (10, 20)"});
    QCOMPARE(list()->currentRow(), 0);
    QCOMPARE(tree()->topLevelItemCount(), 0);
    QCOMPARE(m_dialog->getDisplayModelOfSelectedPlot(), nullptr);

    m_dialog->show();
    QCOMPARE(list()->currentRow(), 0);
    QCOMPARE(treeShape(tree()), QStringLiteral("Force(Axes,Curves)"));
}

void tst_DisplayModel2DDialog::emptyListWithoutPlotsOrViewModel()
{
    makeDialog();
    QCOMPARE(list()->count(), 0);
    QCOMPARE(list()->currentRow(), -1);
    QCOMPARE(tree()->topLevelItemCount(), 0);
    QCOMPARE(m_dialog->m_businessObjectProperties->topLevelItemCount(), 0);
    QCOMPARE(m_dialog->m_displayItemProperties->topLevelItemCount(), 0);
    QTest::mouseClick(m_dialog->m_updateListPB, Qt::LeftButton);
    QCOMPARE(list()->count(), 0);
    QCOMPARE(list()->currentRow(), -1);
}

void tst_DisplayModel2DDialog::plotRowsByScreenPosition_data()
{
    QTest::addColumn<QList<QPoint>>("positions");
    QTest::addColumn<QStringList>("rows");

    QTest::newRow("same y: by x") << QList<QPoint>{{300, 40}, {100, 40}}
                                  << QStringList{"Plot at (100, 40)", "Plot at (300, 40)"};
    QTest::newRow("top to bottom first") << QList<QPoint>{{500, 10}, {0, 200}, {250, 10}}
                                         << QStringList{"Plot at (250, 10)", "Plot at (500, 10)", "Plot at (0, 200)"};
    QTest::newRow("one plot") << QList<QPoint>{{1, 2}} << QStringList{"Plot at (1, 2)"};
}

void tst_DisplayModel2DDialog::plotRowsByScreenPosition()
{
    QFETCH(QList<QPoint>, positions);
    QFETCH(QStringList, rows);
    for (const QPoint& pos : positions)
        m_host->addPlot(pos, plotTree("Plot"));
    makeDialog();
    QCOMPARE(listTexts(list()), rows);
    QCOMPARE(list()->currentRow(), 0);
}

void tst_DisplayModel2DDialog::labelRowsTruncated_data()
{
    QTest::addColumn<float>("x");
    QTest::addColumn<float>("y");
    QTest::addColumn<QString>("row");

    QTest::newRow("positive x, negative y") << 12.9f << -3.7f << "PlotLabel at (12, -3)";
    QTest::newRow("toward zero, not down") << -0.9f << 7.99f << "PlotLabel at (0, 7)";
    QTest::newRow("halves are cut") << 640.5f << 377.5f << "PlotLabel at (640, 377)";
    QTest::newRow("negative") << -5.5f << -10.2f << "PlotLabel at (-5, -10)";
}

void tst_DisplayModel2DDialog::labelRowsTruncated()
{
    QFETCH(float, x);
    QFETCH(float, y);
    QFETCH(QString, row);
    // The view widget sits at the screen's origin; world y is up, pixel y down.
    m_host->addLabel("label", Vector<float, 3>(x, -y, 4.0f), plotTree("Label plot"));
    makeDialog();
    m_dialog->setViewModel(m_host->viewModel());
    QTest::mouseClick(m_dialog->m_updateListPB, Qt::LeftButton);
    QCOMPARE(listTexts(list()), QStringList{row});
}

void tst_DisplayModel2DDialog::labelsSortedByScreenPosition()
{
    // Moving the view widget moves every label by the same amount.
    m_host->viewWidget().move(100, 50);
    m_host->addLabel("low", Vector<float, 3>(5.0f, -300.0f, 0.0f), plotTree("low"));
    m_host->addLabel("right", Vector<float, 3>(20.0f, -10.0f, 0.0f), plotTree("right"));
    m_host->addLabel("left", Vector<float, 3>(10.0f, -10.0f, 0.0f), plotTree("left"));
    m_host->addLabel("top", Vector<float, 3>(500.0f, 0.0f, 0.0f), plotTree("top"));
    makeDialog();
    m_dialog->setViewModel(m_host->viewModel());
    QTest::mouseClick(m_dialog->m_updateListPB, Qt::LeftButton);
    QCOMPARE(listTexts(list()),
             (QStringList{"PlotLabel at (600, 50)", "PlotLabel at (110, 60)", "PlotLabel at (120, 60)",
                          "PlotLabel at (105, 350)"}));
    // The labels were reordered with their rows.
    clickListRow(1);
    QCOMPARE(treeShape(tree()), QStringLiteral("left"));
    clickListRow(3);
    QCOMPARE(treeShape(tree()), QStringLiteral("low"));
}

void tst_DisplayModel2DDialog::hiddenPlotsAndInvisibleLabelsAreNotListed()
{
    m_host->addPlot(QPoint(10, 10), plotTree("shown"));
    BkHQWidget2D* hidden = m_host->addPlot(QPoint(20, 20), plotTree("hidden"));
    hidden->hide();
    m_host->addLabel("visible label", Vector<float, 3>(1.0f, -1.0f, 0.0f), plotTree("visible label"));
    m_host->addLabel("invisible label", Vector<float, 3>(2.0f, -2.0f, 0.0f), plotTree("x"))->setVisible(false);
    makeDialog();
    m_dialog->setViewModel(m_host->viewModel());
    QTest::mouseClick(m_dialog->m_updateListPB, Qt::LeftButton);
    QCOMPARE(listTexts(list()), (QStringList{"Plot at (10, 10)", "PlotLabel at (1, 1)"}));

    hidden->show();
    QTest::mouseClick(m_dialog->m_updateListPB, Qt::LeftButton);
    QCOMPARE(listTexts(list()), (QStringList{"Plot at (10, 10)", "Plot at (20, 20)", "PlotLabel at (1, 1)"}));
}

void tst_DisplayModel2DDialog::plotsComeBeforeLabels()
{
    m_host->addPlot(QPoint(400, 600), plotTree("plot"));
    m_host->addLabel("label", Vector<float, 3>(0.0f, 0.0f, 0.0f), plotTree("label"));
    makeDialog();
    m_dialog->setViewModel(m_host->viewModel());
    QTest::mouseClick(m_dialog->m_updateListPB, Qt::LeftButton);
    QCOMPARE(listTexts(list()), (QStringList{"Plot at (400, 600)", "PlotLabel at (0, 0)"}));
    clickListRow(1);
    QCOMPARE(treeShape(tree()), QStringLiteral("label"));
    clickListRow(0);
    QCOMPARE(treeShape(tree()), QStringLiteral("plot"));
}

void tst_DisplayModel2DDialog::labelsNeedALiveViewModel()
{
    m_host->addLabel("label", Vector<float, 3>(3.0f, -4.0f, 0.0f), plotTree("label"));
    makeDialog();
    QCOMPARE(list()->count(), 0); // no view model given

    // A view model that only the test holds, in the same view.
    auto viewModel = std::make_shared<SceneViewModel>();
    viewModel->setView(&m_host->view());
    auto labels = std::make_shared<DisplayItem>("Labels");
    labels->appendChild(
        std::make_shared<PlotLabelItem>("label", "label", nullptr, Vector<float, 3>(3.0f, -4.0f, 0.0f)));
    viewModel->labelDisplayModel().setRootDisplayItem(labels);
    m_dialog->setViewModel(viewModel);
    QTest::mouseClick(m_dialog->m_updateListPB, Qt::LeftButton);
    QCOMPARE(listTexts(list()), QStringList{"PlotLabel at (3, 4)"});

    viewModel.reset(); // the dialog held it weakly
    QTest::mouseClick(m_dialog->m_updateListPB, Qt::LeftButton);
    QCOMPARE(list()->count(), 0);
    QCOMPARE(list()->currentRow(), -1);
}

void tst_DisplayModel2DDialog::materialGeneratorPlotsAreListedTooEvenTwice()
{
    auto* generator = new QWidget(&m_host->window());
    generator->setGeometry(0, 0, 800, 600);
    generator->show();
    m_host->addPlot(QPoint(30, 30), plotTree("designer"));
    BkHQWidget2D* generatorPlot = m_host->addPlot(QPoint(50, 5), plotTree("generator"), false);
    generatorPlot->setParent(new QWidget(generator)); // deeper down
    generatorPlot->parentWidget()->show();
    generatorPlot->show();
    BkHQWidget2D* both = m_host->addPlot(QPoint(5, 400), plotTree("both"));
    both->setParent(generator);
    both->move(5, 400);
    both->show();
    BkHQWidget2D* hiddenInGenerator = m_host->addPlot(QPoint(9, 9), plotTree("hidden"), false);
    hiddenInGenerator->setParent(generator);
    hiddenInGenerator->hide();

    setMaterialGeneratorWindow(generator);
    makeDialog();
    QCOMPARE(listTexts(list()),
             (QStringList{"Plot at (50, 5)", "Plot at (30, 30)", "Plot at (5, 400)", "Plot at (5, 400)"}));
}

void tst_DisplayModel2DDialog::materialGeneratorPropertyWithoutWidgetIsIgnored()
{
    m_host->addPlot(QPoint(30, 30), plotTree("designer"));
    QObject notAWidget;
    qApp->setProperty("MaterialGenerator", QVariant::fromValue(&notAWidget));
    makeDialog();
    QCOMPARE(listTexts(list()), QStringList{"Plot at (30, 30)"});
    qApp->setProperty("MaterialGenerator", QVariant(42));
    QTest::mouseClick(m_dialog->m_updateListPB, Qt::LeftButton);
    QCOMPARE(listTexts(list()), QStringList{"Plot at (30, 30)"});
    qApp->setProperty("MaterialGenerator", QVariant());
}

void tst_DisplayModel2DDialog::selectingRowsShowsTheirModels()
{
    BkHQWidget2D* first = m_host->addPlot(QPoint(10, 10), plotTree("first(a,b)"));
    BkHQWidget2D* second = m_host->addPlot(QPoint(10, 200), plotTree("second(c)"));
    auto label = m_host->addLabel("label", Vector<float, 3>(1.0f, -1.0f, 0.0f), plotTree("third"));
    makeDialog();
    m_dialog->setViewModel(m_host->viewModel());
    QTest::mouseClick(m_dialog->m_updateListPB, Qt::LeftButton);
    QCOMPARE(m_dialog->getDisplayModelOfSelectedPlot(), Plot2DHost::modelOf(first));
    QCOMPARE(treeShape(tree()), QStringLiteral("first(a,b)"));

    clickListRow(1);
    QCOMPARE(list()->currentRow(), 1);
    QCOMPARE(m_dialog->getDisplayModelOfSelectedPlot(), Plot2DHost::modelOf(second));
    QCOMPARE(treeShape(tree()), QStringLiteral("second(c)"));

    clickListRow(2);
    QCOMPARE(m_dialog->getDisplayModelOfSelectedPlot(), Plot2DHost::modelOf(*label));
    QCOMPARE(treeShape(tree()), QStringLiteral("third"));
}

void tst_DisplayModel2DDialog::missingModelsGiveEmptyTrees()
{
    BkHQWidget2D* noManager = m_host->addPlot(QPoint(10, 10), plotTree("x"));
    noManager->setPlotManager(nullptr);
    BkHQWidget2D* noModel = m_host->addPlot(QPoint(10, 100), plotTree("y"));
    noModel->getPlotManager()->setDisplayModel2D(nullptr);
    m_host->addPlot(QPoint(10, 200), nullptr); // a model without root
    m_host->addLabel("no description", Vector<float, 3>(1.0f, -1.0f, 0.0f), nullptr, false);
    m_host->addPlot(QPoint(10, 300), plotTree("real"));
    makeDialog();
    m_dialog->setViewModel(m_host->viewModel());
    QTest::mouseClick(m_dialog->m_updateListPB, Qt::LeftButton);
    QCOMPARE(list()->count(), 5);

    for (int row = 0; row < 3; ++row) {
        clickListRow(4); // something in the tree first
        QCOMPARE(tree()->topLevelItemCount(), 0);
        clickListRow(3);
        QCOMPARE(treeShape(tree()), QStringLiteral("real"));
        clickListRow(row);
        QCOMPARE(list()->currentRow(), row);
        QCOMPARE(tree()->topLevelItemCount(), 0);
    }
    clickListRow(4); // the label without description is listed, its tree is empty
    QCOMPARE(m_dialog->getDisplayModelOfSelectedPlot(), nullptr);
    QCOMPARE(tree()->topLevelItemCount(), 0);
}

void tst_DisplayModel2DDialog::runClearsTreeFirstThenShowsFirstRow()
{
    m_host->addPlot(QPoint(10, 10), plotTree("first"));
    m_host->addPlot(QPoint(10, 200), plotTree("second"));
    makeDialog();
    clickListRow(1);
    QCOMPARE(treeShape(tree()), QStringLiteral("second"));

    // Connected after the dialog's own connection: sees the tree as the dialog left it.
    QStringList seen;
    connect(list(), &QListWidget::currentRowChanged, this,
            [&seen, this](int row) { seen << QString::number(row) + ":" + treeShape(tree()); });
    QTest::mouseClick(m_dialog->m_updateListPB, Qt::LeftButton);
    QCOMPARE(seen, (QStringList{"-1:", "0:first"}));
    QCOMPARE(treeShape(tree()), QStringLiteral("first"));
}

// ---------------------------------------------------------------- tree

void tst_DisplayModel2DDialog::treeMirrorsModelWithNoRowExpanded()
{
    m_host->addPlot(QPoint(10, 10), plotTree("Plot(Axes(x,y),Curves(Punch,Die),Legend)"));
    makeDialog();
    QCOMPARE(treeShape(tree()), QStringLiteral("Plot(Axes(x,y),Curves(Punch,Die),Legend)"));
    QTreeWidgetItemIterator it(tree());
    for (; *it; ++it) {
        QVERIFY(!(*it)->isExpanded());
        QVERIFY(rowOf(*it));
    }
}

void tst_DisplayModel2DDialog::childAddedIsAppendedLast()
{
    auto root = plotTree("Plot(a,b)");
    m_host->addPlot(QPoint(10, 10), root);
    makeDialog();
    auto child = plotTree("new(n1,n2)");
    root->insertChild(0, child);
    QCOMPARE(root->getChildren().front(), child);
    QCOMPARE(treeShape(tree()), QStringLiteral("Plot(a,b,new(n1,n2))"));

    // Events of the new rows are followed too.
    child->appendChild(std::make_shared<DisplayItem2D>("n3"));
    QCOMPARE(treeShape(tree()), QStringLiteral("Plot(a,b,new(n1,n2,n3))"));
}

void tst_DisplayModel2DDialog::removedChildTakesItsRowAndSubtree()
{
    auto root = plotTree("Plot(a(a1,a2),b)");
    m_host->addPlot(QPoint(10, 10), root);
    makeDialog();
    std::weak_ptr<DisplayItem2D> removed = root->getChildren().front();
    root->removeChild(root->getChildren().front());
    QCOMPARE(treeShape(tree()), QStringLiteral("Plot(b)"));
    QVERIFY(removed.expired()); // its rows, which held it, are gone
}

void tst_DisplayModel2DDialog::removedChildWithoutRowLeavesTreeUnchanged()
{
    auto root = plotTree("Plot(a(a1),b)");
    m_host->addPlot(QPoint(10, 10), root);
    makeDialog();
    auto* rootRow = rowOf(tree()->topLevelItem(0));
    QVERIFY(rootRow);

    m_dialog->displayItemRemoved(rootRow, std::make_shared<DisplayItem2D>("a"));
    QCOMPARE(treeShape(tree()), QStringLiteral("Plot(a(a1),b)"));
    // A grandchild is not a child of the root row either.
    m_dialog->displayItemRemoved(rootRow, root->getChildren().front()->getChildren().front());
    QCOMPARE(treeShape(tree()), QStringLiteral("Plot(a(a1),b)"));
    m_dialog->displayItemRemoved(rootRow, root->getChildren().back());
    QCOMPARE(treeShape(tree()), QStringLiteral("Plot(a(a1))"));
}

void tst_DisplayModel2DDialog::displayItemsModifiedPrintsOncePerListing_data()
{
    QTest::addColumn<QString>("listed");
    QTest::addColumn<int>("prints");

    QTest::newRow("current twice") << "cc" << 2;
    QTest::newRow("current once") << "c" << 1;
    QTest::newRow("other only") << "o" << 0;
    QTest::newRow("no early exit") << "coc" << 2;
    QTest::newRow("nothing") << "" << 0;
}

void tst_DisplayModel2DDialog::displayItemsModifiedPrintsOncePerListing()
{
    QFETCH(QString, listed);
    QFETCH(int, prints);
    auto root = std::make_shared<DisplayItem2D>("Plot");
    auto current = std::make_shared<PropertyItem>("current", PropertyList{{"b", "1"}}, PropertyList{{"d", "2"}});
    auto other = std::make_shared<PropertyItem>("other", PropertyList{}, PropertyList{});
    root->appendChild(current);
    root->appendChild(other);
    m_host->addPlot(QPoint(10, 10), root);
    makeDialog();
    tree()->setCurrentItem(tree()->topLevelItem(0)->child(0));
    QCOMPARE(current->calls, 1);

    std::vector<std::shared_ptr<DisplayItem2D>> items;
    for (const QChar c : listed)
        items.push_back(c == 'c' ? std::shared_ptr<DisplayItem2D>(current) : std::shared_ptr<DisplayItem2D>(other));
    m_dialog->displayItemsModified(items);
    QCOMPARE(current->calls, 1 + prints);
    QCOMPARE(other->calls, 0);
    QCOMPARE(propertyLines(m_dialog->m_displayItemProperties), QStringList{"d=2 [2]"});
}

void tst_DisplayModel2DDialog::propertiesGoToTheirTreesInOrder()
{
    auto root = std::make_shared<DisplayItem2D>("Plot");
    auto item
        = std::make_shared<PropertyItem>("Punch", PropertyList{{"tool", "Punch"}, {"unit", "kN"}, {"alpha", "last"}},
                                         PropertyList{{"zeta", "1"}, {"color", "#1f77b4"}});
    root->appendChild(item);
    m_host->addPlot(QPoint(10, 10), root);
    makeDialog();

    QTreeWidgetItem* row = tree()->topLevelItem(0)->child(0);
    tree()->expandAll();
    QTest::mouseClick(tree()->viewport(), Qt::LeftButton, Qt::NoModifier, tree()->visualItemRect(row).center());
    QCOMPARE(tree()->currentItem(), row);
    QCOMPARE(propertyLines(m_dialog->m_businessObjectProperties),
             (QStringList{"tool=Punch [Punch]", "unit=kN [kN]", "alpha=last [last]"}));
    QCOMPARE(propertyLines(m_dialog->m_displayItemProperties), (QStringList{"zeta=1 [1]", "color=#1f77b4 [#1f77b4]"}));
}

void tst_DisplayModel2DDialog::rowWithoutPropertiesLeavesBothTreesEmpty()
{
    auto root = std::make_shared<DisplayItem2D>("Plot");
    root->setBusinessProperty("plot", "Force");
    root->setDisplayProperty("frame", "on");
    root->appendChild(std::make_shared<DisplayItem2D>("bare"));
    m_host->addPlot(QPoint(10, 10), root);
    makeDialog();
    tree()->setCurrentItem(tree()->topLevelItem(0));
    QCOMPARE(propertyLines(m_dialog->m_businessObjectProperties), QStringList{"plot=Force [Force]"});
    QCOMPARE(propertyLines(m_dialog->m_displayItemProperties), QStringList{"frame=on [on]"});

    tree()->setCurrentItem(tree()->topLevelItem(0)->child(0));
    QCOMPARE(m_dialog->m_businessObjectProperties->topLevelItemCount(), 0);
    QCOMPARE(m_dialog->m_displayItemProperties->topLevelItemCount(), 0);
}

void tst_DisplayModel2DDialog::modifiedCurrentItemIsPrintedAgain()
{
    auto root = plotTree("Plot(a,b)");
    m_host->addPlot(QPoint(10, 10), root);
    makeDialog();
    tree()->setCurrentItem(tree()->topLevelItem(0)->child(0));
    root->getChildren()[0]->setBusinessProperty("k", "v1");
    QCOMPARE(propertyLines(m_dialog->m_businessObjectProperties), QStringList{"k=v1 [v1]"});
    // A change of another item leaves the panes alone.
    root->getChildren()[1]->setBusinessProperty("other", "x");
    QCOMPARE(propertyLines(m_dialog->m_businessObjectProperties), QStringList{"k=v1 [v1]"});
}

void tst_DisplayModel2DDialog::updateVisiblityRefreshesRowsBelowStart()
{
    m_host->addPlot(QPoint(10, 10), plotTree("Plot(a(a1),b)"));
    makeDialog();
    QTreeWidgetItem* root = tree()->topLevelItem(0);
    QTreeWidgetItemIterator it(tree());
    for (; *it; ++it)
        (*it)->setIcon(0, QIcon());

    m_dialog->updateVisiblity(root->child(0));
    QCOMPARE(debugIconName(root->child(0)->icon(0)), QString()); // the start row stays
    QCOMPARE(debugIconName(root->child(0)->child(0)->icon(0)), QStringLiteral("visible"));
    QCOMPARE(debugIconName(root->child(1)->icon(0)), QString());

    m_dialog->updateVisiblity(nullptr);
    QCOMPARE(debugIconName(root->icon(0)), QString());
    QCOMPARE(debugIconName(root->child(0)->icon(0)), QStringLiteral("visible"));
    QCOMPARE(debugIconName(root->child(1)->icon(0)), QStringLiteral("visible"));
}

void tst_DisplayModel2DDialog::updateVisiblityAfterTheTreeWasEmptiedDoesNothing()
{
    m_host->addPlot(QPoint(10, 10), plotTree("Plot(a(a1),b)"));
    makeDialog();
    QCOMPARE(tree()->topLevelItemCount(), 1);
    // A model without a root empties the tree; the dialog keeps its old root
    // row pointer, which must not be followed.
    DisplayModel2D empty;
    m_dialog->setDisplayModel2D(&empty);
    QCOMPARE(tree()->topLevelItemCount(), 0);
    m_dialog->updateVisiblity(nullptr);
    QCOMPARE(tree()->topLevelItemCount(), 0);
    m_dialog->setDisplayModel2D(nullptr); // the model goes before the dialog
}

void tst_DisplayModel2DDialog::setDisplayModel2DShowsModel()
{
    makeDialog();
    DisplayModel2D model;
    model.setRootDisplayItem(plotTree("Direct(x)"));
    m_dialog->setDisplayModel2D(&model);
    QCOMPARE(treeShape(tree()), QStringLiteral("Direct(x)"));
    m_dialog->setDisplayModel2D(nullptr);
    QCOMPARE(tree()->topLevelItemCount(), 0);
}

// ---------------------------------------------------------------- double click

void tst_DisplayModel2DDialog::doubleClickColumnZeroTogglesCurrentRow()
{
    auto root = plotTree("Plot(Punch,Die)");
    BkHQWidget2D* plot = m_host->addPlot(QPoint(10, 10), root);
    DisplayModel2D* model = Plot2DHost::modelOf(plot);
    VirtualDrawArea* drawArea = m_host->presenter().getLeftProcessDesigner()->getVirtualDrawArea();
    makeDialog();
    tree()->expandAll();
    QTreeWidgetItem* die = tree()->topLevelItem(0)->child(1);
    const int updates = model->displayUpdateCount();
    const int redraws = drawArea->redrawCount();

    doubleClick(die, 0);
    QCOMPARE(tree()->currentItem(), die);
    QCOMPARE(root->getChildren()[1]->getVisibility(), DisplayItem2D::NotVisible);
    QCOMPARE(root->getChildren()[0]->getVisibility(), DisplayItem2D::Visible);
    QCOMPARE(debugIconName(die->icon(0)), QStringLiteral("not_visible"));
    QCOMPARE(model->displayUpdateCount(), updates + 1);
    QCOMPARE(int(model->lastDisplayUpdate()), 0);
    QCOMPARE(drawArea->redrawCount(), redraws + 1);

    doubleClick(die, 0);
    QCOMPARE(root->getChildren()[1]->getVisibility(), DisplayItem2D::Visible);
    QCOMPARE(debugIconName(die->icon(0)), QStringLiteral("visible"));
    QCOMPARE(model->displayUpdateCount(), updates + 2);
    QCOMPARE(drawArea->redrawCount(), redraws + 2);
}

void tst_DisplayModel2DDialog::doubleClickColumnOneDoesNothing()
{
    auto root = plotTree("Plot(Punch)");
    BkHQWidget2D* plot = m_host->addPlot(QPoint(10, 10), root);
    DisplayModel2D* model = Plot2DHost::modelOf(plot);
    VirtualDrawArea* drawArea = m_host->presenter().getLeftProcessDesigner()->getVirtualDrawArea();
    makeDialog();
    tree()->setColumnCount(2); // so that there is a column 1 to click on
    tree()->expandAll();
    QTreeWidgetItem* punch = tree()->topLevelItem(0)->child(0);
    const int updates = model->displayUpdateCount();
    const int redraws = drawArea->redrawCount();

    QSignalSpy doubleClicks(tree(), &QTreeWidget::itemDoubleClicked);
    doubleClick(punch, 1);
    QCOMPARE(doubleClicks.count(), 1);
    QCOMPARE(doubleClicks.at(0).at(1).toInt(), 1);
    QCOMPARE(tree()->currentItem(), punch);
    QCOMPARE(root->getChildren()[0]->getVisibility(), DisplayItem2D::Visible);
    QCOMPARE(debugIconName(punch->icon(0)), QStringLiteral("visible"));
    QCOMPARE(model->displayUpdateCount(), updates);
    QCOMPARE(drawArea->redrawCount(), redraws);
}

void tst_DisplayModel2DDialog::doubleClickActsOnCurrentRowNotTheReportedOne()
{
    auto root = plotTree("Plot(Punch,Die)");
    m_host->addPlot(QPoint(10, 10), root);
    makeDialog();
    QTreeWidgetItem* punch = tree()->topLevelItem(0)->child(0);
    QTreeWidgetItem* die = tree()->topLevelItem(0)->child(1);
    tree()->setCurrentItem(punch);
    // A double click reported for another row than the current one.
    emit tree()->itemDoubleClicked(die, 0);
    QCOMPARE(root->getChildren()[0]->getVisibility(), DisplayItem2D::NotVisible);
    QCOMPARE(root->getChildren()[1]->getVisibility(), DisplayItem2D::Visible);
}

void tst_DisplayModel2DDialog::escapeKeepsDialogOpen_data()
{
    QTest::addColumn<QString>("focusName");
    QTest::newRow("plot list") << QStringLiteral("m_plotListWdg");
    QTest::newRow("display item tree") << QStringLiteral("m_displayItemTreeWidget");
    QTest::newRow("Update List button") << QStringLiteral("m_updateListPB");
    QTest::newRow("property pane") << QStringLiteral("m_displayItemProperties");
}

void tst_DisplayModel2DDialog::escapeKeepsDialogOpen()
{
    QFETCH(QString, focusName);
    m_host->addPlot(QPoint(10, 10), plotTree("Plot(a,b)"));
    makeDialog();
    QVERIFY(Brennvik::Test::showActive(*m_dialog));
    QWidget* focus = Brennvik::Test::focusChild(*m_dialog, focusName);
    QVERIFY2(focus, qPrintable(focusName));

    QTest::keyClick(focus, Qt::Key_Escape);
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(treeShape(tree()), QStringLiteral("Plot(a,b)"));
    QVERIFY(m_dialog->close());
    QVERIFY(!m_dialog->isVisible());
}

void tst_DisplayModel2DDialog::rebuildShowsWaitCursor_data()
{
    QTest::addColumn<bool>("byListClick");
    QTest::newRow("a plot picked in the list") << true;
    QTest::newRow("a model handed over") << false;
}

void tst_DisplayModel2DDialog::rebuildShowsWaitCursor()
{
    QFETCH(bool, byListClick);
    const auto log = std::make_shared<Brennvik::Test::CursorLog>();
    auto root = std::make_shared<CursorNotingItem>("Noting", log);
    root->appendChild(std::make_shared<CursorNotingItem>("child", log));
    m_host->addPlot(QPoint(10, 10), plotTree("First(a)"));
    m_host->addPlot(QPoint(10, 200), root);
    makeDialog();
    DisplayModel2D model;
    model.setRootDisplayItem(root);

    log->clear();
    if (byListClick)
        clickListRow(1);
    else
        m_dialog->setDisplayModel2D(&model);
    QCOMPARE(treeShape(tree()), QStringLiteral("Noting(child)"));
    QVERIFY(!log->isEmpty());
    for (int shape : qAsConst(*log))
        QCOMPARE(shape, int(Qt::WaitCursor));
    QCOMPARE(Brennvik::Test::currentOverrideCursor(), Brennvik::Test::NoOverrideCursor);
    m_dialog->setDisplayModel2D(nullptr);
}

QTEST_MAIN(tst_DisplayModel2DDialog)
#include "tst_displaymodel2ddialog.moc"
