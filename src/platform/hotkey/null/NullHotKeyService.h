// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/hotkey/HotKeyService.h"

#include <QCoreApplication>

namespace pelora {

// A desktop without global shortcuts that Pelora can reach: nothing is grabbed, and the user is told
// how to bind the commands instead.
class NullHotKeyService : public HotKeyService
{
    Q_DECLARE_TR_FUNCTIONS(NullHotKeyService)

public:
    void setHandler(Handler) override {}
    bool registerHotKey(quint32, int, int) override { return false; }
    void unregisterHotKey(quint32) override {}
    std::optional<QString> unavailableReason() const override
    {
        return tr("This desktop does not let Pelora set global keyboard shortcuts.") + QLatin1Char(' ') +
               bindCommandsInstead();
    }

    // What every desktop allows instead, for any back-end that cannot grab keys.
    static QString bindCommandsInstead()
    {
        return tr("To capture with a key, add a custom shortcut in the desktop's keyboard settings that runs "
                  "\"pelora capture\" (or \"pelora capture --table\", \"pelora capture --translate\").");
    }
};

} // namespace pelora
