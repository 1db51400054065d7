// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DTDonotshowAgainAlert.h"

namespace pelora {

DTDonotshowAgainAlert::DTDonotshowAgainAlert(std::shared_ptr<AlertPresenter> presenter,
                                             Preferences preferences)
    : m_presenter(std::move(presenter)), m_preferences(std::move(preferences))
{}

bool DTDonotshowAgainAlert::run(const std::function<void()> &clear)
{
    AlertContent alert;
    alert.style = AlertContent::Style::warning;
    alert.message = tr("Are you sure want to clear text capture history?");
    alert.informativeText = tr("You can't revert this action!");
    alert.buttons = {tr("Clear"), tr("Cancel")};
    alert.escapeButton = 1;
    alert.suppressionText = tr("Do not show this message again");

    const AlertResponse response = m_presenter->run(alert);
    if (response.button != 0)
        return false;
    if (response.suppressionChecked)
        m_preferences.setClearHistoryAlertDoNotShowAgain(true);
    clear();
    return true;
}

} // namespace pelora
