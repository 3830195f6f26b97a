// Replays the fuzzer's seed corpus and every input that once broke the model
// file loader through the fuzzer's own check, on every build.

#include "ModelFileFuzzTarget.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtTest>

using namespace Brennvik::Test;

namespace {

QFileInfoList inputsIn(const QString& directory)
{
    return QDir(directory).entryInfoList(QDir::Files | QDir::NoDotAndDotDot, QDir::Name);
}

QByteArray contents(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

} // namespace

class tst_FuzzCorpus : public QObject
{
    Q_OBJECT

private slots:
    void replay_data();
    void replay();
    void corpusCoversBothOutcomes();
    void checkOnKnownInputs();

private:
    void addRows(const QString& directory, const QString& prefix);
};

void tst_FuzzCorpus::addRows(const QString& directory, const QString& prefix)
{
    for (const QFileInfo& info : inputsIn(directory)) {
        // A regression file may come with a note on what it broke; that is not an input.
        if (info.suffix() == QLatin1String("txt") || info.fileName() == QLatin1String("README.md"))
            continue;
        QTest::newRow(qPrintable(prefix + info.fileName())) << info.filePath();
    }
}

void tst_FuzzCorpus::replay_data()
{
    QTest::addColumn<QString>("path");
    addRows(QStringLiteral(BRENNVIK_FUZZ_CORPUS_DIR), QStringLiteral("corpus/"));
    addRows(QStringLiteral(BRENNVIK_FUZZ_REGRESSIONS_DIR), QStringLiteral("regressions/"));
}

void tst_FuzzCorpus::replay()
{
    QFETCH(QString, path);
    QFile file(path);
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.errorString()));
    const QByteArray data = file.readAll();

    const ModelFileFuzzOutcome outcome = checkModelFileInput(data);
    QVERIFY2(outcome.finding.isEmpty(), qPrintable(outcome.finding));
    // Either a model, or one error with a place; never both, never neither.
    QCOMPARE(outcome.error.isEmpty(), outcome.loaded);
    // The seed files say in their names what they are; mutated-* and the
    // regressions may go either way.
    const QString name = QFileInfo(path).fileName();
    if (name.startsWith(QLatin1String("good-")))
        QVERIFY2(outcome.loaded, qPrintable(outcome.error));
    else if (name.startsWith(QLatin1String("broken-")))
        QVERIFY2(!outcome.loaded, "a broken seed file loads");
}

void tst_FuzzCorpus::corpusCoversBothOutcomes()
{
    // A corpus of only good or only broken files would leave half the loader
    // untried; and an empty directory would make the replay pass vacuously.
    int loaded = 0;
    int refused = 0;
    for (const QFileInfo& info : inputsIn(QStringLiteral(BRENNVIK_FUZZ_CORPUS_DIR))) {
        if (checkModelFileInput(contents(info.filePath())).loaded)
            ++loaded;
        else
            ++refused;
    }
    QVERIFY2(loaded >= 5, qPrintable(QStringLiteral("%1 corpus files load").arg(loaded)));
    QVERIFY2(refused >= 20, qPrintable(QStringLiteral("%1 corpus files are refused").arg(refused)));
}

void tst_FuzzCorpus::checkOnKnownInputs()
{
    // The check itself on inputs whose outcome is known.
    const ModelFileFuzzOutcome broken = checkModelFileInput("{\"format\": \"brennvik-display-model\", \"version\": 2,\n"
                                                            "\"displayModel\": {}}");
    QVERIFY(!broken.loaded);
    QVERIFY(broken.finding.isEmpty());
    QCOMPARE(broken.error, QStringLiteral("fuzz.json:1:49: unsupported version 2, expected 1"));

    const ModelFileFuzzOutcome good = checkModelFileInput(
        "{\"format\": \"brennvik-display-model\", \"version\": 1, \"displayModel\": {\"root\": {\"name\": \"r\"}}}");
    QVERIFY(good.loaded);
    QVERIFY(good.error.isEmpty());
    QVERIFY2(good.finding.isEmpty(), qPrintable(good.finding));

    // Tight limits refuse what the defaults let through, with a place too.
    QByteArray deep = "{\"name\": \"leaf\"}";
    for (int level = 0; level < 6; ++level)
        deep = "{\"name\": \"n\", \"children\": [" + deep + "]}";
    const ModelFileFuzzOutcome deepOutcome = checkModelFileInput(
        "{\"format\": \"brennvik-display-model\", \"version\": 1, \"displayModel\": {\"root\": " + deep + "}}");
    QVERIFY(deepOutcome.loaded);
    QVERIFY2(deepOutcome.finding.isEmpty(), qPrintable(deepOutcome.finding));
}

QTEST_GUILESS_MAIN(tst_FuzzCorpus)
#include "tst_fuzzcorpus.moc"
