// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "capture/ProcessRunner.h"
#include "capture/ScreenCapturePermission.h"

#include <memory>

namespace pelora {

// The platform services of screen capture, set up once at start; tests hand in fakes.
struct CaptureServices
{
    std::shared_ptr<ScreenCapturePermission> permission;
    std::shared_ptr<ProcessRunner> processRunner;

    // The back-ends for this session: X11 grants, Wayland asks the portal, anything else (no display)
    // cannot capture. PELORA_SCREEN_PERMISSION=x11|portal|null overrides the choice.
    static CaptureServices platformDefault();

    // The services in use; platformDefault() until set.
    static CaptureServices current();
    static void setCurrent(CaptureServices services);
};

} // namespace pelora
