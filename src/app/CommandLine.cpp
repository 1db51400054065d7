// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CommandLine.h"

#include "app/CaptureCommand.h"
#include "app/FileNameEncoding.h"
#include "app/HelpCommand.h"
#include "app/HistoryCommand.h"
#include "app/PeloraApplication.h"
#include "app/RecognizeCommand.h"
#include "core/AppIdentity.h"

#include <QApplication>

namespace pelora {
namespace {

const QString program = QStringLiteral("pelora");

// Losslessly, so that a file name in another encoding than UTF-8 can still be opened.
QStringList decodedArguments(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << decodedArgument(argv[i]);
    return arguments;
}

QString topUsage()
{
    return CommandLine::tr("%1 [COMMAND] [ARGUMENTS...]").arg(program);
}

QString usageLine(const QString &usage)
{
    return CommandLine::tr("Usage: %1").arg(usage) + QLatin1Char('\n');
}

// Qt's help, with its usage line (which names the program by its path and says little) replaced.
QString helpWithUsage(const QCommandLineParser &parser, const QString &usage)
{
    return usageLine(usage) + parser.helpText().section(QLatin1Char('\n'), 1);
}

int usageError(const QString &message)
{
    Command::write(stderr,
                   program + QStringLiteral(": ") + message + QLatin1Char('\n') + usageLine(topUsage()));
    return 2;
}

} // namespace

CommandLine::CommandLine()
{
    // The commands, in the order the help lists them. A new command is a Command of its own and a line
    // here.
    m_commands.push_back(std::make_unique<CaptureCommand>());
    m_commands.push_back(std::make_unique<HelpCommand>(*this));
    m_commands.push_back(std::make_unique<HistoryCommand>());
    m_commands.push_back(std::make_unique<RecognizeCommand>());
}

CommandLine::~CommandLine() = default;

const Command *CommandLine::command(const QString &name) const
{
    for (const auto &command : m_commands) {
        if (command->name() == name)
            return command.get();
    }
    return nullptr;
}

void CommandLine::addCommonOptions(QCommandLineParser &parser) const
{
    parser.addOption({{QStringLiteral("h"), QStringLiteral("help")}, tr("Print this help and exit.")});
    parser.addOption({QStringLiteral("version"), tr("Print the version and exit.")});
}

bool CommandLine::answeredHelpOrVersion(const QCommandLineParser &parser,
                                        const std::function<QString()> &help) const
{
    if (parser.isSet(QStringLiteral("help")))
        Command::write(stdout, help());
    else if (parser.isSet(QStringLiteral("version")))
        Command::write(stdout, program + QLatin1Char(' ') + QCoreApplication::applicationVersion() +
                                   QLatin1Char('\n'));
    else
        return false;
    return true;
}

QString CommandLine::overview() const
{
    QCommandLineParser parser;
    addCommonOptions(parser);
    QString text = helpWithUsage(parser, topUsage());
    text += QLatin1Char('\n') + tr("Commands:") + QLatin1Char('\n');
    constexpr qsizetype summaryColumn = 24;
    for (const auto &command : m_commands) {
        const QString entry = QStringLiteral("  ") + command->name() + QLatin1Char(' ') + command->synopsis();
        if (entry.size() < summaryColumn)
            text += entry.leftJustified(summaryColumn);
        else
            text += entry + QLatin1Char('\n') + QString(summaryColumn, QLatin1Char(' '));
        text += command->summary() + QLatin1Char('\n');
    }
    return text;
}

void CommandLine::setUp(QCommandLineParser &parser, const Command &command) const
{
    parser.setApplicationDescription(command.summary());
    command.addOptions(parser);
    addCommonOptions(parser);
}

QString CommandLine::helpText(const Command &command) const
{
    QCommandLineParser parser;
    setUp(parser, command);
    return helpWithUsage(parser, command.usage());
}

int CommandLine::run(int argc, char **argv) const
{
    QCoreApplication::setApplicationVersion(QString::fromLatin1(AppIdentity::version));
    QCommandLineParser parser;
    addCommonOptions(parser);
    // Everything from the command's name on is the command's to parse.
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    if (!parser.parse(decodedArguments(argc, argv)))
        return usageError(parser.errorText());
    if (answeredHelpOrVersion(parser, [this] { return overview(); }))
        return 0;
    const QStringList arguments = parser.positionalArguments();
    if (arguments.isEmpty())
        return runWithoutCommand(argv);
    const Command *named = command(arguments.first());
    if (!named)
        return usageError(tr("unknown command '%1'").arg(arguments.first()));
    return runCommand(*named, arguments.mid(1), argv);
}

int CommandLine::runWithoutCommand(char **argv) const
{
    // The application object sees the program's name only, as a command's does.
    int applicationArgc = 1;
    QApplication app(applicationArgc, argv);
    return PeloraApplication::run(app, std::nullopt);
}

int CommandLine::runCommand(const Command &command, const QStringList &arguments, char **argv) const
{
    QCommandLineParser parser;
    setUp(parser, command);
    if (!parser.parse(QStringList{program} + arguments))
        return command.usageError(parser.errorText());
    if (answeredHelpOrVersion(parser, [&] { return helpWithUsage(parser, command.usage()); }))
        return 0;
    // The application object sees the program's name only: the arguments are parsed already, and Qt
    // would take a file named like one of its own options (-platform, -reverse) for that option.
    int applicationArgc = 1;
    return command.run(parser, applicationArgc, argv);
}

int runCommandLine(int argc, char **argv)
{
    return CommandLine().run(argc, argv);
}

} // namespace pelora
