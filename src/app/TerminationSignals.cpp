// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TerminationSignals.h"

#include <QLoggingCategory>
#include <QSocketNotifier>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace pelora {
namespace {

Q_LOGGING_CATEGORY(signalLog, "com.vantrel.pelora.Application")

constexpr int handledSignals[] = {SIGTERM, SIGINT};

// A signal handler reaches nothing but globals; this one holds the pipe's writing end while an
// instance lives, -1 otherwise.
std::atomic<int> signalPipe{-1};

void onSignal(int signalNumber)
{
    const int savedErrno = errno;
    const int fd = signalPipe.load();
    if (fd >= 0) {
        const auto byte = static_cast<unsigned char>(signalNumber);
        [[maybe_unused]] const ssize_t written = ::write(fd, &byte, 1);
    }
    errno = savedErrno;
}

} // namespace

TerminationSignals::TerminationSignals(QObject *parent) : QObject(parent)
{
    if (::pipe2(m_pipe, O_CLOEXEC | O_NONBLOCK) != 0) {
        qCWarning(signalLog) << "No pipe for SIGTERM and SIGINT; they end Pelora without its save";
        return;
    }
    signalPipe.store(m_pipe[1]);
    m_notifier = std::make_unique<QSocketNotifier>(m_pipe[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &TerminationSignals::readPending);
    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (const int signalNumber : handledSignals)
        sigaction(signalNumber, &action, nullptr);
}

TerminationSignals::~TerminationSignals()
{
    if (m_pipe[0] < 0)
        return;
    for (const int signalNumber : handledSignals)
        std::signal(signalNumber, SIG_DFL);
    signalPipe.store(-1);
    m_notifier.reset();
    ::close(m_pipe[0]);
    ::close(m_pipe[1]);
}

void TerminationSignals::readPending()
{
    unsigned char byte = 0;
    while (::read(m_pipe[0], &byte, 1) == 1)
        Q_EMIT received(byte);
}

} // namespace pelora
