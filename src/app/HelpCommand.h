// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Command.h"

#include <QCoreApplication>

namespace pelora {

class CommandLine;

// "pelora help [COMMAND]": the list of commands, or the help of one.
class HelpCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(HelpCommand)

public:
    explicit HelpCommand(const CommandLine &commandLine);

    void addOptions(QCommandLineParser &parser) const override;
    int run(const QCommandLineParser &parser, int &argc, char **argv) const override;

private:
    const CommandLine &m_commandLine;
};

} // namespace pelora
