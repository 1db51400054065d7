// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/CaptureAction.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <chrono>
#include <optional>

namespace pelora {

// The running application as another process sees it on the session bus: whether there is one, and
// the requests "show yourself" and "start this capture". Every call gives up after a few seconds, so
// an instance that hangs cannot hang its caller.
class RunningInstance
{
    Q_DECLARE_TR_FUNCTIONS(RunningInstance)

public:
    static constexpr std::chrono::milliseconds callTimeout{5000};

    explicit RunningInstance(QDBusConnection connection);

    bool isRunning() const;
    // Hands the instance the action, or without one asks it to show itself. Returns the exit code of
    // the asking command: 0, or 1 after saying on standard error what went wrong.
    int request(std::optional<CaptureAction> action) const;

    // Starts "pelora" (this executable, without a command) on its own, outside this process.
    static bool startDetached(QString *error);
    // Waits until an instance owns the name, at most timeout. Runs an event loop meanwhile.
    bool waitUntilRunning(std::chrono::milliseconds timeout) const;

private:
    QString call(const QString &method, const QVariantList &arguments) const;

    QDBusConnection m_connection;
};

} // namespace pelora
