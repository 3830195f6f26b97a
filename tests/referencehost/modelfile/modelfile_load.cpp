// Loads the model files given on the command line and says what became of
// each: for measuring the loader's time and memory on large or hostile files
// (run it under /usr/bin/time -v), not a test.

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
    for (const QString& path : QCoreApplication::arguments().mid(1)) {
        Brennvik::ModelFileError error;
        const auto model = Brennvik::ModelFile::load(path, &error);
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
