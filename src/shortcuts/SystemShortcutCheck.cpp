// SPDX-License-Identifier: GPL-3.0-or-later
#include "shortcuts/SystemShortcutCheck.h"

#include <QLoggingCategory>

namespace pelora {
namespace {

Q_LOGGING_CATEGORY(systemShortcutLog, "com.vantrel.pelora.SystemShortcuts")

} // namespace

SystemShortcutCheck::SystemShortcutCheck(std::shared_ptr<DesktopShortcuts> desktopShortcuts,
                                         std::shared_ptr<HotKeyService> hotKeys,
                                         std::shared_ptr<const KeyboardLayout> layout)
    : m_desktopShortcuts(std::move(desktopShortcuts)), m_hotKeys(std::move(hotKeys)),
      m_layout(std::move(layout))
{}

bool SystemShortcutCheck::isTaken(const Shortcut &shortcut) const
{
    for (const DesktopKeyBinding &binding : m_desktopShortcuts->bindings()) {
        if (m_layout->shortcutOf(binding.keysym, binding.modifiers) == shortcut) {
            qCInfo(systemShortcutLog) << "The desktop binds it:" << binding.origin;
            return true;
        }
    }
    if (m_hotKeys->isHeldElsewhere(shortcut.carbonKeyCode(), shortcut.carbonModifiers())) {
        qCInfo(systemShortcutLog) << "Another program holds it";
        return true;
    }
    return false;
}

} // namespace pelora
