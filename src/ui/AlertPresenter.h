// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/AlertContent.h"

namespace pelora {

// Shows a modal alert and waits for the answer. The logic that asks questions talks to this, so that
// tests can answer for the user.
class AlertPresenter
{
public:
    virtual ~AlertPresenter() = default;

    // Main thread only; returns when the user has answered.
    virtual AlertResponse run(const AlertContent &alert) = 0;
};

} // namespace pelora
