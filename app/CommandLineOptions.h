#pragma once

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QList>

#include <optional>

namespace Brennvik {

/// The reference application's command line: its options, and the parser
/// that knows them.
struct CommandLineOptions
{
    CommandLineOptions();

    QCommandLineParser parser;
    QCommandLineOption help;
    QCommandLineOption version;
    QCommandLineOption model;
    QCommandLineOption scene;
    QCommandLineOption saveModel;
    QCommandLineOption generate;
    QCommandLineOption cloneDefect;
    QCommandLineOption open;
    QCommandLineOption screenshot;
    QCommandLineOption lang;
    QCommandLineOption settings;

    /// Every option that takes a value: one of them may swallow the next argument.
    QList<QCommandLineOption> valueOptions() const;
};

/// Answers --help and --version as a console program does, before any
/// window system is asked for: they must work without a display. The exit
/// status when one of them was given (the text is then written), else none.
std::optional<int> answerHelpOrVersion(int& argc, char** argv);

/// Names the application for messages, --version and its settings.
void setApplicationNames();

} // namespace Brennvik
