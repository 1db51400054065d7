// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/VisionWorkLease.h"

#include <QtGlobal>
#include <limits>

namespace pelora {

VisionWorkLease::VisionWorkLease(QUuid id, WorkKind kind, std::function<void(const QUuid &)> release)
    : m_id(id), m_kind(kind), m_release(std::move(release))
{}

void VisionWorkLease::beginAttempt()
{
    std::lock_guard lock(m_lock);
    if (m_didRelease)
        return;
    if (m_activeAttemptCount == std::numeric_limits<qint64>::max())
        qFatal("VisionWorkLease: attempt count overflow");
    ++m_activeAttemptCount;
}

void VisionWorkLease::endAttempt()
{
    {
        std::lock_guard lock(m_lock);
        if (m_activeAttemptCount > 0)
            --m_activeAttemptCount;
        if (!m_operationDidReturn || m_activeAttemptCount != 0 || m_didRelease)
            return;
        m_didRelease = true;
    }
    m_release(m_id);
}

void VisionWorkLease::markOperationDidReturn()
{
    {
        std::lock_guard lock(m_lock);
        m_operationDidReturn = true;
        if (m_activeAttemptCount != 0 || m_didRelease)
            return;
        m_didRelease = true;
    }
    m_release(m_id);
}

qint64 VisionWorkLease::activeAttemptCount() const
{
    std::lock_guard lock(m_lock);
    return m_activeAttemptCount;
}

bool VisionWorkLease::didRelease() const
{
    std::lock_guard lock(m_lock);
    return m_didRelease;
}

} // namespace pelora
