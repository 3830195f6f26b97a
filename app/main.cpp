#include "CommandLineOptions.h"
#include "GeneratedModelBudget.h"
#include "SceneFile.h"
#include "ModelFileLoading.h"
#include "StartupProgress.h"
#include "ReferenceMainWindow.h"

#include <referencehost/model/CloneDefect.h>
#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SampleModel.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/modelfile/ModelFile.h>
#include <referencehost/modelfile/ModelFileError.h>
#include <referencehost/modelfile/ReplaceFile.h>

#include <QApplication>
#include <QBuffer>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QPainter>
#include <QPixmap>
#include <QRegularExpression>
#include <QSettings>
#include <QTimer>
#include <QTranslator>

#include <algorithm>
#include <memory>
#include <cstdio>
#include <optional>
#include <vector>

namespace {

// The main window and every open dialog side by side, top-aligned.
QPixmap renderWindows(const QList<QWidget*>& windows)
{
    constexpr int Gap = 12;
    QList<QPixmap> shots;
    int width = 0;
    int height = 0;
    for (QWidget* window : windows) {
        const QPixmap shot = window->grab();
        if (shot.isNull())
            continue;
        width += (shots.isEmpty() ? 0 : Gap) + shot.width();
        height = qMax(height, shot.height());
        shots << shot;
    }
    if (shots.isEmpty())
        return QPixmap();
    QPixmap canvas(width, height);
    canvas.fill(QColor(0x4a, 0x4f, 0x55));
    QPainter painter(&canvas);
    int x = 0;
    for (const QPixmap& shot : qAsConst(shots)) {
        painter.drawPixmap(x, 0, shot);
        x += shot.width() + Gap;
    }
    return canvas;
}

// The language codes whose translation of the library's texts is built in.
QStringList availableLanguages()
{
    QStringList codes;
    const QString prefix = QStringLiteral("brennvik_debugmenu_");
    const QStringList files = QDir(QStringLiteral(":/i18n"))
                                  .entryList(QStringList{prefix + QStringLiteral("*.qm")}, QDir::Files, QDir::Name);
    for (const QString& file : files)
        codes << file.mid(prefix.size(), file.size() - prefix.size() - 3);
    return codes;
}

// A command line the application cannot take: one message, exit status 2.
int usageError(const QString& message)
{
    std::fprintf(stderr, "brennvik-referenceapp: %s\n", qPrintable(message));
    return 2;
}

// The defects of \a defects whose target no item of \a viewModel is named.
QString unknownDefectTarget(const Brennvik::SceneViewModel& viewModel,
                            const std::vector<Brennvik::CloneDefect>& defects)
{
    const std::shared_ptr<Brennvik::DisplayItem> root = viewModel.displayModel().rootDisplayItem();
    for (const Brennvik::CloneDefect& defect : defects) {
        if (!root || !root->findByDisplayName(defect.target)) {
            return QStringLiteral("--clone-defect %1: no item is named '%2'")
                .arg(QString::fromStdString(defect.toString()), QString::fromStdString(defect.target));
        }
    }
    return QString();
}

// The first clone defect of \a viewModel that a clone leaves out because it
// cannot apply to its target (the root cannot be dropped, an item that is no
// geometry module has no list to shorten...). Asked of one trial clone: the
// host's own verdict, which a second set of rules here could contradict.
QString unfitCloneDefect(const Brennvik::SceneViewModel& viewModel)
{
    if (viewModel.cloneDefects().empty())
        return QString();
    viewModel.cloneSceneViewModel(false);
    const std::vector<Brennvik::CloneDefect>& unapplied = viewModel.lastCloneUnappliedDefects();
    if (unapplied.empty())
        return QString();
    const Brennvik::CloneDefect& defect = unapplied.front();
    return QStringLiteral("--clone-defect %1: %2 cannot apply to the item named '%3'")
        .arg(QString::fromStdString(defect.toString()),
             QString::fromStdString(Brennvik::CloneDefect::toString(defect.kind)),
             QString::fromStdString(defect.target));
}

// Writes \a shot as PNG to the file named \a file (its bytes as the system
// takes them) through a file beside it that replaces it only once complete,
// so that a failed write leaves what was there. Only an ordinary file is
// replaced: a device or pipe of that name stays as it is.
bool writeScreenshot(const QPixmap& shot, const QByteArray& file, QString* error)
{
    QByteArray png;
    QBuffer buffer(&png);
    if (!buffer.open(QIODevice::WriteOnly) || !shot.save(&buffer, "PNG")) {
        *error = QStringLiteral("cannot encode the image");
        return false;
    }
    return Brennvik::replaceFileContents(file, png, error);
}

// The last value of each option of \a options given in \a argv, keyed by the
// option's first name, as the command line's own bytes: QString arguments
// lose the bytes of a file name that are not valid text. Read as the parser
// reads: "--name value" or "--name=value", and nothing after "--".
QHash<QString, QByteArray> rawOptionValues(int argc, char** argv, const QList<QCommandLineOption>& options)
{
    QHash<QString, QByteArray> values;
    for (int i = 1; i < argc; ++i) {
        const QByteArray argument(argv[i]);
        if (argument == "--")
            break;
        if (!argument.startsWith("--"))
            continue;
        const int equals = argument.indexOf('=');
        const QString name = QString::fromLocal8Bit(argument.mid(2, equals < 0 ? -1 : equals - 2));
        const auto option = std::find_if(options.cbegin(), options.cend(),
                                         [&name](const QCommandLineOption& o) { return o.names().contains(name); });
        if (option == options.cend() || (equals < 0 && i + 1 >= argc))
            continue;
        values.insert(option->names().first(), equals < 0 ? QByteArray(argv[++i]) : argument.mid(equals + 1));
    }
    return values;
}

// The file name given to \a option as the system takes it: the command line's
// own bytes when they are what the parser read, else the parsed text encoded.
QByteArray nativeFileName(const QCommandLineParser& parser, const QCommandLineOption& option,
                          const QHash<QString, QByteArray>& rawValues)
{
    const QString value = parser.value(option);
    const QByteArray raw = rawValues.value(option.names().first());
    return QFile::decodeName(raw) == value ? raw : QFile::encodeName(value);
}

} // namespace

int main(int argc, char* argv[])
{
    if (const std::optional<int> status = Brennvik::answerHelpOrVersion(argc, argv))
        return *status;
    QApplication app(argc, argv);
    Brennvik::setApplicationNames();

    Brennvik::CommandLineOptions options;
    QCommandLineParser& parser = options.parser;
    const QCommandLineOption& modelOption = options.model;
    const QCommandLineOption& saveModelOption = options.saveModel;
    const QCommandLineOption& generateOption = options.generate;
    const QCommandLineOption& cloneDefectOption = options.cloneDefect;
    const QCommandLineOption& openOption = options.open;
    const QCommandLineOption& screenshotOption = options.screenshot;
    const QCommandLineOption& langOption = options.lang;
    // Errors of the command line are usage errors (status 2); Qt's own
    // handling would give them status 1, that of a file that fails to load.
    if (!parser.parse(QCoreApplication::arguments()))
        return usageError(parser.errorText());
    if (!parser.positionalArguments().isEmpty())
        return usageError(QStringLiteral("unexpected argument '%1'").arg(parser.positionalArguments().first()));
    // Taken after QApplication has removed its own options, as the parser's arguments were.
    const QHash<QString, QByteArray> rawValues = rawOptionValues(argc, argv, options.valueOptions());

    // Installed before any window is made: forms look their texts up once, when built.
    QTranslator translator;
    QTranslator applicationTranslator;
    if (parser.isSet(langOption)) {
        const QString code = parser.value(langOption);
        // A code is a file name part; anything else could name another resource.
        const bool wellFormed
            = QRegularExpression(QStringLiteral("\\A[A-Za-z]{2,3}(_[A-Za-z]{2})?\\z")).match(code).hasMatch();
        if (!wellFormed || !translator.load(QStringLiteral(":/i18n/brennvik_debugmenu_%1.qm").arg(code))) {
            std::fprintf(stderr, "brennvik-referenceapp: unknown language '%s' for --lang (known: %s)\n",
                         qPrintable(code), qPrintable(availableLanguages().join(QStringLiteral(", "))));
            return 2;
        }
        QCoreApplication::installTranslator(&translator);
        // The host's and the application's own texts; English where a language has none.
        if (applicationTranslator.load(QStringLiteral(":/i18n/brennvik_referenceapp_%1.qm").arg(code)))
            QCoreApplication::installTranslator(&applicationTranslator);
    }

    std::shared_ptr<Brennvik::SceneViewModel> viewModel;
    if (parser.isSet(modelOption) && parser.isSet(generateOption)) {
        std::fprintf(stderr, "brennvik-referenceapp: --model and --generate exclude each other\n");
        return 2;
    }
    if (parser.isSet(options.scene) && (parser.isSet(modelOption) || parser.isSet(generateOption))) {
        std::fprintf(stderr, "brennvik-referenceapp: --scene excludes --model and --generate\n");
        return 2;
    }
    if (parser.isSet(options.scene)) {
        QString error;
        viewModel = Brennvik::importSceneFile(nativeFileName(parser, options.scene, rawValues), &error);
        if (!viewModel) {
            std::fprintf(stderr, "brennvik-referenceapp: %s\n", qPrintable(error));
            return 1;
        }
    } else if (parser.isSet(modelOption)) {
        Brennvik::ModelFileError error;
        viewModel = Brennvik::loadModelFileShowingProgress(nativeFileName(parser, modelOption, rawValues), &error);
        if (!viewModel) {
            std::fprintf(stderr, "brennvik-referenceapp: %s\n", qPrintable(error.toString()));
            return 1;
        }
    } else if (parser.isSet(generateOption)) {
        bool ok = false;
        const qulonglong count = parser.value(generateOption).toULongLong(&ok);
        if (!ok || count == 0 || count > 50'000'000ULL) {
            std::fprintf(stderr,
                         "brennvik-referenceapp: --generate expects a number of items from 1 to 50000000, got '%s'\n",
                         qPrintable(parser.value(generateOption)));
            return 2;
        }
        // Refused before building: a model the machine cannot hold would
        // take it into swap long before the window shows.
        const QString refusal
            = Brennvik::generatedModelRefusal(count, Brennvik::availablePhysicalMemory(), parser.values(openOption));
        if (!refusal.isEmpty())
            return usageError(refusal);
        Brennvik::StartupProgress progress(
            QCoreApplication::translate("main", "Generating %1 display items...").arg(count));
        viewModel = Brennvik::buildSyntheticViewModel(
            static_cast<std::size_t>(count), 1,
            [&progress](std::size_t done, std::size_t total) { progress.report(done, total); });
    } else {
        viewModel = Brennvik::buildSampleViewModel();
    }

    if (parser.isSet(saveModelOption)) {
        QString error;
        const QByteArray file = nativeFileName(parser, saveModelOption, rawValues);
        if (!Brennvik::ModelFile::save(*viewModel, file, &error)) {
            std::fprintf(stderr, "brennvik-referenceapp: cannot save the model: %s\n", qPrintable(error));
            return 1;
        }
        std::printf("model written: %s\n", qPrintable(QFile::decodeName(file)));
    }

    std::vector<Brennvik::CloneDefect> defects;
    for (const QString& text : parser.values(cloneDefectOption)) {
        const std::optional<Brennvik::CloneDefect> defect = Brennvik::CloneDefect::fromString(text.toStdString());
        if (!defect) {
            std::fprintf(stderr,
                         "brennvik-referenceapp: --clone-defect expects <kind>:<target> with kind one of drop-child, "
                         "add-child, share-child, repeat-child, change-type, flip-visibility, change-property, "
                         "drop-geometry-entry; got '%s'\n",
                         qPrintable(text));
            return 2;
        }
        defects.push_back(*defect);
    }
    const QString unknownTarget = unknownDefectTarget(*viewModel, defects);
    if (!unknownTarget.isEmpty())
        return usageError(unknownTarget);
    viewModel->setCloneDefects(std::move(defects));
    const QString unfitDefect = unfitCloneDefect(*viewModel);
    if (!unfitDefect.isEmpty())
        return usageError(unfitDefect);

    // Where the windows were left: the application's own settings (the
    // library reads none), or the file given with --settings.
    const std::unique_ptr<QSettings> settings = parser.isSet(options.settings)
        ? std::make_unique<QSettings>(parser.value(options.settings), QSettings::IniFormat)
        : std::make_unique<QSettings>();
    Brennvik::ReferenceMainWindow window(viewModel);
    window.setSettings(settings.get());
    window.show();

    for (const QString& name : parser.values(openOption)) {
        if (name == QLatin1String("display-model")) {
            window.openDisplayModelDialog();
        } else if (name == QLatin1String("clone-comparison")) {
            window.openCloneComparisonDialog();
        } else if (name == QLatin1String("display-model-2d")) {
            window.openDisplayModel2DDialog();
        } else {
            std::fprintf(
                stderr,
                "brennvik-referenceapp: unknown dialog '%s' for --open (known: display-model, clone-comparison, "
                "display-model-2d)\n",
                qPrintable(name));
            return 2;
        }
    }

    if (parser.isSet(screenshotOption)) {
        const QByteArray file = nativeFileName(parser, screenshotOption, rawValues);
        // Rendered once the windows have been laid out by the event loop.
        QTimer::singleShot(0, &window, [&]() {
            const QPixmap shot = renderWindows(QList<QWidget*>{&window} + window.openDialogs());
            QString error = QStringLiteral("nothing to render");
            if (shot.isNull() || !writeScreenshot(shot, file, &error)) {
                std::fprintf(stderr, "brennvik-referenceapp: cannot write screenshot %s: %s\n",
                             qPrintable(QFile::decodeName(file)), qPrintable(error));
                QApplication::exit(1);
                return;
            }
            std::printf("screenshot written: %s (%dx%d)\n", qPrintable(QFile::decodeName(file)), shot.width(),
                        shot.height());
            QApplication::exit(0);
        });
    }
    return QApplication::exec();
}
