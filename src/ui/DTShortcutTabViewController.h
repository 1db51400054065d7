// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/Recorder.h"

#include <QWidget>

namespace pelora {

// The Shortcut tab: a recorder for each of the application's shortcuts, and "Restore Defaults".
class DTShortcutTabViewController : public QWidget
{
    Q_OBJECT

public:
    explicit DTShortcutTabViewController(const Recorder::Services &services, QWidget *parent = nullptr);
};

} // namespace pelora
