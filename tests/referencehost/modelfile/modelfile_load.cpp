// Loads the model files given on the command line and says what became of
// each: for measuring the loader's time and memory on large or hostile files
// (run it under /usr/bin/time -v), not a test. With --progress the loads
// report their progress to a callback that counts the reports.

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/modelfile/ModelFile.h>

#include <QCoreApplication>
#include <QStringList>

#include <cstdio>

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    int failures = 0;
    QStringList paths = QCoreApplication::arguments().mid(1);
    const bool withProgress = paths.removeAll(QStringLiteral("--progress")) > 0;
    for (const QString& path : qAsConst(paths)) {
        Brennvik::ModelFileError error;
        std::size_t reports = 0;
        Brennvik::ModelFileProgress progress;
        if (withProgress)
            progress = [&reports](std::size_t, std::size_t) { ++reports; };
        const auto model = Brennvik::ModelFile::load(path, &error, {}, progress);
        if (withProgress)
            std::printf("%zu progress reports\n", reports);
        if (!model) {
            ++failures;
            std::printf("%s\n", qPrintable(error.toString().left(200)));
            continue;
        }
        const auto root = model->displayModel().rootDisplayItem();
        std::printf("%s: loaded, %llu items in the display tree\n", qPrintable(path),
                    static_cast<unsigned long long>(root ? root->getNumberOfDisplayItems() : 0));
    }
    return failures == 0 ? 0 : 1;
}
