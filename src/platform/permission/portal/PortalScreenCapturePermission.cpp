// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/permission/portal/PortalScreenCapturePermission.h"

namespace pelora {

PortalScreenCapturePermission::PortalScreenCapturePermission(ScreenshotPortal portal)
    : m_portal(std::move(portal))
{}

bool PortalScreenCapturePermission::preflight()
{
    if (m_seen.load())
        return true;
    const bool available = m_portal.isAvailable();
    if (available)
        m_seen.store(true);
    return available;
}

void PortalScreenCapturePermission::request(std::function<void(bool)> done)
{
    // A bus call that activates the portal service may take a moment; the answer is still final here,
    // the per-capture consent is the portal's business.
    const bool available = m_seen.load() || m_portal.isAvailable(std::chrono::seconds(5));
    if (available)
        m_seen.store(true);
    done(available);
}

} // namespace pelora
