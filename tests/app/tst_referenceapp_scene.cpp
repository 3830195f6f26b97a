// Scene files in the main window: File > Open..., a file dropped on the
// window, and a file that cannot be imported.
#include <ReferenceMainWindow.h>
#include <SceneView3D.h>

#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SampleModel.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>

#include <QAction>
#include <QFileDialog>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace Brennvik;

namespace {

const QByteArray bracketObj = "o Bracket\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n"
                              "o Web\nv 0 0 1\nv 1 0 1\nv 0 1 1\nf 4 5 6\n";

QString rootName(const ReferenceMainWindow& window)
{
    QTreeWidgetItem* top = window.displayItemTree()->topLevelItem(0);
    return top ? top->text(0) : QString();
}

} // namespace

class tst_ReferenceAppScene : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void openingASceneShowsIt();
    void refusedSceneKeepsTheModel();
    void fileOpenListsTheFormats();
    void droppedFileIsOpened();
    void openDialogFollowsTheNewModel();
    void sceneViewDrawsTheMeshes();

private:
    QString writeScene(const QString& name, const QByteArray& content);

    QTemporaryDir m_dir;
    std::unique_ptr<ReferenceMainWindow> m_window;
};

void tst_ReferenceAppScene::init()
{
    QVERIFY(m_dir.isValid());
    m_window = std::make_unique<ReferenceMainWindow>(buildSampleViewModel());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void tst_ReferenceAppScene::cleanup()
{
    m_window.reset();
}

QString tst_ReferenceAppScene::writeScene(const QString& name, const QByteArray& content)
{
    const QString path = m_dir.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        return {};
    return path;
}

void tst_ReferenceAppScene::openingASceneShowsIt()
{
    const QString path = writeScene(QStringLiteral("bracket.obj"), bracketObj);
    const QString sampleRoot = rootName(*m_window);

    QCOMPARE(m_window->openSceneFile(path), QString());
    QVERIFY(rootName(*m_window) != sampleRoot);
    QVERIFY(m_window->windowTitle().endsWith(QStringLiteral("bracket.obj")));
    // Two nodes with a mesh each under the file's root node.
    QVERIFY(m_window->statusBar()->currentMessage().startsWith(QStringLiteral("5 ")));
    QVERIFY(m_window->sceneView()->viewModel());
}

void tst_ReferenceAppScene::refusedSceneKeepsTheModel()
{
    const QString path = writeScene(QStringLiteral("broken.gltf"), "{\"asset\": ");
    const QString sampleRoot = rootName(*m_window);
    const auto shown = m_window->sceneView()->viewModel();

    const QString error = m_window->openSceneFile(path);
    QVERIFY2(error.startsWith(path + QStringLiteral(": cannot import the scene: ")), qPrintable(error));
    QCOMPARE(rootName(*m_window), sampleRoot);
    QCOMPARE(m_window->sceneView()->viewModel(), shown);
    auto* box = m_window->findChild<QMessageBox*>(QStringLiteral("sceneErrorBox"));
    QVERIFY(box);
    QVERIFY(box->isVisible());
    QCOMPARE(box->text(), error);
    box->close();
}

void tst_ReferenceAppScene::fileOpenListsTheFormats()
{
    auto* fileMenu = m_window->menuBar()->findChild<QMenu*>(QStringLiteral("fileMenu"));
    QVERIFY(fileMenu);
    QAction* open = fileMenu->findChild<QAction*>(QStringLiteral("openSceneAction"));
    QVERIFY(open);
    open->trigger();
    auto* dialog = m_window->findChild<QFileDialog*>(QStringLiteral("openSceneDialog"));
    QVERIFY(dialog);
    QVERIFY(dialog->isVisible());
    const QString scenes = dialog->nameFilters().value(0);
    for (const char* pattern : {"*.gltf", "*.glb", "*.obj", "*.fbx", "*.ifc", "*.stl"})
        QVERIFY2(scenes.contains(QLatin1String(pattern)), qPrintable(scenes));

    const QString path = writeScene(QStringLiteral("bracket.obj"), bracketObj);
    dialog->selectFile(path);
    static_cast<QDialog*>(dialog)->accept(); // as the dialog's Open button does
    QVERIFY(m_window->windowTitle().endsWith(QStringLiteral("bracket.obj")));
}

void tst_ReferenceAppScene::droppedFileIsOpened()
{
    const QString path = writeScene(QStringLiteral("dropped.obj"), bracketObj);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    const QPoint at = m_window->rect().center();

    QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_window.get(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_window.get(), &drop);
    QVERIFY(drop.isAccepted());
    QTRY_VERIFY(m_window->windowTitle().endsWith(QStringLiteral("dropped.obj")));

    // Text is no file: not taken.
    QMimeData text;
    text.setText(QStringLiteral("bracket"));
    QDragEnterEvent textEnter(at, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    textEnter.ignore();
    QApplication::sendEvent(m_window.get(), &textEnter);
    QVERIFY(!textEnter.isAccepted());
}

void tst_ReferenceAppScene::openDialogFollowsTheNewModel()
{
    DisplayModelDialog* before = m_window->openDisplayModelDialog();
    QVERIFY(before->isVisible());
    QCOMPARE(m_window->openSceneFile(writeScene(QStringLiteral("bracket.obj"), bracketObj)), QString());
    // The dialog showed the old model: a new one shows the scene.
    const QList<QWidget*> open = m_window->openDialogs();
    auto* dialog = m_window->findChild<DisplayModelDialog*>();
    QVERIFY(dialog);
    QVERIFY(open.contains(dialog));
    auto* tree = dialog->findChild<DisplayItemTreeWidget*>();
    QVERIFY(tree);
    QTRY_VERIFY(tree->topLevelItemCount() > 0);
    QCOMPARE(tree->topLevelItem(0)->text(0), rootName(*m_window));
}

void tst_ReferenceAppScene::sceneViewDrawsTheMeshes()
{
    QCOMPARE(m_window->openSceneFile(writeScene(QStringLiteral("bracket.obj"), bracketObj)), QString());
    SceneView3D* view = m_window->sceneView();
    const auto viewModel = std::dynamic_pointer_cast<SceneViewModel>(view->viewModel());
    QVERIFY(viewModel);
    QCOMPARE(view->drawnItemCount(), 2);
    QCOMPARE(view->drawnTriangleCount(), 2);
    QCOMPARE(view->outlinedTriangleCount(), 0);
    const QImage frame = view->grab().toImage();
    QVERIFY(!frame.isNull());

    SceneDisplayModel& model = viewModel->displayModel();
    const std::shared_ptr<DisplayItem> bracket = model.rootDisplayItem()->findByDisplayName("Bracket");
    const std::shared_ptr<DisplayItem> web = model.rootDisplayItem()->findByDisplayName("Web");
    QVERIFY(bracket && web);
    // A hidden node hides its mesh.
    bracket->setVisible(false);
    bracket->notifyVisualPropertiesChanged();
    model.doVisibilityUpdate();
    QCOMPARE(view->drawnItemCount(), 1);
    QCOMPARE(view->drawnTriangleCount(), 1);
    // A selected mesh is outlined.
    web->childAt(0)->setSelected(true);
    web->childAt(0)->notifyVisualPropertiesChanged();
    model.doVisibilityUpdate();
    QCOMPARE(view->selectedItemCount(), 1);
    QCOMPARE(view->outlinedTriangleCount(), 1);
    // A deleted mesh is gone.
    web->removeChild(web->childAt(0), false);
    model.doVisibilityUpdate();
    QCOMPARE(view->drawnItemCount(), 0);
    QCOMPARE(view->drawnTriangleCount(), 0);
}

QTEST_MAIN(tst_ReferenceAppScene)
#include "tst_referenceapp_scene.moc"
