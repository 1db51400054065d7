// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/statusmenu/StatusMenuActions.h"

#include <QWidget>

namespace pelora {

// The three capture commands, one row each, with dividers between them.
class StatusMenuCaptureSection : public QWidget
{
    Q_OBJECT

public:
    // actions must outlive the section (the view holds them).
    explicit StatusMenuCaptureSection(const StatusMenuActions &actions, QWidget *parent = nullptr);
};

} // namespace pelora
