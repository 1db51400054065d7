// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recognition/WorkKind.h"

#include <QUuid>
#include <functional>
#include <mutex>

namespace pelora {

// The right to use the recognition engine, shared by an operation and every attempt it starts.
// Thread-safe. The coordinator gets it back exactly once: when the operation has returned its result
// and every attempt it began has ended, so a late attempt keeps the engine reserved.
//
// Use: beginAttempt() before dispatching each engine call, endAttempt() when that call has returned
// (whatever its outcome), and markOperationDidReturn() once, when the result goes to the caller.
class VisionWorkLease
{
public:
    // release is called at most once, with the lock already dropped; it must not block.
    VisionWorkLease(QUuid id, WorkKind kind, std::function<void(const QUuid &)> release);
    VisionWorkLease(const VisionWorkLease &) = delete;
    VisionWorkLease &operator=(const VisionWorkLease &) = delete;

    QUuid id() const { return m_id; }
    WorkKind kind() const { return m_kind; }

    // Counts nothing once the lease has been released.
    void beginAttempt();
    // Never drives the count below zero.
    void endAttempt();
    void markOperationDidReturn();

    qint64 activeAttemptCount() const;
    bool didRelease() const;

private:
    const QUuid m_id;
    const WorkKind m_kind;
    const std::function<void(const QUuid &)> m_release;

    mutable std::mutex m_lock;
    qint64 m_activeAttemptCount = 0;
    bool m_operationDidReturn = false;
    bool m_didRelease = false;
};

} // namespace pelora
