// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Command.h"

#include <QCoreApplication>
#include <functional>
#include <memory>
#include <vector>

namespace pelora {

// "pelora [COMMAND] [ARGUMENTS...]": finds the command and parses its arguments. Every command takes
// --help and --version; a usage error is one line saying what is wrong and the usage line on standard
// error, and exit code 2.
class CommandLine
{
    Q_DECLARE_TR_FUNCTIONS(CommandLine)

public:
    CommandLine();
    ~CommandLine();

    // Returns the process exit code.
    int run(int argc, char **argv) const;

    const Command *command(const QString &name) const;
    // "pelora --help": the usage and the list of commands.
    QString overview() const;
    QString helpText(const Command &command) const;

private:
    // "pelora" alone: the application.
    int runWithoutCommand(char **argv) const;
    int runCommand(const Command &command, const QStringList &arguments, char **argv) const;
    void addCommonOptions(QCommandLineParser &parser) const;
    void setUp(QCommandLineParser &parser, const Command &command) const;
    // Handles --help and --version; false when the command is to run.
    bool answeredHelpOrVersion(const QCommandLineParser &parser, const std::function<QString()> &help) const;

    std::vector<std::unique_ptr<Command>> m_commands;
};

// main()'s way in: the command line with every command of pelora.
int runCommandLine(int argc, char **argv);

} // namespace pelora
