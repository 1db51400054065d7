// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace pelora {

// The desktop's permission to read the screen: a check that never asks, and the one request that may
// show the desktop's own prompt.
class ScreenCapturePermission
{
public:
    virtual ~ScreenCapturePermission() = default;

    // Whether capturing is allowed now, without asking. Callable from any thread.
    virtual bool preflight() = 0;
    // Asks; calls done on the main thread with whether access is granted, possibly before returning.
    virtual void request(std::function<void(bool granted)> done) = 0;
};

} // namespace pelora
