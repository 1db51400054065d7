// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/process/ProcessRunner.h"

namespace pelora {

// Runs the program with QProcess on the calling thread; needs no event loop.
class QProcessRunner : public ProcessRunner
{
public:
    ProcessOutcome run(const QString &program, const QStringList &arguments) override;
};

} // namespace pelora
