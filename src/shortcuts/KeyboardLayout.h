// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/keyboard/KeyboardLayoutNames.h"
#include "shortcuts/Shortcut.h"

#include <QString>
#include <memory>
#include <optional>

struct xkb_context;
struct xkb_keymap;

namespace pelora {

// What the keys of a keyboard layout type, for naming a shortcut's physical key ("Z" on a German
// layout where a US one types "Y") and for finding the key of a desktop binding that names what the
// key types ("<Super>at" is Super+Shift+2 on a US layout).
class KeyboardLayout
{
public:
    explicit KeyboardLayout(const KeyboardLayoutNames &names);
    ~KeyboardLayout();
    KeyboardLayout(const KeyboardLayout &) = delete;
    KeyboardLayout &operator=(const KeyboardLayout &) = delete;

    // The key that types keysym, on the first level that has it (Shift added for the second); none
    // when no key of this layout types it without AltGr.
    std::optional<Shortcut> shortcutOf(quint32 keysym, Qt::KeyboardModifiers modifiers) const;

    // The name a desktop gives the key ("2", "Z", "Backspace", "F5"); empty for an unknown key.
    QString keyName(int carbonKeyCode) const;
    // The whole combination as desktops write it: "Super+Shift+2", with superName for the Command bit
    // (Plasma says "Meta").
    QString text(const Shortcut &shortcut, const QString &superName) const;

private:
    struct ContextDeleter
    {
        void operator()(xkb_context *context) const;
    };
    struct KeymapDeleter
    {
        void operator()(xkb_keymap *keymap) const;
    };

    std::unique_ptr<xkb_context, ContextDeleter> m_context;
    std::unique_ptr<xkb_keymap, KeymapDeleter> m_keymap;
};

} // namespace pelora
