#include "ReferenceMainWindow.h"

#include <referencehost/model/SampleModel.h>
#include <referencehost/model/SceneViewModel.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QPixmap>
#include <QTimer>

#include <cstdio>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("brennvik-referenceapp"));
    QApplication::setApplicationVersion(QStringLiteral("0.1"));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Reference host application: a sample part and process shown as a live display model."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption screenshotOption(QStringLiteral("screenshot"),
                                              QStringLiteral("Render the main window to the PNG <file> and exit."),
                                              QStringLiteral("file"));
    parser.addOption(screenshotOption);
    parser.process(app);

    Brennvik::ReferenceMainWindow window(Brennvik::buildSampleViewModel());
    window.show();

    if (parser.isSet(screenshotOption)) {
        const QString file = parser.value(screenshotOption);
        // Rendered once the window has been laid out by the event loop.
        QTimer::singleShot(0, &window, [&]() {
            const QPixmap shot = window.grab();
            if (shot.isNull() || !shot.save(file, "PNG")) {
                std::fprintf(stderr, "brennvik-referenceapp: cannot write screenshot %s\n", qPrintable(file));
                QApplication::exit(1);
                return;
            }
            std::printf("screenshot written: %s (%dx%d)\n", qPrintable(file), shot.width(), shot.height());
            QApplication::exit(0);
        });
    }
    return QApplication::exec();
}
