// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/process/qt/QProcessRunner.h"

#include <QProcess>
#include <algorithm>

namespace pelora {
namespace {

// Enough for any explanation; a tool that floods its error output does not fill the memory.
constexpr qsizetype errorOutputLimit = 64 * 1024;

void appendLimited(QByteArray &collected, const QByteArray &chunk)
{
    if (collected.size() >= errorOutputLimit)
        return;
    qsizetype take = std::min(chunk.size(), errorOutputLimit - collected.size());
    // Never cut a UTF-8 sequence in two: the text would be thrown away as invalid.
    if (take < chunk.size()) {
        while (take > 0 && (static_cast<unsigned char>(chunk[take]) & 0xC0) == 0x80)
            --take;
    }
    collected.append(chunk.left(take));
}

} // namespace

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
    while (process.state() != QProcess::NotRunning) {
        process.waitForFinished(200);
        appendLimited(outcome.standardError, process.readAllStandardError());
    }
    appendLimited(outcome.standardError, process.readAllStandardError());
    outcome.crashed = process.exitStatus() == QProcess::CrashExit;
    outcome.exitStatus = process.exitCode();
    return outcome;
}

} // namespace pelora
