#include "CommandLineOptions.h"

#include <QCoreApplication>

namespace Brennvik {

namespace {

QCommandLineOption valueOption(const char* name, const char* description, const char* valueName)
{
    return QCommandLineOption(QString::fromLatin1(name), QString::fromLatin1(description),
                              QString::fromLatin1(valueName));
}

} // namespace

CommandLineOptions::CommandLineOptions()
    : help(parser.addHelpOption())
    , version(parser.addVersionOption())
    , model(valueOption("model", "Show the model snapshot of the JSON <file> instead of the sample.", "file"))
    , scene(valueOption("scene",
                        "Show the 3D scene <file> (glTF, FBX, COLLADA, OBJ, STL, IFC and the other formats\n"
                        "Assimp reads) instead of the sample. A file that cannot be imported gives its reason\n"
                        "(exit status 1).",
                        "file"))
    , saveModel(
          valueOption("save-model", "Write the model shown (before any change) as a JSON snapshot to <file>.", "file"))
    , generate(valueOption("generate", "Show a generated model of about <n> display items instead of the sample.", "n"))
    , cloneDefect(valueOption(
          "clone-defect",
          "Make every clone of the view model unfaithful: <kind:target>, kind one of drop-child, add-child,\n"
          "share-child, repeat-child, change-type, flip-visibility, change-property, drop-geometry-entry;\n"
          "target an item's display name\n"
          "(the first in pre-order). A defect that names no item or cannot apply to it\n"
          "is refused (exit status 2). May be given more than once.",
          "kind:target"))
    , open(valueOption("open",
                       "Open a dialog at start, as the Debug menu does: display-model, clone-comparison or\n"
                       "display-model-2d. May be given more than once.",
                       "name"))
    , screenshot(
          valueOption("screenshot", "Render the main window and the open dialogs to the PNG <file> and exit.", "file"))
    , lang(valueOption("lang", "Show the texts in the language <code> (for example de); English without.", "code"))
    , settings(valueOption(
          "settings", "Keep the window placement in the settings <file> instead of the user's own settings.", "file"))
{
    parser.setApplicationDescription(
        QStringLiteral("Reference host application: a sample part and process shown as a live display model,\n"
                       "with the debug dialogs in its Debug menu."));
    for (const QCommandLineOption& option : valueOptions())
        parser.addOption(option);
}

QList<QCommandLineOption> CommandLineOptions::valueOptions() const
{
    return {model, scene, saveModel, generate, cloneDefect, open, screenshot, lang, settings};
}

std::optional<int> answerHelpOrVersion(int& argc, char** argv)
{
    const QCoreApplication console(argc, argv);
    setApplicationNames();
    CommandLineOptions options;
    // Options of Qt's GUI (-platform, -style) are unknown here: with them the
    // parse fails, and help or version is still answered.
    const bool parsed = options.parser.parse(QCoreApplication::arguments());
    const bool helpAll = options.parser.isSet(QStringLiteral("help-all"));
    if (!options.parser.isSet(options.help) && !helpAll && !options.parser.isSet(options.version))
        return std::nullopt;
    if (parsed)
        options.parser.process(console); // writes the text and ends the process
    if (options.parser.isSet(options.version))
        options.parser.showVersion();
    options.parser.showHelp(0);
}

void setApplicationNames()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Brennvik"));
    QCoreApplication::setApplicationName(QStringLiteral("brennvik-referenceapp"));
    QCoreApplication::setApplicationVersion(QStringLiteral("0.1"));
}

} // namespace Brennvik
