// The reference application's command line, run as its user runs it: exit
// statuses, messages, and what is left on disk when a write fails.
#include <GeneratedModelBudget.h>
#include <RawFileNames.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QScopeGuard>
#include <QtTest>

#include <vector>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

using namespace Brennvik;

namespace {

struct Run
{
    bool finished = false;
    int exitCode = -1;
    QString output;
    QString errors;
};

// Runs \a program with \a arguments; one that does not end within the time
// allowed is killed and reported as unfinished.
Run run(const QString& program, const QStringList& arguments, int milliseconds = 60000,
        const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    Run result;
    result.finished = process.waitForFinished(milliseconds) && process.exitStatus() == QProcess::NormalExit;
    if (!result.finished) {
        process.kill();
        process.waitForFinished();
    }
    result.exitCode = process.exitCode();
    result.output = QString::fromLocal8Bit(process.readAllStandardOutput());
    result.errors = QString::fromLocal8Bit(process.readAllStandardError());
    return result;
}

Run runApp(const QStringList& arguments, int milliseconds = 60000,
           const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment())
{
    return run(QStringLiteral(BRENNVIK_REFERENCEAPP), arguments, milliseconds, environment);
}

// The environment of a shell on a machine without any display.
QProcessEnvironment withoutDisplay()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(QString::fromLatin1(name));
    return environment;
}

// The application's own lines on stderr (Qt may add notes of its own).
QStringList ownMessages(const Run& result)
{
    return result.errors.split(QLatin1Char('\n')).filter(QStringLiteral("brennvik-referenceapp:"));
}

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

#ifdef Q_OS_UNIX
// Runs the application with \a arguments passed as they are: QProcess
// would carry them as text and lose bytes that are not. The exit status, or
// -1 when it did not end normally.
int runAppWithRawArguments(const QList<QByteArray>& arguments)
{
    const QByteArray program = QByteArrayLiteral(BRENNVIK_REFERENCEAPP);
    std::vector<char*> argv;
    argv.push_back(const_cast<char*>(program.constData()));
    for (const QByteArray& argument : arguments)
        argv.push_back(const_cast<char*>(argument.constData()));
    argv.push_back(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        ::execv(program.constData(), argv.data());
        ::_exit(127);
    }
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return -1;
    return WEXITSTATUS(status);
}
#endif

} // namespace

class tst_ReferenceAppCommandLine : public QObject
{
    Q_OBJECT
private slots:
    void usageErrorExitsWithStatusTwo_data();
    void usageErrorExitsWithStatusTwo();
    void helpAndVersionExitWithStatusZero_data();
    void helpAndVersionExitWithStatusZero();
    void helpAndVersionNeedNoDisplay_data();
    void helpAndVersionNeedNoDisplay();

    void generatedModelRefusal_data();
    void generatedModelRefusal();
    void generatedModelEstimateCountsOpenDialogs_data();
    void generatedModelEstimateCountsOpenDialogs();
    void generatedModelBeyondMemoryIsRefusedBeforeBuilding();

    void screenshotReplacesAnExistingFile();
    void failedScreenshotLeavesTheExistingFile();
    void screenshotDoesNotReplaceASpecialFile();
    void fileNamesThatAreNotText_data();
    void fileNamesThatAreNotText();
    void sceneIsShownAndSaved();
    void refusedSceneExitsWithStatusOne_data();
    void refusedSceneExitsWithStatusOne();
};

void tst_ReferenceAppCommandLine::usageErrorExitsWithStatusTwo_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");

    QTest::newRow("unknown option") << QStringList{"--no-such-option"} << "no-such-option";
    QTest::newRow("option without its value") << QStringList{"--generate"} << "--generate";
    QTest::newRow("stray argument") << QStringList{"stray"} << "'stray'";
    QTest::newRow("clone defect of no kind") << QStringList{"--clone-defect", "bogus"} << "--clone-defect";
    QTest::newRow("clone defect naming no item")
        << QStringList{"--clone-defect", "flip-visibility:NoSuchItem"} << "no item is named 'NoSuchItem'";
    QTest::newRow("clone defect naming no item of a generated model")
        << QStringList{"--generate", "50", "--clone-defect", "drop-child:Punch"} << "no item is named 'Punch'";
    QTest::newRow("clone defect that cannot drop the root")
        << QStringList{"--clone-defect", "drop-child:Forming simulation"}
        << "drop-child cannot apply to the item named 'Forming simulation'";
    QTest::newRow("clone defect of a geometry list on an item that is no module")
        << QStringList{"--clone-defect", "drop-geometry-entry:Blank"}
        << "drop-geometry-entry cannot apply to the item named 'Blank'";
    QTest::newRow("clone defect that cannot share the root, beside one that applies")
        << QStringList{"--generate",     "50",
                       "--clone-defect", "flip-visibility:Synthetic model",
                       "--clone-defect", "share-child:Synthetic model"}
        << "share-child cannot apply to the item named 'Synthetic model'";
    QTest::newRow("no items to generate") << QStringList{"--generate", "0"} << "--generate";
    QTest::newRow("unknown dialog") << QStringList{"--open", "nothing"} << "unknown dialog 'nothing'";
    QTest::newRow("unknown language") << QStringList{"--lang", "xx"} << "unknown language 'xx'";
    QTest::newRow("model and generated model")
        << QStringList{"--model", "a.json", "--generate", "5"} << "exclude each other";
    QTest::newRow("scene and model") << QStringList{"--scene", "a.obj", "--model", "a.json"}
                                     << "--scene excludes --model and --generate";
    QTest::newRow("scene and generated model")
        << QStringList{"--scene", "a.obj", "--generate", "5"} << "--scene excludes --model and --generate";
}

void tst_ReferenceAppCommandLine::usageErrorExitsWithStatusTwo()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    // A command line that is taken renders a screenshot and ends. Put first,
    // so that an option at the end of a row goes without its value.
    const QString shot = dir.filePath(QStringLiteral("shot.png"));
    const Run result = runApp(QStringList{QStringLiteral("--screenshot"), shot} + arguments);

    QVERIFY2(result.finished, qPrintable(result.errors));
    QCOMPARE(result.exitCode, 2);
    const QStringList ours = ownMessages(result);
    QCOMPARE(ours.size(), 1);
    QVERIFY2(ours.first().contains(message), qPrintable(ours.first()));
    QVERIFY(!QFile::exists(shot));
}

void tst_ReferenceAppCommandLine::helpAndVersionExitWithStatusZero_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("output");
    QTest::newRow("help") << "--help"
                          << "--clone-defect";
    QTest::newRow("version") << "--version"
                             << "brennvik-referenceapp 0.1";
}

void tst_ReferenceAppCommandLine::helpAndVersionExitWithStatusZero()
{
    QFETCH(QString, option);
    QFETCH(QString, output);
    const Run result = runApp({option});
    QVERIFY(result.finished);
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.output.contains(output), qPrintable(result.output));
}

void tst_ReferenceAppCommandLine::helpAndVersionNeedNoDisplay_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("output");
    QTest::newRow("--help") << QStringList{"--help"} << "--clone-defect";
    QTest::newRow("-h") << QStringList{"-h"} << "--clone-defect";
    QTest::newRow("--help-all") << QStringList{"--help-all"} << "--clone-defect";
    QTest::newRow("--version") << QStringList{"--version"} << "brennvik-referenceapp 0.1";
    QTest::newRow("-v") << QStringList{"-v"} << "brennvik-referenceapp 0.1";
    QTest::newRow("--help after other options") << QStringList{"--generate", "5", "--help"} << "--clone-defect";
}

void tst_ReferenceAppCommandLine::helpAndVersionNeedNoDisplay()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, output);
    const Run result = runApp(arguments, 60000, withoutDisplay());
    QVERIFY2(result.finished, qPrintable(result.errors));
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.output.contains(output), qPrintable(result.output));
    QVERIFY2(result.errors.isEmpty(), qPrintable(result.errors));
}

void tst_ReferenceAppCommandLine::generatedModelRefusal_data()
{
    QTest::addColumn<quint64>("items");
    QTest::addColumn<qint64>("available"); // -1: not known
    QTest::addColumn<QString>("refusal");  // empty: taken

    const quint64 million = estimatedMemoryForGeneratedModel(1000000);
    QTest::newRow("fits") << quint64(1000000) << qint64(million) << QString();
    QTest::newRow("one byte short") << quint64(1000000) << qint64(million - 1)
                                    << "--generate 1000000 would need about ";
    QTest::newRow("far beyond") << quint64(50000000) << qint64(1) << "more than the 1 bytes available";
    QTest::newRow("memory not known") << quint64(50000000) << qint64(-1) << QString();
}

void tst_ReferenceAppCommandLine::generatedModelRefusal()
{
    QFETCH(quint64, items);
    QFETCH(qint64, available);
    QFETCH(QString, refusal);
    const std::optional<quint64> memory = available < 0 ? std::nullopt : std::optional<quint64>(available);
    const QString text = Brennvik::generatedModelRefusal(items, memory);
    if (refusal.isEmpty())
        QVERIFY2(text.isEmpty(), qPrintable(text));
    else
        QVERIFY2(text.contains(refusal), qPrintable(text));
    // The estimate grows with the count.
    QVERIFY(estimatedMemoryForGeneratedModel(items + 1) > estimatedMemoryForGeneratedModel(items));
}

void tst_ReferenceAppCommandLine::generatedModelEstimateCountsOpenDialogs_data()
{
    QTest::addColumn<QStringList>("dialogs");
    QTest::addColumn<bool>("needsMore");     // than the main window alone
    QTest::addColumn<QStringList>("sameAs"); // dialogs with the same estimate

    QTest::newRow("display model") << QStringList{"display-model"} << true << QStringList{"display-model"};
    QTest::newRow("clone comparison") << QStringList{"clone-comparison"} << true << QStringList{"clone-comparison"};
    QTest::newRow("2D plots only") << QStringList{"display-model-2d"} << false << QStringList{};
    QTest::newRow("unknown name") << QStringList{"nothing"} << false << QStringList{};
    QTest::newRow("a dialog named twice counts once")
        << QStringList{"display-model", "display-model"} << true << QStringList{"display-model"};
    QTest::newRow("two dialogs add up") << QStringList{"clone-comparison", "display-model"} << true
                                        << QStringList{"display-model", "clone-comparison"};
}

void tst_ReferenceAppCommandLine::generatedModelEstimateCountsOpenDialogs()
{
    QFETCH(QStringList, dialogs);
    QFETCH(bool, needsMore);
    QFETCH(QStringList, sameAs);

    const quint64 items = 1000000;
    const quint64 alone = estimatedMemoryForGeneratedModel(items);
    const quint64 estimate = estimatedMemoryForGeneratedModel(items, dialogs);
    QCOMPARE(estimate > alone, needsMore);
    QCOMPARE(estimate, estimatedMemoryForGeneratedModel(items, sameAs));
    // The dialogs' share grows with the model as well.
    QCOMPARE(estimatedMemoryForGeneratedModel(2 * items, dialogs) - estimate,
             estimate - estimatedMemoryForGeneratedModel(0, dialogs));
    // A refusal weighs the dialogs: a memory that holds the main window alone may not hold them.
    QCOMPARE(Brennvik::generatedModelRefusal(items, alone, dialogs).isEmpty(), !needsMore);
}

void tst_ReferenceAppCommandLine::generatedModelBeyondMemoryIsRefusedBeforeBuilding()
{
    const quint64 items = 50000000;
    const std::optional<quint64> available = availablePhysicalMemory();
    if (!available)
        QSKIP("this system does not tell its available memory");
    if (estimatedMemoryForGeneratedModel(items) <= *available)
        QSKIP("this machine could hold the largest model the option takes");

    // Refused before a single item is made: well within the time allowed.
    const Run result = runApp({QStringLiteral("--generate"), QString::number(items)}, 30000);
    QVERIFY2(result.finished, "the model was being built");
    QCOMPARE(result.exitCode, 2);
    const QStringList ours = ownMessages(result);
    QCOMPARE(ours.size(), 1);
    QVERIFY2(ours.first().contains(QStringLiteral("would need about")), qPrintable(ours.first()));
}

void tst_ReferenceAppCommandLine::screenshotReplacesAnExistingFile()
{
    QTemporaryDir dir;
    const QString shot = dir.filePath(QStringLiteral("shot.png"));
    QFile old(shot);
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write("an older screenshot");
    old.close();

    const Run result = runApp({QStringLiteral("--screenshot"), shot});
    QVERIFY(result.finished);
    QCOMPARE(result.exitCode, 0);
    QVERIFY(!QImage(shot).isNull());
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"shot.png"});
}

void tst_ReferenceAppCommandLine::failedScreenshotLeavesTheExistingFile()
{
#ifndef Q_OS_UNIX
    QSKIP("the write is made to fail by a file size limit");
#else
    QTemporaryDir dir;
    const QString shot = dir.filePath(QStringLiteral("shot.png"));
    QImage previous(64, 64, QImage::Format_RGB32);
    previous.fill(Qt::darkCyan);
    QVERIFY(previous.save(shot, "PNG"));
    const QByteArray before = readAll(shot);

    // A file size limit of a few kilobytes, with the signal that it raises
    // ignored: every write beyond it fails, as on a full disk.
    const Run result = run(QStringLiteral("/bin/sh"),
                           {QStringLiteral("-c"), QStringLiteral("trap '' XFSZ; ulimit -f 8; exec \"$0\" \"$@\""),
                            QStringLiteral(BRENNVIK_REFERENCEAPP), QStringLiteral("--screenshot"), shot});
    QVERIFY(result.finished);
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(ownMessages(result).size(), 1);
    QVERIFY2(ownMessages(result).first().contains(QStringLiteral("cannot write screenshot")),
             qPrintable(result.errors));
    QCOMPARE(readAll(shot), before);
    // Nothing half-written is left beside it either.
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"shot.png"});
#endif
}

void tst_ReferenceAppCommandLine::screenshotDoesNotReplaceASpecialFile()
{
#ifndef Q_OS_UNIX
    QSKIP("named pipes are made with mkfifo");
#else
    QTemporaryDir dir;
    const QString pipe = dir.filePath(QStringLiteral("pipe.png"));
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);

    const Run result = runApp({QStringLiteral("--screenshot"), pipe}, 30000);
    QVERIFY2(result.finished, "the application waited for a reader of the pipe");
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(ownMessages(result).size(), 1);
    QVERIFY2(ownMessages(result).first().contains(QStringLiteral("not a regular file")), qPrintable(result.errors));
    QVERIFY(!QFileInfo(pipe).isFile());
    QVERIFY(QFileInfo::exists(pipe));
#endif
}

void tst_ReferenceAppCommandLine::fileNamesThatAreNotText_data()
{
    QTest::addColumn<bool>("joined");
    QTest::newRow("--option value") << false;
    QTest::newRow("--option=value") << true;
}

void tst_ReferenceAppCommandLine::fileNamesThatAreNotText()
{
#ifndef Q_OS_UNIX
    QSKIP("file names are bytes only on Unix");
#else
    QFETCH(bool, joined);
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString written = dir.filePath(QStringLiteral("written.json"));
    const Run result = runApp({QStringLiteral("--save-model"), written, QStringLiteral("--screenshot"),
                               dir.filePath(QStringLiteral("first.png"))});
    QVERIFY(result.finished);
    QCOMPARE(result.exitCode, 0);
    const QByteArray model = readAll(written);
    QVERIFY(!model.isEmpty());

    // Byte 0xff is not valid UTF-8: these names have no QString form.
    const QByteArray folder = QFile::encodeName(dir.path());
    const QByteArray source = folder + QByteArrayLiteral("/source-\xff.json");
    const QByteArray copy = folder + QByteArrayLiteral("/copy-\xff.json");
    const QByteArray shot = folder + QByteArrayLiteral("/shot-\xff.png");
    // The temporary folder's own clean-up goes through QString names.
    const auto removeRawNames = qScopeGuard([&] {
        for (const QByteArray& path : {source, copy, shot})
            ::unlink(path.constData());
    });
    QVERIFY(QFile::copy(written, QFile::decodeName(folder) + QStringLiteral("/plain.json")));
    QCOMPARE(::rename(QFile::encodeName(dir.filePath(QStringLiteral("plain.json"))).constData(), source.constData()),
             0);

    const auto option = [joined](const char* name, const QByteArray& value) {
        return joined ? QList<QByteArray>{QByteArray(name) + '=' + value} : QList<QByteArray>{name, value};
    };
    const int status = runAppWithRawArguments(option("--model", source) + option("--save-model", copy)
                                              + option("--screenshot", shot));
    QCOMPARE(status, 0);
    QCOMPARE(Test::readRawFile(copy), model);
    const QByteArray png = Test::readRawFile(shot);
    QVERIFY(png.startsWith(QByteArrayLiteral("\x89PNG")));
    QVERIFY(!QImage::fromData(png, "PNG").isNull());
    // The three files and those of the first run, nothing half-written beside them.
    const QList<QByteArray> files{"copy-\xff.json", "first.png", "shot-\xff.png", "source-\xff.json", "written.json"};
    QCOMPARE(Test::rawEntryNames(folder), files);
#endif
}

void tst_ReferenceAppCommandLine::sceneIsShownAndSaved()
{
#ifndef BRENNVIK_WITH_SCENE_IMPORT
    QSKIP("built without scene import");
#endif
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString scene = dir.filePath(QStringLiteral("bracket.obj"));
    QFile file(scene);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("o Bracket\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    file.close();
    const QString saved = dir.filePath(QStringLiteral("bracket.json"));
    const QString shot = dir.filePath(QStringLiteral("shot.png"));

    const Run result = runApp({QStringLiteral("--scene"), scene, QStringLiteral("--save-model"), saved,
                               QStringLiteral("--screenshot"), shot});
    QVERIFY2(result.finished, qPrintable(result.errors));
    QCOMPARE(result.exitCode, 0);
    QVERIFY(ownMessages(result).isEmpty());
    QVERIFY(!QImage(shot).isNull());
    const QByteArray json = readAll(saved);
    QVERIFY2(json.contains("\"name\": \"Bracket\""), json.constData());
    QVERIFY(json.contains("\"primitive types\""));
}

void tst_ReferenceAppCommandLine::refusedSceneExitsWithStatusOne_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");

    QTest::newRow("missing") << "missing.gltf" << QByteArray() << "cannot open the file";
    QTest::newRow("not a scene") << "broken.gltf" << QByteArray("{\"asset\": ") << "cannot import the scene: ";
}

void tst_ReferenceAppCommandLine::refusedSceneExitsWithStatusOne()
{
#ifndef BRENNVIK_WITH_SCENE_IMPORT
    QSKIP("built without scene import");
#endif
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath(file);
    if (!content.isEmpty()) {
        QFile scene(path);
        QVERIFY(scene.open(QIODevice::WriteOnly));
        scene.write(content);
    }
    const QString shot = dir.filePath(QStringLiteral("shot.png"));

    const Run result = runApp({QStringLiteral("--scene"), path, QStringLiteral("--screenshot"), shot});
    QVERIFY2(result.finished, qPrintable(result.errors));
    QCOMPARE(result.exitCode, 1);
    const QStringList ours = ownMessages(result);
    QCOMPARE(ours.size(), 1);
    QVERIFY2(ours.first().startsWith(QStringLiteral("brennvik-referenceapp: ") + path + QStringLiteral(": ") + reason),
             qPrintable(ours.first()));
    QVERIFY(!QFile::exists(shot));
}

QTEST_MAIN(tst_ReferenceAppCommandLine)
#include "tst_referenceapp_commandline.moc"
