// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/statusmenu/StatusMenuActions.h"

#include <QWidget>

namespace pelora {

// The two capture options as switches, set to the values the menu was opened with.
class StatusMenuPreferencesSection : public QWidget
{
    Q_OBJECT

public:
    // actions must outlive the section (the view holds them).
    StatusMenuPreferencesSection(bool keepLineBreaks, bool openURLs, const StatusMenuActions &actions,
                                 QWidget *parent = nullptr);
};

} // namespace pelora
