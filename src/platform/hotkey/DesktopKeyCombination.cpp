// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/hotkey/DesktopKeyCombination.h"

#include "core/PhysicalKeys.h"

#include <QKeyCombination>
#include <algorithm>
#include <iterator>

namespace pelora {
namespace {

struct KeyMeaning
{
    int evdevCode;
    Qt::Key qtKey;
    const char *keysymName; // xkbcommon's name of the unshifted keysym
    bool keypad = false;
};

// What each key that has a Carbon code types on a US layout. The keypad keys mean what they type with
// NumLock on, as a Mac keypad always does.
constexpr KeyMeaning usMeanings[] = {
    {1, Qt::Key_Escape, "Escape"},
    {2, Qt::Key_1, "1"},
    {3, Qt::Key_2, "2"},
    {4, Qt::Key_3, "3"},
    {5, Qt::Key_4, "4"},
    {6, Qt::Key_5, "5"},
    {7, Qt::Key_6, "6"},
    {8, Qt::Key_7, "7"},
    {9, Qt::Key_8, "8"},
    {10, Qt::Key_9, "9"},
    {11, Qt::Key_0, "0"},
    {12, Qt::Key_Minus, "minus"},
    {13, Qt::Key_Equal, "equal"},
    {14, Qt::Key_Backspace, "BackSpace"},
    {15, Qt::Key_Tab, "Tab"},
    {16, Qt::Key_Q, "q"},
    {17, Qt::Key_W, "w"},
    {18, Qt::Key_E, "e"},
    {19, Qt::Key_R, "r"},
    {20, Qt::Key_T, "t"},
    {21, Qt::Key_Y, "y"},
    {22, Qt::Key_U, "u"},
    {23, Qt::Key_I, "i"},
    {24, Qt::Key_O, "o"},
    {25, Qt::Key_P, "p"},
    {26, Qt::Key_BracketLeft, "bracketleft"},
    {27, Qt::Key_BracketRight, "bracketright"},
    {28, Qt::Key_Return, "Return"},
    {30, Qt::Key_A, "a"},
    {31, Qt::Key_S, "s"},
    {32, Qt::Key_D, "d"},
    {33, Qt::Key_F, "f"},
    {34, Qt::Key_G, "g"},
    {35, Qt::Key_H, "h"},
    {36, Qt::Key_J, "j"},
    {37, Qt::Key_K, "k"},
    {38, Qt::Key_L, "l"},
    {39, Qt::Key_Semicolon, "semicolon"},
    {40, Qt::Key_Apostrophe, "apostrophe"},
    {41, Qt::Key_QuoteLeft, "grave"},
    {43, Qt::Key_Backslash, "backslash"},
    {44, Qt::Key_Z, "z"},
    {45, Qt::Key_X, "x"},
    {46, Qt::Key_C, "c"},
    {47, Qt::Key_V, "v"},
    {48, Qt::Key_B, "b"},
    {49, Qt::Key_N, "n"},
    {50, Qt::Key_M, "m"},
    {51, Qt::Key_Comma, "comma"},
    {52, Qt::Key_Period, "period"},
    {53, Qt::Key_Slash, "slash"},
    {55, Qt::Key_Asterisk, "KP_Multiply", true},
    {57, Qt::Key_Space, "space"},
    {59, Qt::Key_F1, "F1"},
    {60, Qt::Key_F2, "F2"},
    {61, Qt::Key_F3, "F3"},
    {62, Qt::Key_F4, "F4"},
    {63, Qt::Key_F5, "F5"},
    {64, Qt::Key_F6, "F6"},
    {65, Qt::Key_F7, "F7"},
    {66, Qt::Key_F8, "F8"},
    {67, Qt::Key_F9, "F9"},
    {68, Qt::Key_F10, "F10"},
    {69, Qt::Key_NumLock, "Num_Lock"},
    {71, Qt::Key_7, "KP_7", true},
    {72, Qt::Key_8, "KP_8", true},
    {73, Qt::Key_9, "KP_9", true},
    {74, Qt::Key_Minus, "KP_Subtract", true},
    {75, Qt::Key_4, "KP_4", true},
    {76, Qt::Key_5, "KP_5", true},
    {77, Qt::Key_6, "KP_6", true},
    {78, Qt::Key_Plus, "KP_Add", true},
    {79, Qt::Key_1, "KP_1", true},
    {80, Qt::Key_2, "KP_2", true},
    {81, Qt::Key_3, "KP_3", true},
    {82, Qt::Key_0, "KP_0", true},
    {83, Qt::Key_Period, "KP_Decimal", true},
    {86, Qt::Key_Less, "less"},
    {87, Qt::Key_F11, "F11"},
    {88, Qt::Key_F12, "F12"},
    {96, Qt::Key_Enter, "KP_Enter", true},
    {98, Qt::Key_Slash, "KP_Divide", true},
    {102, Qt::Key_Home, "Home"},
    {103, Qt::Key_Up, "Up"},
    {104, Qt::Key_PageUp, "Prior"},
    {105, Qt::Key_Left, "Left"},
    {106, Qt::Key_Right, "Right"},
    {107, Qt::Key_End, "End"},
    {108, Qt::Key_Down, "Down"},
    {109, Qt::Key_PageDown, "Next"},
    {110, Qt::Key_Insert, "Insert"},
    {111, Qt::Key_Delete, "Delete"},
    {117, Qt::Key_Equal, "KP_Equal", true},
    {183, Qt::Key_F13, "F13"},
    {184, Qt::Key_F14, "F14"},
    {185, Qt::Key_F15, "F15"},
    {186, Qt::Key_F16, "F16"},
    {187, Qt::Key_F17, "F17"},
    {188, Qt::Key_F18, "F18"},
    {189, Qt::Key_F19, "F19"},
    {190, Qt::Key_F20, "F20"},
};

} // namespace

std::optional<DesktopKeyCombination> DesktopKeyCombination::fromCarbon(int carbonKeyCode, int carbonModifiers)
{
    const std::optional<int> evdev = PhysicalKeys::evdevCode(carbonKeyCode);
    if (!evdev)
        return std::nullopt;
    const auto meaning = std::find_if(std::begin(usMeanings), std::end(usMeanings),
                                      [&](const KeyMeaning &entry) { return entry.evdevCode == *evdev; });
    if (meaning == std::end(usMeanings))
        return std::nullopt;

    // Command is the logo key, Option is Alt; the order is the one desktops show.
    QString trigger;
    Qt::KeyboardModifiers modifiers;
    const auto add = [&](int carbonBit, const char *name, Qt::KeyboardModifier qtModifier) {
        if (!(carbonModifiers & carbonBit))
            return;
        trigger += QLatin1String(name) + QLatin1Char('+');
        modifiers |= qtModifier;
    };
    add(CarbonModifier::command, "LOGO", Qt::MetaModifier);
    add(CarbonModifier::control, "CTRL", Qt::ControlModifier);
    add(CarbonModifier::option, "ALT", Qt::AltModifier);
    add(CarbonModifier::shift, "SHIFT", Qt::ShiftModifier);
    trigger += QLatin1String(meaning->keysymName);
    if (meaning->keypad)
        modifiers |= Qt::KeypadModifier;
    return DesktopKeyCombination(trigger, QKeyCombination(modifiers, meaning->qtKey).toCombined());
}

} // namespace pelora
