// Real scenes of Assimp's test models in the reference application, driven
// through all three dialogs as their user drives them: find an item by a
// value the file gave it, hide a subtree, compare the model with its clone.
#include "DebugMenuAction.h"
#include "ContextMenuDriver.h"
#include "ItemWidgetDriver.h"

#include <ReferenceMainWindow.h>
#include <SceneView3D.h>

#include <debugmenucontent/clonecomparison/DebugCloneDisplayModelDialog.h>
#include <debugmenucontent/displaymodel2d/DisplayModel2DDialog.h>
#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <referencehost/model/CloneDefect.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/sceneimport/SceneImport.h>

#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QtTest>

#include <memory>

using namespace Brennvik;

namespace {

/// The row of \a tree reading \a text, shown: its ancestors expanded, scrolled into view.
QTreeWidgetItem* shownRow(QTreeWidget* tree, const QString& text)
{
    QTreeWidgetItem* row = Test::rowNamed(tree, text);
    for (QTreeWidgetItem* up = row ? row->parent() : nullptr; up; up = up->parent())
        up->setExpanded(true);
    if (row)
        tree->scrollToItem(row);
    return row;
}

/// Whether a row of the property pane \a pane has the value \a value.
bool paneShows(QTreeWidget* pane, const QString& value)
{
    for (int i = 0; i < pane->topLevelItemCount(); ++i) {
        if (pane->topLevelItem(i)->text(1) == value)
            return true;
    }
    return false;
}

} // namespace

class tst_ReferenceAppRealScenes : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void allThreeDialogs_data();
    void allThreeDialogs();

private:
    QString m_corpus;
};

void tst_ReferenceAppRealScenes::initTestCase()
{
    m_corpus = QStringLiteral(BRENNVIK_ASSIMP_TESTMODELS);
    if (m_corpus.isEmpty())
        QSKIP("Assimp's test models (Debian package assimp-testmodels) are not installed: "
              "scripts/install-deps.sh installs them; configure again to test with them");
}

void tst_ReferenceAppRealScenes::allThreeDialogs_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("searchValue");
    QTest::addColumn<QString>("pane");
    QTest::addColumn<QString>("subtree");

    // A material of the engine; the house's soil; the aspect ratio of the
    // spider's camera. Every item has its address as a property, so a value
    // of hexadecimal digits alone (the camera's width, 1920) can be found in
    // some other item's address first.
    QTest::newRow("glTF engine") << "glTF2/2CylinderEngine-glTF-Binary/2CylinderEngine.glb"
                                 << "Material_18"
                                 << "m_businessObjectProperties"
                                 << "nodes[0]";
    QTest::newRow("IFC house") << "IFC/AC14-FZK-Haus.ifc"
                               << "Erde"
                               << "m_businessObjectProperties"
                               << "IfcBuilding_AC14-FZK-Haus_3IWQtyIG4FKbGBJC6fCb_2";
    QTest::newRow("FBX spider") << "FBX/spider.fbx"
                                << "1.777778"
                                << "m_displayItemProperties"
                                << "Bein3Li";
}

void tst_ReferenceAppRealScenes::allThreeDialogs()
{
    QFETCH(QString, file);
    QFETCH(QString, searchValue);
    QFETCH(QString, pane);
    QFETCH(QString, subtree);

    QString error;
    const std::shared_ptr<SceneViewModel> viewModel = SceneImport::load(m_corpus + "/" + file, &error);
    QVERIFY2(viewModel, qPrintable(error));
    ReferenceMainWindow window(viewModel);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    SceneView3D* view = window.sceneView();
    const int drawn = view->drawnItemCount();
    const int triangles = view->drawnTriangleCount();
    QVERIFY(drawn > 0 && triangles > 0);

    // Find by a value from the file.
    debugMenuAction(window, "openDisplayModelDialogAction")->trigger();
    auto* dialog = window.findChild<DisplayModelDialog*>();
    QVERIFY(dialog);
    auto* tree = dialog->findChild<DisplayItemTreeWidget*>(QStringLiteral("m_displayItemTreeWidget"));
    auto* search = dialog->findChild<QLineEdit*>(QStringLiteral("m_searchValueLE"));
    auto* findNext = dialog->findChild<QPushButton*>(QStringLiteral("m_findDisplayItemPB"));
    auto* valuePane = dialog->findChild<QTreeWidget*>(pane);
    QVERIFY(tree && search && findNext && valuePane);
    QTest::keyClicks(search, searchValue);
    QTest::mouseClick(findNext, Qt::LeftButton);
    QVERIFY(tree->currentItem());
    QVERIFY2(paneShows(valuePane, searchValue), qPrintable(tree->currentItem()->text(0)));

    // Hide a subtree, and show it again.
    QTreeWidgetItem* row = shownRow(tree, subtree);
    QVERIFY(row);
    QVERIFY(
        Test::rightClick(tree, tree->visualItemRect(row).center(), QStringLiteral("Make subtree invisible")).triggered);
    QVERIFY(view->drawnItemCount() < drawn);
    QVERIFY(view->drawnTriangleCount() < triangles);
    row = shownRow(tree, subtree);
    QVERIFY(
        Test::rightClick(tree, tree->visualItemRect(row).center(), QStringLiteral("Make subtree visible")).triggered);
    QCOMPARE(view->drawnItemCount(), drawn);
    QCOMPARE(view->drawnTriangleCount(), triangles);

    // The clone is faithful, and an unfaithful one is caught.
    debugMenuAction(window, "openCloneComparisonDialogAction")->trigger();
    auto* report = window.findChild<DebugCloneDisplayModelDialog*>()->findChild<QPlainTextEdit*>(
        QStringLiteral("m_outputTextField"));
    QVERIFY(report);
    QCOMPARE(report->toPlainText().trimmed(), QStringLiteral("Trees are equal"));
    viewModel->setCloneDefects({CloneDefect{CloneDefect::Kind::FlipVisibility, subtree.toStdString(), {}, {}}});
    debugMenuAction(window, "openCloneComparisonDialogAction")->trigger();
    QTRY_COMPARE(window.findChildren<DebugCloneDisplayModelDialog*>().size(), 1);
    report = window.findChild<DebugCloneDisplayModelDialog*>()->findChild<QPlainTextEdit*>(
        QStringLiteral("m_outputTextField"));
    QVERIFY2(report->toPlainText().contains(QStringLiteral("Visibility differs")), qPrintable(report->toPlainText()));
    QVERIFY(report->toPlainText().contains(subtree));

    // The 2D dialog lists the plots beside the scene.
    debugMenuAction(window, "openDisplayModel2DDialogAction")->trigger();
    QVERIFY(window.findChild<DisplayModel2DDialog*>()->isVisible());
}

QTEST_MAIN(tst_ReferenceAppRealScenes)
#include "tst_referenceapp_realscenes.moc"
