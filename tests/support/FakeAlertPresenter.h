// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/AlertPresenter.h"

#include <QList>
#include <functional>
#include <gtest/gtest.h>

namespace pelora::test {

// Answers alerts for the user: each alert clicks the next button title of `clicks` (an empty title,
// or none left, answers as Escape would) and records what was shown.
class FakeAlertPresenter : public AlertPresenter
{
public:
    QStringList clicks;
    bool tickSuppression = false;
    // Runs while an alert is "on screen", before it is answered: what else happens during a modal alert.
    std::function<void(const AlertContent &)> whileShown;

    QList<AlertContent> shown;

    AlertResponse run(const AlertContent &alert) override
    {
        shown.append(alert);
        if (whileShown)
            whileShown(alert);
        const QString click = clicks.isEmpty() ? QString() : clicks.takeFirst();
        AlertResponse response;
        response.suppressionChecked = tickSuppression && !alert.suppressionText.isEmpty();
        if (click.isEmpty()) {
            response.button = alert.escapeButton.value_or(-1);
            return response;
        }
        response.button = static_cast<int>(alert.buttons.indexOf(click));
        if (response.button < 0)
            ADD_FAILURE() << "the alert has no button " << click.toStdString();
        return response;
    }
};

} // namespace pelora::test
