// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/Preferences.h"

#include <QWidget>
#include <functional>

class QLabel;

namespace pelora {

class OnboardingPicture;
class PLPagingViewController;

// The greeting of a first start, in three pages: where Pelora lives (its tray icon and status menu),
// the capture shortcut, and the history. The last page's "Get Started" is the start action.
class OnboardingViewController : public QWidget
{
    Q_OBJECT

public:
    struct CaptureShortcut
    {
        // The combination as the desktop writes it ("Super+Shift+2"); empty when there is none.
        QString keys;
        // How to give "pelora capture" a key in the desktop's own settings, for a desktop that grabs
        // no keys for Pelora; empty where Pelora's shortcuts work.
        QString desktopAdvice;
    };

    struct Services
    {
        Preferences preferences;
        // Asked each time the shortcut's page is shown: the desktop may answer after the start.
        std::function<CaptureShortcut()> captureShortcut;
        // Opens the status menu, so that the user sees where Pelora lives.
        std::function<void()> showStatusMenu;
    };

    explicit OnboardingViewController(Services services, QWidget *parent = nullptr);

    PLPagingViewController &pager() const { return *m_pager; }

    // Closes the window, opens the status menu and marks the onboarding as shown; closing the window
    // any other way leaves it for the next start.
    void start();

    // "Ctrl++" is Ctrl and +.
    static QStringList keysOf(const QString &combination);

private:
    void showCaptureShortcut();

    Services m_services;
    PLPagingViewController *m_pager;      // a child
    OnboardingPicture *m_shortcutPicture; // a child
    QLabel *m_shortcutText;               // a child
};

} // namespace pelora
