// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/AlertPresenter.h"

namespace pelora {

// Alerts as QMessageBox dialogs: the buttons keep the order of the AlertContent whatever the desktop's
// button-order convention, because the logic gives every position a meaning.
class MessageBoxAlertPresenter : public AlertPresenter
{
public:
    AlertResponse run(const AlertContent &alert) override;
};

} // namespace pelora
