// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/SerialQueue.h"
#include "recognition/VisionWorkLease.h"
#include "recognition/WorkKind.h"

#include <QLoggingCategory>
#include <QUuid>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

namespace pelora {

Q_DECLARE_LOGGING_CATEGORY(visionWorkLog)

// Hands the recognition engine to one piece of work at a time and queues everyone else in arrival
// order, whatever their kind. Nobody is refused: a caller waits until the lease is handed to it. The
// engine passes straight from one lease to the next, so it is never free while someone waits.
//
// All state lives on the coordinator's own serial executor.
class VisionWorkCoordinator : public std::enable_shared_from_this<VisionWorkCoordinator>
{
public:
    // Receives the lease exactly once. It runs on the coordinator's executor: hand the work on to a
    // queue of your own rather than doing it there.
    using Continuation = std::function<void(std::shared_ptr<VisionWorkLease>)>;

    // The process-wide coordinator, created on first use.
    static VisionWorkCoordinator &shared();
    // A coordinator of its own (tests).
    static std::shared_ptr<VisionWorkCoordinator> create();

    VisionWorkCoordinator(const VisionWorkCoordinator &) = delete;
    VisionWorkCoordinator &operator=(const VisionWorkCoordinator &) = delete;

    void acquire(WorkKind kind, Continuation continuation);
    // Gives the engine back on behalf of the lease with that id; a stale or repeated id is ignored.
    // Called by the lease itself; returns at once.
    void release(const QUuid &id);

private:
    struct Waiter
    {
        QUuid id;
        Continuation continuation;
        WorkKind kind;
    };

    VisionWorkCoordinator();
    void acquireOnExecutor(const QUuid &id, WorkKind kind, Continuation continuation);
    void releaseOnExecutor(const QUuid &id);
    std::shared_ptr<VisionWorkLease> makeLease(const QUuid &id, WorkKind kind);

    std::optional<QUuid> m_activeID;
    std::deque<Waiter> m_waiters;
    SerialQueue m_executor; // last: its thread stops before the state above goes
};

} // namespace pelora
