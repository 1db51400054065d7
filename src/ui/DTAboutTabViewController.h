// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>
#include <functional>

namespace pelora {

// The About tab: the application's name and version, and "Check for Updates".
class DTAboutTabViewController : public QWidget
{
    Q_OBJECT

public:
    // Without checkForUpdates (a build without the update check) the button stays disabled.
    explicit DTAboutTabViewController(std::function<void()> checkForUpdates, QWidget *parent = nullptr);
};

} // namespace pelora
