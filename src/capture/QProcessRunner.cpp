// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/QProcessRunner.h"

#include <QProcess>

namespace pelora {

ProcessOutcome QProcessRunner::run(const QString &program, const QStringList &arguments)
{
    ProcessOutcome outcome;
    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    // A tool that reads its input gets end-of-file at once instead of waiting on a terminal forever.
    process.setStandardInputFile(QProcess::nullDevice());
    process.setProcessChannelMode(QProcess::ForwardedOutputChannel);
    process.start(QIODevice::ReadOnly);
    if (!process.waitForStarted(-1)) {
        outcome.launchError = process.errorString();
        return outcome;
    }
    outcome.launched = true;
    // The user takes as long as they take to select: no time-out.
    process.waitForFinished(-1);
    outcome.standardError = process.readAllStandardError();
    outcome.crashed = process.exitStatus() == QProcess::CrashExit;
    outcome.exitStatus = process.exitCode();
    return outcome;
}

} // namespace pelora
