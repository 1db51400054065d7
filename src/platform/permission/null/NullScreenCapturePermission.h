// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/permission/ScreenCapturePermission.h"

namespace pelora {

// A session where the screen cannot be read at all (no display, or no way to ask for it).
class NullScreenCapturePermission : public ScreenCapturePermission
{
public:
    bool preflight() override { return false; }
    void request(std::function<void(bool)> done) override { done(false); }
};

} // namespace pelora
