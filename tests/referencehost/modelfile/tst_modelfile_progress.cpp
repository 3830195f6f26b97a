// The progress reports of loading a model file: they only grow, the total
// comes once, last, for a model that loads, and never for a file that fails.
#include <referencehost/model/SampleModel.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/modelfile/ModelFile.h>

#include <QTemporaryFile>
#include <QtTest>

#include <cstddef>
#include <utility>
#include <vector>

using namespace Brennvik;

namespace {

using Report = std::pair<std::size_t, std::size_t>;

// What is wrong with \a reports of a load that did (\a loaded) or did not
// succeed; empty when nothing is.
QString checkReports(const std::vector<Report>& reports, bool loaded)
{
    if (reports.empty())
        return QStringLiteral("no report");
    const std::size_t total = reports.front().second;
    for (std::size_t i = 0; i < reports.size(); ++i) {
        const auto [done, reportTotal] = reports[i];
        if (reportTotal != total)
            return QStringLiteral("report %1 changes the total to %2").arg(i).arg(reportTotal);
        if (i > 0 && done <= reports[i - 1].first)
            return QStringLiteral("report %1 (%2) does not grow").arg(i).arg(done);
        const bool last = i + 1 == reports.size();
        if (done == total && !(loaded && last))
            return QStringLiteral("report %1 reaches the total").arg(i);
    }
    if (loaded && reports.back().first != total)
        return QStringLiteral("the last report (%1) is not the total").arg(reports.back().first);
    return QString();
}

QByteArray generatedModelFile(std::size_t items)
{
    return ModelFile::toJson(*buildSyntheticViewModel(items, 7));
}

const QByteArray kHeader = "{\"format\": \"brennvik-display-model\", \"version\": 1, ";

} // namespace

class tst_ModelFileProgress : public QObject
{
    Q_OBJECT
private slots:
    void reportsOfALoad_data();
    void reportsOfALoad();
    void reportsOfALoadFromAFile();
    void aLargeFileReportsAllAlong();
};

void tst_ModelFileProgress::reportsOfALoad_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<bool>("loaded");

    const QByteArray sample = ModelFile::toJson(*buildSampleViewModel());
    const QByteArray generated = generatedModelFile(8000);
    QTest::newRow("sample model") << sample << true;
    QTest::newRow("8,000 generated items") << generated << true;
    QTest::newRow("one item") << kHeader + "\"displayModel\": {\"root\": {\"name\": \"r\"}}}" << true;
    QTest::newRow("no items") << kHeader + "\"displayModel\": {}}" << true;

    QTest::newRow("cut short") << generated.left(generated.size() / 2) << false;
    QTest::newRow("repeated key") << generated.left(generated.lastIndexOf('}')) + ", \"version\": 1}" << false;
    QByteArray unknownField = generated;
    unknownField.replace(unknownField.lastIndexOf("\"name\""), 6, "\"nome\"");
    QTest::newRow("unknown field in the last item") << unknownField << false;
    QTest::newRow("unknown id in a geometry list, after every item is built") << kHeader
            + "\"displayModel\": {\"root\": {\"name\": \"r\", \"kind\": \"GeometryModuleItem\", "
              "\"geometryItems\": [\"nowhere\"], \"children\": [{\"name\": \"a\"}, {\"name\": \"b\"}]}}}"
                                                                              << false;
}

void tst_ModelFileProgress::reportsOfALoad()
{
    QFETCH(QByteArray, json);
    QFETCH(bool, loaded);
    std::vector<Report> reports;
    ModelFileError error;
    const auto model = ModelFile::loadFromData(
        json, QStringLiteral("model.json"), &error, {},
        [&reports](std::size_t done, std::size_t total) { reports.emplace_back(done, total); });
    QCOMPARE(bool(model), loaded);
    QVERIFY2(loaded || !error.message.isEmpty(), "a failed load says why");
    const QString wrong = checkReports(reports, loaded);
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
}

void tst_ModelFileProgress::reportsOfALoadFromAFile()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    QVERIFY(file.write(ModelFile::toJson(*buildSampleViewModel())) > 0);
    file.close();
    std::vector<Report> reports;
    ModelFileError error;
    const auto model = ModelFile::load(file.fileName(), &error, {}, [&reports](std::size_t done, std::size_t total) {
        reports.emplace_back(done, total);
    });
    QVERIFY2(model, qPrintable(error.toString()));
    const QString wrong = checkReports(reports, true);
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
    QCOMPARE(reports.front().first, std::size_t(0));

    // A file that cannot be read is never begun.
    reports.clear();
    QVERIFY(!ModelFile::load(file.fileName() + QStringLiteral(".missing"), &error, {},
                             [&reports](std::size_t done, std::size_t total) { reports.emplace_back(done, total); }));
    QVERIFY(reports.empty());
}

// Every phase of a load of some size moves the report on: the check of the
// text (megabyte by megabyte), the parsing and the items, step by step.
void tst_ModelFileProgress::aLargeFileReportsAllAlong()
{
    const QByteArray json = generatedModelFile(8000);
    QVERIFY2(json.size() > 4 * 1024 * 1024, "the text spans several megabytes");
    std::vector<Report> reports;
    ModelFileError error;
    QVERIFY(ModelFile::loadFromData(
        json, QStringLiteral("model.json"), &error, {},
        [&reports](std::size_t done, std::size_t total) { reports.emplace_back(done, total); }));
    QVERIFY(checkReports(reports, true).isEmpty());
    const std::size_t total = reports.front().second;
    // Qt's parser tells nothing while it runs: its share of the way, under
    // two fifths, is the widest gap between reports.
    QCOMPARE(reports.front().first, std::size_t(0));
    std::size_t widestGap = 0;
    for (std::size_t i = 1; i < reports.size(); ++i)
        widestGap = std::max(widestGap, reports[i].first - reports[i - 1].first);
    QVERIFY2(widestGap < total * 2 / 5, qPrintable(QString::number(widestGap)));
    QVERIFY2(reports.size() >= 100, qPrintable(QString::number(reports.size())));
}

QTEST_MAIN(tst_ModelFileProgress)
#include "tst_modelfile_progress.moc"
