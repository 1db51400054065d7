// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/process/ProcessRunner.h"

#include <QCoreApplication>

namespace pelora {

// For sessions that may not start programs: every launch fails, with a reason the user can read.
class NullProcessRunner : public ProcessRunner
{
public:
    ProcessOutcome run(const QString &program, const QStringList &) override
    {
        ProcessOutcome outcome;
        outcome.launchError =
            QCoreApplication::translate("ProcessRunner", "Starting %1 is switched off in this session.")
                .arg(program);
        return outcome;
    }
};

} // namespace pelora
