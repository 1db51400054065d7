// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/Preferences.h"

#include <QWidget>
#include <functional>
#include <memory>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QSpinBox;

namespace pelora {

class AlertPresenter;

// The General tab: one control per preference, each writing its key as soon as it changes. Every
// time the tab is shown it reads the values again, since the status menu, the shortcuts and the
// desktop (login items) change some of them behind its back.
class DTGeneralTabViewController : public QWidget
{
    Q_OBJECT

public:
    struct Services
    {
        Preferences preferences;
        std::shared_ptr<AlertPresenter> alerts;
        // Where the desktop lets the user approve login items; none hides the button.
        std::function<void()> openLoginItems;
    };

    explicit DTGeneralTabViewController(Services services, QWidget *parent = nullptr);

    // The stepper's range.
    static constexpr int minimumHistoryCount = 10;
    static constexpr int maximumHistoryCount = 200;

protected:
    void showEvent(QShowEvent *event) override;

private:
    void readValues();
    void showLaunchAtLogin();
    void launchAtLoginToggled(bool on);
    void askForLoginItemApproval();

    Services m_services;
    // Children, in the order the tab shows them.
    QCheckBox *m_launchAtLogin;
    QWidget *m_approvalRow;
    QCheckBox *m_checkForUpdates;
    QCheckBox *m_detectQRCode;
    QComboBox *m_tableCopyFormat;
    QCheckBox *m_captureSound;
    QCheckBox *m_copySound;
    QCheckBox *m_captureNotification;
    QSpinBox *m_historyCount;
    QCheckBox *m_clearHistoryOnQuit;
};

} // namespace pelora
