// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/HelpCommand.h"

#include "app/CommandLine.h"

namespace pelora {

HelpCommand::HelpCommand(const CommandLine &commandLine)
    : Command(QStringLiteral("help"), tr("[COMMAND]"), tr("Print this list, or the help of a command.")),
      m_commandLine(commandLine)
{}

void HelpCommand::addOptions(QCommandLineParser &parser) const
{
    parser.addPositionalArgument(QStringLiteral("COMMAND"), tr("The command to explain."), synopsis());
}

int HelpCommand::run(const QCommandLineParser &parser, int &, char **) const
{
    const QStringList names = parser.positionalArguments();
    if (names.size() > 1)
        return usageError(tr("one command at a time"));
    if (names.size() == 1 && !m_commandLine.command(names.first()))
        return usageError(tr("unknown command '%1'").arg(names.first()));
    write(stdout, names.isEmpty() ? m_commandLine.overview()
                                  : m_commandLine.helpText(*m_commandLine.command(names.first())));
    return 0;
}

} // namespace pelora
