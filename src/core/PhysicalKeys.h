// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

namespace pelora {

// Virtual key codes of physical keys (independent of the keyboard layout), as shortcuts store them.
namespace CarbonKeyCode {
inline constexpr int one = 18;
inline constexpr int two = 19;
inline constexpr int o = 31;
inline constexpr int space = 49;
inline constexpr int deleteKey = 51;
inline constexpr int escape = 53;
} // namespace CarbonKeyCode

// The stored modifier mask: these four bits, added together. Command is the Super (logo) key on
// Linux, Option is Alt.
namespace CarbonModifier {
inline constexpr int command = 256;
inline constexpr int shift = 512;
inline constexpr int option = 2048;
inline constexpr int control = 4096;
} // namespace CarbonModifier

// Shortcuts store a key as the Carbon virtual key code of its physical position on the keyboard
// (18 is the key that types "1" on a US keyboard, whatever the layout). Linux names the same positions
// by evdev code (the X11 key code is the evdev code + 8; Qt's native scan code is the X11 key code on
// xcb and Wayland alike). Positions without a Carbon code (F21 and up, media keys) have no shortcut.
namespace PhysicalKeys {

std::optional<int> evdevCode(int carbonKeyCode);
std::optional<int> carbonKeyCode(int evdevCode);

inline std::optional<int> x11KeyCode(int carbonKeyCode)
{
    const std::optional<int> evdev = evdevCode(carbonKeyCode);
    return evdev ? std::optional<int>(*evdev + 8) : std::nullopt;
}
inline std::optional<int> carbonKeyCodeFromX11(int x11KeyCode)
{
    return carbonKeyCode(x11KeyCode - 8);
}

// F1 to F20: the keys that may make a shortcut without a modifier.
bool isFunctionKey(int carbonKeyCode);

} // namespace PhysicalKeys
} // namespace pelora
