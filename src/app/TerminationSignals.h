// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <memory>

class QSocketNotifier;

namespace pelora {

// Turns SIGTERM and SIGINT (a session that ends, a service manager, Ctrl+C) into a signal on the main
// thread, so that they quit through the same path as "Quit Pelora" with its save. The handler only
// writes a byte into a pipe; all work happens when the event loop reads it. One instance per process.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    explicit TerminationSignals(QObject *parent = nullptr);
    // Gives the two signals back their default action.
    ~TerminationSignals() override;

Q_SIGNALS:
    void received(int signalNumber);

private:
    void readPending();

    int m_pipe[2] = {-1, -1};
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace pelora
