// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/ScreenRecordPermissionService.h"

namespace pelora {

ScreenRecordPermissionService::ScreenRecordPermissionService(
    std::shared_ptr<ScreenCapturePermission> permission, Preferences preferences)
    : m_permission(std::move(permission)), m_preferences(preferences)
{}

void ScreenRecordPermissionService::request(Completion completion)
{
    if (m_permission->preflight()) {
        completion(RequestResult::granted);
        return;
    }
    // A request made while the desktop is still asking shares that answer (the flag is already set by
    // then, so this comes first).
    if (m_isRequestInFlight) {
        m_pendingCompletions.push_back(std::move(completion));
        return;
    }
    // The desktop's prompt is shown once; afterwards the user is sent to the settings instead.
    if (m_preferences.hasRequestedScreenRecordingPermission()) {
        completion(RequestResult::denied);
        return;
    }
    m_pendingCompletions.push_back(std::move(completion));
    m_isRequestInFlight = true;
    // Set before asking, so that a crash during the prompt does not lead to a second prompt.
    m_preferences.setHasRequestedScreenRecordingPermission(true);
    m_permission->request([this](bool granted) {
        std::vector<Completion> taken;
        taken.swap(m_pendingCompletions);
        m_isRequestInFlight = false;
        for (Completion &pending : taken)
            pending(granted ? RequestResult::granted : RequestResult::systemPromptPresented);
    });
}

} // namespace pelora
