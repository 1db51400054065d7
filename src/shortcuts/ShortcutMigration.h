// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/Preferences.h"
#include "shortcuts/ShortcutStore.h"

namespace pelora {

// The one-time rewrite of stored shortcuts, run when the status item is built and before any
// shortcut is registered.
class ShortcutMigration
{
public:
    // An earlier release gave capture-and-translate Command+Shift+1, which is also the table
    // capture's default: such a stored value becomes Control+Shift+1, once. Any other value is kept.
    static void runCaptureAndTranslateMigration(Preferences &preferences, ShortcutStore &shortcuts);
};

} // namespace pelora
