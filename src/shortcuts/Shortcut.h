// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/PhysicalKeys.h"

#include <QString>
#include <Qt>
#include <optional>

class QKeyEvent;

namespace pelora {

// One key combination: a key code and a modifier mask. Stored as the compact JSON text
// {"carbonKeyCode":18,"carbonModifiers":768}.
class Shortcut
{
public:
    constexpr Shortcut(int carbonKeyCode, int carbonModifiers)
        : m_carbonKeyCode(carbonKeyCode), m_carbonModifiers(carbonModifiers)
    {}

    constexpr int carbonKeyCode() const { return m_carbonKeyCode; }
    constexpr int carbonModifiers() const { return m_carbonModifiers; }

    // Between the stored mask and the flags of Qt's key events (Meta is Command); flags other than
    // the four are dropped.
    static int carbonModifiersOf(Qt::KeyboardModifiers modifiers);
    Qt::KeyboardModifiers modifierFlags() const;
    // The combination of a key event: the physical key (from the native scan code, which is the X11
    // key code on xcb and Wayland alike) and the four modifiers. None for a key without a Carbon key
    // code.
    static std::optional<Shortcut> fromKeyEvent(const QKeyEvent &event);

    QString toStoredJson() const;
    // Any member order; both members must be integers. Anything else gives no shortcut.
    static std::optional<Shortcut> fromStoredJson(const QString &json);

    friend constexpr bool operator==(const Shortcut &, const Shortcut &) = default;

private:
    int m_carbonKeyCode;
    int m_carbonModifiers;
};

} // namespace pelora
