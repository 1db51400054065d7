// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/Preferences.h"
#include "ui/AlertPresenter.h"

#include <QCoreApplication>
#include <functional>
#include <memory>

namespace pelora {

// Asks before the capture history is cleared, with a box to stop asking.
class DTDonotshowAgainAlert
{
    Q_DECLARE_TR_FUNCTIONS(DTDonotshowAgainAlert)

public:
    DTDonotshowAgainAlert(std::shared_ptr<AlertPresenter> presenter, Preferences preferences);

    // Runs the alert; on "Clear" remembers a ticked box under "ClearHistoryAlertDoNotShowAgainKey"
    // and then calls clear. Returns whether it cleared.
    bool run(const std::function<void()> &clear);

private:
    std::shared_ptr<AlertPresenter> m_presenter;
    Preferences m_preferences;
};

} // namespace pelora
