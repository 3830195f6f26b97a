#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/sceneimport/SceneImport.h>
#include <referencehost/sceneimport/SceneImportFlags.h>

#include <assimp/Importer.hpp>
#include <assimp/scene.h>

#include <QtTest>

#include <string>
#include <vector>

using namespace Brennvik;

// Imports the real files of one folder of Assimp's test models (the folder
// is in BRENNVIK_SCENE_CORPUS; CTest runs one folder per test): every file
// Assimp loads gives a model whose node items are the scene's nodes, names
// in order; every file Assimp refuses gives an error naming the file and
// Assimp's reason. The "invalid" folder is no exception: Assimp reads one
// of its files (an OBJ naming a material it lacks, which Assimp replaces).

namespace {

const char* corpusVariable = "BRENNVIK_SCENE_CORPUS";

/// Files left out, with the reason.
const QHash<QString, QString> leftOut{
    {QStringLiteral("invalid/OutOfMemory.off"),
     QStringLiteral("Assimp itself takes two minutes and 16 GB before it refuses this file")}};

/// The names the scene's nodes get as items, in pre-order; empty when Assimp refuses the file.
QStringList expectedNodeNames(const QString& path, bool& loaded)
{
    Assimp::Importer importer;
    const aiScene* scene = importer.ReadFile(QFile::encodeName(path).constData(), sceneImportFlags);
    loaded = scene && scene->mRootNode;
    QStringList names;
    if (!loaded)
        return names;
    std::vector<std::pair<const aiNode*, QString>> stack{{scene->mRootNode, QStringLiteral("/")}};
    while (!stack.empty()) {
        const auto [node, indexPath] = stack.back();
        stack.pop_back();
        const QString name = QString::fromUtf8(node->mName.C_Str(), static_cast<int>(node->mName.length));
        names << (name.isEmpty() ? indexPath : name);
        for (unsigned i = node->mNumChildren; i-- > 0;) {
            const QString prefix = indexPath == QLatin1String("/") ? indexPath : indexPath + QLatin1Char('/');
            stack.emplace_back(node->mChildren[i], prefix + QString::number(i));
        }
    }
    return names;
}

/// The names of the model's node items (plain display items), in pre-order.
QStringList nodeItemNames(const SceneViewModel& model)
{
    DisplayItemList items;
    model.displayModel().rootDisplayItem()->collectSubtree(items);
    QStringList names;
    for (const auto& item : items) {
        if (dynamic_cast<const DisplayItem&>(*item).typeName() == "DisplayItem")
            names << QString::fromStdString(item->getDisplayName());
    }
    return names;
}

struct Tally
{
    int imported = 0;
    int refused = 0;
    qint64 nodes = 0;
};

Tally tally;

} // namespace

class TestSceneImportCorpus : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void importsAsAssimpReads_data();
    void importsAsAssimpReads();
    void cleanupTestCase();

private:
    QString m_folder;
};

void TestSceneImportCorpus::initTestCase()
{
    m_folder = qEnvironmentVariable(corpusVariable);
    if (m_folder.isEmpty())
        QSKIP("Assimp's test models (Debian package assimp-testmodels) are not installed: "
              "scripts/install-deps.sh installs them; configure again to test with them");
    QVERIFY2(QFileInfo(m_folder).isDir(), qPrintable(m_folder));
}

void TestSceneImportCorpus::importsAsAssimpReads_data()
{
    QTest::addColumn<QString>("path");

    const Assimp::Importer importer;
    QDirIterator files(m_folder, QDir::Files, QDirIterator::Subdirectories);
    QStringList paths;
    while (files.hasNext())
        paths << files.next();
    paths.sort();
    int rows = 0;
    for (const QString& path : paths) {
        // Textures, material libraries and notes beside the models are not scenes.
        const QByteArray extension = QFileInfo(path).suffix().toUtf8();
        if (!importer.IsExtensionSupported(extension.constData()))
            continue;
        QTest::newRow(qPrintable(QDir(m_folder).relativeFilePath(path))) << path;
        ++rows;
    }
    if (rows == 0)
        QTest::newRow("no scene file") << QString();
}

void TestSceneImportCorpus::importsAsAssimpReads()
{
    QFETCH(QString, path);
    if (path.isEmpty())
        QSKIP("no file of this folder has an extension Assimp reads");
    const QString leftOutReason = leftOut.value(QFileInfo(path).dir().dirName() + "/" + QFileInfo(path).fileName());
    if (!leftOutReason.isEmpty())
        QSKIP(qPrintable(leftOutReason));

    bool assimpLoads = false;
    const QStringList expected = expectedNodeNames(path, assimpLoads);

    QString error;
    const std::shared_ptr<SceneViewModel> model = SceneImport::load(path, &error);
    if (!assimpLoads) {
        QVERIFY2(!model, "a file Assimp refuses was imported");
        QVERIFY2(error.startsWith(path + QStringLiteral(": ")), qPrintable(error));
        QVERIFY2(error.size() > path.size() + 2, qPrintable(error));
        ++tally.refused;
        return;
    }
    QVERIFY2(model, qPrintable(error));
    QCOMPARE(nodeItemNames(*model), expected);
    ++tally.imported;
    tally.nodes += expected.size();
}

void TestSceneImportCorpus::cleanupTestCase()
{
    qInfo("%s: %d files imported (%lld nodes), %d refused", qPrintable(m_folder), tally.imported, tally.nodes,
          tally.refused);
}

QTEST_GUILESS_MAIN(TestSceneImportCorpus)
#include "tst_sceneimport_corpus.moc"
