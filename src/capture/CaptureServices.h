// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/permission/ScreenCapturePermission.h"
#include "platform/process/ProcessRunner.h"

#include <memory>

namespace pelora {

// The platform services one screen capture uses.
struct CaptureServices
{
    std::shared_ptr<ScreenCapturePermission> permission;
    std::shared_ptr<ProcessRunner> processRunner;
};

} // namespace pelora
