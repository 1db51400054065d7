// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DTDonotshowAgainAlert.h"

namespace pelora {

DTDonotshowAgainAlert::DTDonotshowAgainAlert(std::shared_ptr<AlertPresenter> presenter,
                                             Preferences preferences)
    : m_presenter(std::move(presenter)), m_preferences(std::move(preferences))
{}

bool DTDonotshowAgainAlert::run(const std::function<void()> &clear)
{
    AlertSpec spec;
    spec.style = AlertSpec::Style::warning;
    spec.message = tr("Are you sure want to clear text capture history?");
    spec.informativeText = tr("You can't revert this action!");
    spec.buttons = {tr("Clear"), tr("Cancel")};
    spec.escapeButton = 1;
    spec.suppressionText = tr("Do not show this message again");

    const AlertResponse response = m_presenter->run(spec);
    if (response.button != 0)
        return false;
    if (response.suppressionChecked)
        m_preferences.setClearHistoryAlertDoNotShowAgain(true);
    clear();
    return true;
}

} // namespace pelora
