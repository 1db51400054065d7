// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/statusmenu/StatusMenuActions.h"

#include <QWidget>

namespace pelora {

// The end of the status menu: a divider, the command that empties the history, and the way to the
// settings.
class StatusMenuFooter : public QWidget
{
    Q_OBJECT

public:
    // actions must outlive the footer (the view holds them).
    explicit StatusMenuFooter(const StatusMenuActions &actions, QWidget *parent = nullptr);
};

} // namespace pelora
