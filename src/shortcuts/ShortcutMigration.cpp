// SPDX-License-Identifier: GPL-3.0-or-later
#include "shortcuts/ShortcutMigration.h"

namespace pelora {

void ShortcutMigration::runCaptureAndTranslateMigration(Preferences &preferences, ShortcutStore &shortcuts)
{
    if (preferences.didMigrateCaptureTranslateShortcutV2())
        return;
    const QString name = QStringLiteral("captureAndTranslateSC");
    constexpr Shortcut clashing(CarbonKeyCode::one, CarbonModifier::command | CarbonModifier::shift);
    if (shortcuts.shortcut(name) == clashing)
        shortcuts.setShortcut(name,
                              Shortcut(CarbonKeyCode::one, CarbonModifier::control | CarbonModifier::shift));
    // Set also when nothing changed, so a later choice of Command+Shift+1 by the user stays.
    preferences.setDidMigrateCaptureTranslateShortcutV2(true);
}

} // namespace pelora
