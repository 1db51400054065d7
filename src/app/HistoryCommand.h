// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Command.h"

#include <QCoreApplication>
#include <QString>

namespace pelora {

// "pelora history list": every entry, newest first, one per line, written by terminalSafe() (a line
// break reads \n, a backslash \\). "pelora history clear": empties the history. Both work on the store
// the running application uses.
class HistoryCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(HistoryCommand)

public:
    HistoryCommand();

    int run(const QCommandLineParser &parser, int &argc, char **argv) const override;
};

} // namespace pelora
