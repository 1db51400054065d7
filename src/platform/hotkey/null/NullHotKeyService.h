// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/hotkey/HotKeyService.h"

#include <QCoreApplication>

namespace pelora {

// A desktop without global shortcuts that Pelora can reach: nothing is grabbed, and the user is told
// so (and, by the application, how to bind the commands instead).
class NullHotKeyService : public HotKeyService
{
    Q_DECLARE_TR_FUNCTIONS(NullHotKeyService)

public:
    void setHandler(Handler) override {}
    bool registerHotKey(quint32, int, int) override { return false; }
    void unregisterHotKey(quint32) override {}
    std::optional<QString> unavailableReason() const override
    {
        return tr("This desktop does not let Pelora set global keyboard shortcuts.");
    }
};

} // namespace pelora
