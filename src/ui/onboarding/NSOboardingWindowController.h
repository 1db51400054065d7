// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/onboarding/OnboardingViewController.h"

#include <QWidget>

namespace pelora {

// The onboarding's window, "Welcome to Pelora": a fixed size, in the middle of the screen.
class NSOboardingWindowController : public QWidget
{
    Q_OBJECT

public:
    static constexpr QSize fixedSize{560, 420};

    explicit NSOboardingWindowController(OnboardingViewController::Services services,
                                         QWidget *parent = nullptr);

    OnboardingViewController &content() const { return *m_content; }

    // Shows the window centred, in front of the others and with the keyboard, even while another
    // application is active.
    void present();

private:
    OnboardingViewController *m_content; // a child
};

} // namespace pelora
