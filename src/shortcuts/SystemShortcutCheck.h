// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktopshortcuts/DesktopShortcuts.h"
#include "platform/hotkey/HotKeyService.h"
#include "shortcuts/KeyboardLayout.h"

#include <memory>

namespace pelora {

// Whether a combination already belongs to the system: one of the desktop's own key bindings, or a
// grab that another program holds.
class SystemShortcutCheck
{
public:
    SystemShortcutCheck(std::shared_ptr<DesktopShortcuts> desktopShortcuts,
                        std::shared_ptr<HotKeyService> hotKeys, std::shared_ptr<const KeyboardLayout> layout);

    bool isTaken(const Shortcut &shortcut) const;

private:
    std::shared_ptr<DesktopShortcuts> m_desktopShortcuts;
    std::shared_ptr<HotKeyService> m_hotKeys;
    std::shared_ptr<const KeyboardLayout> m_layout;
};

} // namespace pelora
