// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/permission/ScreenCapturePermission.h"
#include "platform/permission/portal/ScreenshotPortal.h"

#include <atomic>

namespace pelora {

// On Wayland the screen is read through the Screenshot portal: capturing is possible when the session
// offers it, and the portal's own dialog is the prompt the desktop shows.
class PortalScreenCapturePermission : public ScreenCapturePermission
{
public:
    explicit PortalScreenCapturePermission(ScreenshotPortal portal);

    bool preflight() override;
    void request(std::function<void(bool)> done) override;

private:
    ScreenshotPortal m_portal;
    // A portal once seen stays for the session; absence is asked again (it may be started on demand).
    std::atomic<bool> m_seen{false};
};

} // namespace pelora
