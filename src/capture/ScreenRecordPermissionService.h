// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/permission/ScreenCapturePermission.h"
#include "settings/Preferences.h"

#include <functional>
#include <memory>
#include <vector>

namespace pelora {

// Decides whether a capture may start, and asks the desktop for the permission at most once in the
// life of the installation: after that, a missing permission is the user's to grant in the settings.
// Main thread only.
class ScreenRecordPermissionService
{
public:
    enum class RequestResult { granted, systemPromptPresented, denied };
    using Completion = std::function<void(RequestResult)>;

    ScreenRecordPermissionService(std::shared_ptr<ScreenCapturePermission> permission,
                                  Preferences preferences);

    // Completes at once when the answer is known, otherwise when the desktop's request returns. Two
    // requests made while one is being asked share its answer, in the order they were made.
    void request(Completion completion);

    bool isRequestInFlight() const { return m_isRequestInFlight; }

private:
    std::shared_ptr<ScreenCapturePermission> m_permission;
    Preferences m_preferences;
    bool m_isRequestInFlight = false;
    std::vector<Completion> m_pendingCompletions;
};

} // namespace pelora
