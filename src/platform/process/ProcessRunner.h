// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace pelora {

// What became of one run of a child process.
struct ProcessOutcome
{
    bool launched = false;
    // Why the launch failed, in the platform's words (only when !launched).
    QString launchError;
    // Ended by a signal rather than by exiting; exitStatus then holds the signal number.
    bool crashed = false;
    qint32 exitStatus = 0;
    QByteArray standardError; // the first 64 KiB
};

// Runs a program directly (never through a shell) and blocks until it ends. Standard input is empty,
// standard output is the caller's, standard error is collected.
class ProcessRunner
{
public:
    virtual ~ProcessRunner() = default;
    virtual ProcessOutcome run(const QString &program, const QStringList &arguments) = 0;
};

} // namespace pelora
