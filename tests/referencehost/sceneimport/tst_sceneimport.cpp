#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneObjectItem.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/modelfile/ModelFile.h>
#include <referencehost/sceneimport/SceneImport.h>
#include <referencehost/sceneimport/SceneModelBuilder.h>

#include <SmallStack.h>

#include <assimp/material.h>
#include <assimp/scene.h>

#include <QtTest>

#include <sys/stat.h>

#include <string>
#include <vector>

using namespace Brennvik;

namespace {

// Hand-made scenes: Assimp's own structures, filled as an importer would.

aiNode* addNode(aiNode* parent, const char* name)
{
    auto* node = new aiNode(name);
    if (parent)
        parent->addChildren(1, &node);
    return node;
}

void showMeshes(aiNode* node, std::vector<unsigned> meshes)
{
    node->mNumMeshes = static_cast<unsigned>(meshes.size());
    node->mMeshes = new unsigned[meshes.size()];
    std::copy(meshes.begin(), meshes.end(), node->mMeshes);
}

/// A mesh of one triangle in the plane z = \a z.
aiMesh* triangleMesh(const char* name, float z)
{
    auto* mesh = new aiMesh;
    mesh->mName = aiString(name);
    mesh->mPrimitiveTypes = aiPrimitiveType_TRIANGLE;
    mesh->mNumVertices = 3;
    mesh->mVertices = new aiVector3D[3]{{0, 0, z}, {2, 0, z}, {0, 1, z}};
    mesh->mNumFaces = 1;
    mesh->mFaces = new aiFace[1];
    mesh->mFaces[0].mNumIndices = 3;
    mesh->mFaces[0].mIndices = new unsigned[3]{0, 1, 2};
    return mesh;
}

void setMeshes(aiScene& scene, std::vector<aiMesh*> meshes)
{
    scene.mNumMeshes = static_cast<unsigned>(meshes.size());
    scene.mMeshes = new aiMesh*[meshes.size()];
    std::copy(meshes.begin(), meshes.end(), scene.mMeshes);
}

std::shared_ptr<DisplayItem> build(const aiScene& scene)
{
    return SceneModelBuilder(scene).build();
}

/// Every item's display name and type in pre-order, as "type name".
QStringList typedNames(const DisplayItem& root)
{
    DisplayItemList items;
    root.collectSubtree(items);
    QStringList names;
    for (const auto& item : items) {
        const auto* displayItem = dynamic_cast<const DisplayItem*>(item.get());
        names << QString::fromStdString(displayItem->typeName() + " " + displayItem->getDisplayName());
    }
    return names;
}

QString business(const DisplayItem& item, const char* name)
{
    return QString::fromStdString(item.businessProperty(name).value_or("(none)"));
}

QString display(const DisplayItem& item, const char* name)
{
    return QString::fromStdString(item.displayProperty(name).value_or("(none)"));
}

/// The items' names, types and properties without addresses, in pre-order.
QStringList describe(const DisplayItem& root)
{
    DisplayItemList items;
    root.collectSubtree(items);
    QStringList lines;
    for (const auto& item : items) {
        PropertyList businessList;
        PropertyList displayList;
        item->getProperties(businessList, displayList);
        QString line = QString::fromStdString(item->getDisplayName());
        for (const PropertyList* list : {&businessList, &displayList}) {
            for (const auto& [name, value] : *list) {
                if (name.rfind("pointer", 0) != 0 && name != "display item type")
                    line += QString::fromStdString(" | " + name + "=" + value);
            }
        }
        lines << line;
    }
    return lines;
}

const QByteArray quadObj = "o Plate\n"
                           "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n"
                           "f 1 2 3 4\n"
                           "o Rib\n"
                           "v 0 0 1\nv 1 0 1\nv 1 1 1\n"
                           "f 5 6 7\n";

} // namespace

class TestSceneImport : public QObject
{
    Q_OBJECT

private slots:
    void nodesInOrderUnderTheRoot();
    void unnamedNodesAreNamedByTheirIndexPath();
    void repeatedNamesStay();
    void meshesComeFirstAndShareTheirTriangles();
    void unnamedMeshesAreNumbered();
    void metadataBecomesBusinessProperties();
    void camerasAndLightsHangUnderTheirNodes();
    void brokenPartsAreSkippedWithAReason();
    void deepSkeletonNeedsNoDeepStack();
    void objFromMemory();
    void refusedData_data();
    void refusedData();
    void refusedFiles_data();
    void refusedFiles();
    void loadReportsProgressToTheEnd();
    void cloneKeepsKindsAndTriangles();
    void savedSnapshotLoadsBack();
    void fileExtensionsListTheCommonFormats();
};

void TestSceneImport::nodesInOrderUnderTheRoot()
{
    aiScene scene;
    scene.mRootNode = addNode(nullptr, "Assembly");
    aiNode* frame = addNode(scene.mRootNode, "Frame");
    addNode(frame, "Beam");
    addNode(scene.mRootNode, "Cover");

    const std::shared_ptr<DisplayItem> root = build(scene);
    QCOMPARE(typedNames(*root),
             QStringList({"DisplayItem Assembly", "DisplayItem Frame", "DisplayItem Beam", "DisplayItem Cover"}));
    QCOMPARE(display(*root->childAt(0), "transformation"), QStringLiteral("1 0 0 0; 0 1 0 0; 0 0 1 0; 0 0 0 1"));
}

void TestSceneImport::unnamedNodesAreNamedByTheirIndexPath()
{
    aiScene scene;
    scene.mRootNode = addNode(nullptr, "");
    addNode(scene.mRootNode, "Named");
    aiNode* second = addNode(scene.mRootNode, "");
    addNode(second, "");

    QCOMPARE(typedNames(*build(scene)),
             QStringList({"DisplayItem /", "DisplayItem Named", "DisplayItem /1", "DisplayItem /1/0"}));
}

void TestSceneImport::repeatedNamesStay()
{
    aiScene scene;
    scene.mRootNode = addNode(nullptr, "Flange");
    addNode(scene.mRootNode, "Bolt");
    addNode(scene.mRootNode, "Bolt");
    addNode(scene.mRootNode, "Nut");

    QCOMPARE(typedNames(*build(scene)),
             QStringList({"DisplayItem Flange", "DisplayItem Bolt", "DisplayItem Bolt", "DisplayItem Nut"}));
}

void TestSceneImport::meshesComeFirstAndShareTheirTriangles()
{
    aiScene scene;
    setMeshes(scene, {triangleMesh("Plate", 0)});
    scene.mNumMaterials = 1;
    scene.mMaterials = new aiMaterial* [1] { new aiMaterial };
    const aiString steel("Steel");
    scene.mMaterials[0]->AddProperty(&steel, AI_MATKEY_NAME);
    scene.mRootNode = addNode(nullptr, "Stack");
    aiNode* lower = addNode(scene.mRootNode, "Lower");
    aiNode* upper = addNode(scene.mRootNode, "Upper");
    addNode(upper, "Marker");
    showMeshes(lower, {0});
    showMeshes(upper, {0});
    upper->mTransformation = aiMatrix4x4(1, 0, 0, 5, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);

    const std::shared_ptr<DisplayItem> root = build(scene);
    QCOMPARE(typedNames(*root),
             QStringList({"DisplayItem Stack", "DisplayItem Lower", "MeshItem Plate", "DisplayItem Upper",
                          "MeshItem Plate", "DisplayItem Marker"}));
    const auto lowerMesh = std::dynamic_pointer_cast<SceneObjectItem>(root->childAt(0)->childAt(0));
    const auto upperMesh = std::dynamic_pointer_cast<SceneObjectItem>(root->childAt(1)->childAt(0));
    QVERIFY(lowerMesh && upperMesh);
    QCOMPARE(lowerMesh->kind(), SceneObjectItem::Kind::Mesh);
    QVERIFY(lowerMesh->triangles());
    QCOMPARE(lowerMesh->triangles().get(), upperMesh->triangles().get());
    QCOMPARE(lowerMesh->triangles()->indices, std::vector<std::uint32_t>({0, 1, 2}));
    QCOMPARE(lowerMesh->triangles()->positions, std::vector<float>({0, 0, 0, 2, 0, 0, 0, 1, 0}));
    QCOMPARE(lowerMesh->sceneTransformation()[3], 0.0f);
    QCOMPARE(upperMesh->sceneTransformation()[3], 5.0f);

    QCOMPARE(business(*upperMesh, "material"), QStringLiteral("Steel"));
    QCOMPARE(display(*upperMesh, "mesh"), QStringLiteral("0"));
    QCOMPARE(display(*upperMesh, "vertices"), QStringLiteral("3"));
    QCOMPARE(display(*upperMesh, "faces"), QStringLiteral("1"));
    QCOMPARE(display(*upperMesh, "bones"), QStringLiteral("0"));
    QCOMPARE(display(*upperMesh, "primitive types"), QStringLiteral("triangles"));
    QCOMPARE(display(*upperMesh, "bounding box"), QStringLiteral("(0, 0, 0) to (2, 1, 0)"));
}

void TestSceneImport::unnamedMeshesAreNumbered()
{
    aiScene scene;
    setMeshes(scene, {triangleMesh("Named", 0), triangleMesh("", 1)});
    scene.mRootNode = addNode(nullptr, "Part");
    showMeshes(scene.mRootNode, {1, 0});

    QCOMPARE(typedNames(*build(scene)), QStringList({"DisplayItem Part", "MeshItem mesh 1", "MeshItem Named"}));
}

void TestSceneImport::metadataBecomesBusinessProperties()
{
    aiScene scene;
    scene.mRootNode = addNode(nullptr, "Wall");
    aiMetadata* metadata = aiMetadata::Alloc(6);
    metadata->Set(0, "IfcWall.Name", aiString("Basic Wall:Interior"));
    metadata->Set(1, "LoadBearing", true);
    metadata->Set(2, "Storey", int32_t(-1));
    metadata->Set(3, "Width", 0.125);
    metadata->Set(4, "Offset", aiVector3D(1, 2, 3));
    metadata->Set(5, "Count", uint64_t(12345678901234ULL));
    scene.mRootNode->mMetaData = metadata;

    const std::shared_ptr<DisplayItem> root = build(scene);
    const PropertyList expected{{"IfcWall.Name", "Basic Wall:Interior"},
                                {"LoadBearing", "true"},
                                {"Storey", "-1"},
                                {"Width", "0.125"},
                                {"Offset", "(1, 2, 3)"},
                                {"Count", "12345678901234"}};
    QCOMPARE(root->businessProperties(), expected);
}

void TestSceneImport::camerasAndLightsHangUnderTheirNodes()
{
    aiScene scene;
    scene.mRootNode = addNode(nullptr, "Room");
    aiNode* rig = addNode(scene.mRootNode, "Rig");
    addNode(rig, "Mount");
    scene.mNumCameras = 1;
    scene.mCameras = new aiCamera* [1] { new aiCamera };
    scene.mCameras[0]->mName = aiString("Rig");
    scene.mCameras[0]->mHorizontalFOV = 0.5f;
    scene.mNumLights = 1;
    scene.mLights = new aiLight* [1] { new aiLight };
    scene.mLights[0]->mName = aiString("Lamp");
    scene.mLights[0]->mType = aiLightSource_SPOT;

    const std::shared_ptr<DisplayItem> root = build(scene);
    QCOMPARE(
        typedNames(*root),
        QStringList({"DisplayItem Room", "DisplayItem Rig", "DisplayItem Mount", "CameraItem Rig", "LightItem Lamp"}));
    const std::shared_ptr<DisplayItem> camera = root->childAt(0)->childAt(1);
    QCOMPARE(display(*camera, "horizontal field of view (rad)"), QStringLiteral("0.5"));
    QCOMPARE(display(*camera, "node"), QStringLiteral("(none)"));
    const std::shared_ptr<DisplayItem> light = root->childAt(1);
    QCOMPARE(display(*light, "light type"), QStringLiteral("spot"));
    QCOMPARE(display(*light, "node"), QStringLiteral("no node is named \"Lamp\""));
}

void TestSceneImport::brokenPartsAreSkippedWithAReason()
{
    aiScene scene;
    setMeshes(scene, {triangleMesh("Only", 0)});
    scene.mRootNode = addNode(nullptr, "Root");
    aiNode* first = addNode(scene.mRootNode, "First");
    showMeshes(first, {0, 7});
    // The same node a second time: a cycle would look the same to a walk.
    aiNode* again = scene.mRootNode;
    first->addChildren(1, &again);

    const std::shared_ptr<DisplayItem> root = build(scene);
    first->mNumChildren = 0; // the scene must not free its root twice
    QCOMPARE(typedNames(*root), QStringList({"DisplayItem Root", "DisplayItem First", "MeshItem Only"}));
    QCOMPARE(display(*root->childAt(0), "skipped"),
             QStringLiteral("mesh 7 is not in the scene; child 0 is a node met before"));
}

void TestSceneImport::deepSkeletonNeedsNoDeepStack()
{
    const int levels = 20'000;
    aiScene scene;
    scene.mRootNode = addNode(nullptr, "Bone 0");
    std::vector<aiNode*> chain{scene.mRootNode};
    for (int level = 1; level < levels; ++level)
        chain.push_back(addNode(chain.back(), ("Bone " + std::to_string(level)).c_str()));

    std::shared_ptr<DisplayItem> root;
    Test::runOnSmallStack([&] { root = build(scene); });

    int depth = 1;
    std::shared_ptr<DisplayItem> item = root;
    while (item->childCount() == 1) {
        item = item->childAt(0);
        ++depth;
    }
    QCOMPARE(depth, levels);
    QCOMPARE(QString::fromStdString(item->getDisplayName()), QStringLiteral("Bone 19999"));
    Test::runOnSmallStack([&] {
        item.reset();
        root.reset();
    });
    // Assimp frees its nodes recursively: take the chain apart first.
    for (aiNode* node : chain) {
        delete[] node->mChildren;
        node->mChildren = nullptr;
        node->mNumChildren = 0;
    }
    for (std::size_t i = 1; i < chain.size(); ++i)
        delete chain[i];
}

void TestSceneImport::objFromMemory()
{
    QString error;
    const std::shared_ptr<SceneViewModel> model = SceneImport::loadFromData(quadObj, "obj", "plate.obj", &error);
    QVERIFY2(model, qPrintable(error));
    const std::shared_ptr<DisplayItem> root = model->displayModel().rootDisplayItem();
    const QStringList names = typedNames(*root);
    QVERIFY(names.contains("DisplayItem Plate"));
    QVERIFY(names.contains("DisplayItem Rib"));
    const auto plateMesh = std::dynamic_pointer_cast<SceneObjectItem>(root->findByDisplayName("Plate")->childAt(0));
    QVERIFY(plateMesh);
    QVERIFY(plateMesh->triangles());
    // The quad became two triangles.
    QCOMPARE(plateMesh->triangles()->indices.size(), std::size_t(6));
    QCOMPARE(display(*plateMesh, "faces"), QStringLiteral("2"));
}

void TestSceneImport::refusedData_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QByteArray>("extension");
    QTest::addColumn<QString>("message");

    QTest::newRow("empty") << QByteArray() << QByteArray("obj")
                           << QStringLiteral("part.x: cannot import the scene: the file is empty");
    QTest::newRow("glTF cut short") << QByteArray("{\"asset\": {\"version\": ") << QByteArray("gltf")
                                    << QStringLiteral("part.x: cannot import the scene: ");
    QTest::newRow("unknown format") << QByteArray("just some words\n") << QByteArray("nosuchformat")
                                    << QStringLiteral("part.x: cannot import the scene: ");
    QTest::newRow("face past the vertices") << QByteArray("v 0 0 0\nv 1 0 0\nf 1 2 9\n") << QByteArray("obj")
                                            << QStringLiteral("part.x: cannot import the scene: ");
}

void TestSceneImport::refusedData()
{
    QFETCH(QByteArray, data);
    QFETCH(QByteArray, extension);
    QFETCH(QString, message);

    QString error;
    QVERIFY(!SceneImport::loadFromData(data, extension, "part.x", &error));
    QVERIFY2(error.startsWith(message), qPrintable(error));
    // Assimp's reason follows.
    QVERIFY2(error.size() > QStringLiteral("part.x: cannot import the scene: ").size(), qPrintable(error));
}

void TestSceneImport::refusedFiles_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("reason");

    QTest::newRow("missing") << "missing.obj"
                             << "cannot open the file: no such file";
    QTest::newRow("directory") << "folder.obj"
                               << "cannot read the file: it is a directory";
    QTest::newRow("fifo") << "pipe.obj"
                          << "cannot read the file: it is not a regular file";
    QTest::newRow("not a scene") << "words.obj"
                                 << "cannot import the scene: ";
}

void TestSceneImport::refusedFiles()
{
    QFETCH(QString, file);
    QFETCH(QString, reason);

    QTemporaryDir directory;
    QVERIFY(directory.isValid());
    QVERIFY(QDir(directory.path()).mkdir("folder.obj"));
    QVERIFY(::mkfifo(QFile::encodeName(directory.filePath("pipe.obj")).constData(), 0600) == 0);
    QFile words(directory.filePath("words.obj"));
    QVERIFY(words.open(QIODevice::WriteOnly));
    words.write("v 0 0 0\nf 1 7 8\n");
    words.close();

    const QString path = directory.filePath(file);
    QString error;
    QVERIFY(!SceneImport::load(path, &error));
    QVERIFY2(error.startsWith(path + ": " + reason), qPrintable(error));
}

void TestSceneImport::loadReportsProgressToTheEnd()
{
    QTemporaryDir directory;
    QFile file(directory.filePath("plate.obj"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(quadObj);
    file.close();

    std::vector<std::size_t> reports;
    QString error;
    const auto model = SceneImport::load(file.fileName(), &error, [&reports](std::size_t done, std::size_t total) {
        QCOMPARE(total, std::size_t(100));
        reports.push_back(done);
    });
    QVERIFY2(model, qPrintable(error));
    QVERIFY(!reports.empty());
    QVERIFY(std::is_sorted(reports.begin(), reports.end()));
    QCOMPARE(reports.back(), std::size_t(100));
}

void TestSceneImport::cloneKeepsKindsAndTriangles()
{
    QString error;
    const auto model = SceneImport::loadFromData(quadObj, "obj", "plate.obj", &error);
    QVERIFY2(model, qPrintable(error));
    const auto clone = model->cloneSceneViewModel(false);
    const std::shared_ptr<DisplayItem> root = model->displayModel().rootDisplayItem();
    const std::shared_ptr<DisplayItem> clonedRoot = clone->displayModel().rootDisplayItem();
    QCOMPARE(typedNames(*clonedRoot), typedNames(*root));
    QCOMPARE(describe(*clonedRoot), describe(*root));
    const auto mesh = std::dynamic_pointer_cast<SceneObjectItem>(root->findByDisplayName("Rib")->childAt(0));
    const auto clonedMesh
        = std::dynamic_pointer_cast<SceneObjectItem>(clonedRoot->findByDisplayName("Rib")->childAt(0));
    QVERIFY(mesh && clonedMesh && mesh != clonedMesh);
    QCOMPARE(clonedMesh->triangles().get(), mesh->triangles().get());
}

void TestSceneImport::savedSnapshotLoadsBack()
{
    aiScene scene;
    setMeshes(scene, {triangleMesh("Plate", 0)});
    scene.mRootNode = addNode(nullptr, "");
    aiNode* part = addNode(scene.mRootNode, "Part");
    showMeshes(part, {0});
    part->mMetaData = aiMetadata::Alloc(1);
    part->mMetaData->Set(0, "Tag", aiString("A-17"));
    scene.mNumCameras = 1;
    scene.mCameras = new aiCamera* [1] { new aiCamera };
    scene.mCameras[0]->mName = aiString("Part");
    auto viewModel = std::make_shared<SceneViewModel>();
    viewModel->displayModel().setRootDisplayItem(build(scene));

    QString error;
    const QByteArray json = ModelFile::toJson(*viewModel, &error);
    QVERIFY2(!json.isEmpty(), qPrintable(error));
    ModelFileError loadError;
    const auto loaded = ModelFile::loadFromData(json, "scene.json", &loadError);
    QVERIFY2(loaded, qPrintable(loadError.toString()));
    // The same tree and properties; the scene's objects come back as plain items.
    const std::shared_ptr<DisplayItem> root = viewModel->displayModel().rootDisplayItem();
    const std::shared_ptr<DisplayItem> loadedRoot = loaded->displayModel().rootDisplayItem();
    QCOMPARE(describe(*loadedRoot), describe(*root));
    QCOMPARE(typedNames(*loadedRoot),
             QStringList({"DisplayItem /", "DisplayItem Part", "DisplayItem Plate", "DisplayItem Part"}));
    QCOMPARE(ModelFile::toJson(*loaded), json);
}

void TestSceneImport::fileExtensionsListTheCommonFormats()
{
    const QStringList extensions = SceneImport::fileExtensions();
    for (const char* extension : {"gltf", "glb", "obj", "fbx", "dae", "stl", "ply", "3ds", "ifc"})
        QVERIFY2(extensions.contains(QLatin1String(extension)), extension);
    QVERIFY(std::is_sorted(extensions.begin(), extensions.end()));
}

QTEST_GUILESS_MAIN(TestSceneImport)
#include "tst_sceneimport.moc"
