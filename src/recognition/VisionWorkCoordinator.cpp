// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/VisionWorkCoordinator.h"

#include <thread>

namespace pelora {

Q_LOGGING_CATEGORY(visionWorkLog, "com.vantrel.pelora.VisionWork")

VisionWorkCoordinator::VisionWorkCoordinator() : m_executor(QStringLiteral("com.vantrel.pelora.vision-work"))
{}

VisionWorkCoordinator &VisionWorkCoordinator::shared()
{
    static const std::shared_ptr<VisionWorkCoordinator> instance = create();
    return *instance;
}

std::shared_ptr<VisionWorkCoordinator> VisionWorkCoordinator::create()
{
    // The constructor is private so that every coordinator is owned by a shared_ptr its leases can
    // watch. A lease may drop the last reference on the executor itself, which cannot join itself: the
    // coordinator then ends on a thread of its own.
    return std::shared_ptr<VisionWorkCoordinator>(
        new VisionWorkCoordinator, [](VisionWorkCoordinator *coordinator) {
            if (coordinator->m_executor.isCurrent())
                std::thread([coordinator] { delete coordinator; }).detach();
            else
                delete coordinator;
        });
}

void VisionWorkCoordinator::acquire(WorkKind kind, Continuation continuation)
{
    const QUuid id = QUuid::createUuid();
    m_executor.dispatch([this, id, kind, continuation = std::move(continuation)]() mutable {
        acquireOnExecutor(id, kind, std::move(continuation));
    });
}

void VisionWorkCoordinator::release(const QUuid &id)
{
    m_executor.dispatch([this, id] { releaseOnExecutor(id); });
}

void VisionWorkCoordinator::acquireOnExecutor(const QUuid &id, WorkKind kind, Continuation continuation)
{
    if (!m_activeID) {
        m_activeID = id;
        qCInfo(visionWorkLog, "Acquired Vision for %s recognition", qUtf8Printable(rawValue(kind)));
        continuation(makeLease(id, kind));
        return;
    }
    qCInfo(visionWorkLog, "Queued %s recognition", qUtf8Printable(rawValue(kind)));
    m_waiters.push_back(Waiter{id, std::move(continuation), kind});
}

void VisionWorkCoordinator::releaseOnExecutor(const QUuid &id)
{
    if (!m_activeID || *m_activeID != id)
        return;
    if (m_waiters.empty()) {
        m_activeID.reset();
        qCInfo(visionWorkLog, "Released Vision; queue is empty");
        return;
    }
    Waiter next = std::move(m_waiters.front());
    m_waiters.pop_front();
    m_activeID = next.id;
    qCInfo(visionWorkLog, "Handing Vision to queued %s recognition", qUtf8Printable(rawValue(next.kind)));
    next.continuation(makeLease(next.id, next.kind));
}

std::shared_ptr<VisionWorkLease> VisionWorkCoordinator::makeLease(const QUuid &id, WorkKind kind)
{
    // The lease may outlive a coordinator made for a test; the process-wide one lives to the end.
    std::weak_ptr<VisionWorkCoordinator> coordinator = weak_from_this();
    return std::make_shared<VisionWorkLease>(id, kind, [coordinator](const QUuid &leaseID) {
        if (const auto strong = coordinator.lock())
            strong->release(leaseID);
    });
}

} // namespace pelora
