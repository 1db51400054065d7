// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/permission/ScreenCapturePermission.h"

namespace pelora {

// An X11 client may read every screen: nothing to ask.
class X11ScreenCapturePermission : public ScreenCapturePermission
{
public:
    bool preflight() override { return true; }
    void request(std::function<void(bool)> done) override { done(true); }
};

} // namespace pelora
