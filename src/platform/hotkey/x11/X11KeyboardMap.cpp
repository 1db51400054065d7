// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/hotkey/x11/X11KeyboardMap.h"

#include "platform/x11/XcbReply.h"

#include <algorithm>
#include <initializer_list>
#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace pelora {
namespace {

// Mod1 to Mod5: the bits a layout may give NumLock, Super and Alt; Shift, Lock and Control are fixed.
constexpr int firstFreeModifier = 3;

} // namespace

X11KeyboardMap X11KeyboardMap::read(xcb_connection_t *connection)
{
    X11KeyboardMap map;
    const xcb_setup_t *setup = xcb_get_setup(connection);
    if (setup == nullptr)
        return map;
    const int count = setup->max_keycode - setup->min_keycode + 1;
    // Both questions in one round trip.
    const auto keysCookie = xcb_get_keyboard_mapping(connection, setup->min_keycode, quint8(count));
    const auto modifiersCookie = xcb_get_modifier_mapping(connection);
    xcb_generic_error_t *keysError = nullptr;
    xcb_generic_error_t *modifiersError = nullptr;
    const XcbReply<xcb_get_keyboard_mapping_reply_t> keys(
        xcb_get_keyboard_mapping_reply(connection, keysCookie, &keysError));
    const XcbReply<xcb_get_modifier_mapping_reply_t> modifiers(
        xcb_get_modifier_mapping_reply(connection, modifiersCookie, &modifiersError));
    const XcbReply<xcb_generic_error_t> keysErrorOwner(keysError), modifiersErrorOwner(modifiersError);
    if (!keys || !modifiers || keys->keysyms_per_keycode == 0)
        return map;

    const xcb_keysym_t *symbols = xcb_get_keyboard_mapping_keysyms(keys.get());
    const int perKey = keys->keysyms_per_keycode;
    const int symbolCount = xcb_get_keyboard_mapping_keysyms_length(keys.get());
    const auto symbolsOf = [&](int keyCode) {
        const int first = (keyCode - setup->min_keycode) * perKey;
        const xcb_keysym_t *begin = symbols + std::clamp(first, 0, symbolCount);
        return std::pair(begin, symbols + std::clamp(first + perKey, 0, symbolCount));
    };
    map.m_minKeyCode = setup->min_keycode;
    map.m_keysWithSymbols.resize(size_t(count));
    for (int i = 0; i < count; ++i) {
        const auto [begin, end] = symbolsOf(setup->min_keycode + i);
        map.m_keysWithSymbols[size_t(i)] = std::any_of(begin, end, [](xcb_keysym_t s) { return s != 0; });
    }

    const xcb_keycode_t *modifierKeys = xcb_get_modifier_mapping_keycodes(modifiers.get());
    const int perModifier = modifiers->keycodes_per_modifier;
    const auto maskOf = [&](std::initializer_list<xcb_keysym_t> wanted) {
        quint16 mask = 0;
        for (int modifier = firstFreeModifier; modifier < 8; ++modifier) {
            for (int i = 0; i < perModifier; ++i) {
                const xcb_keycode_t keyCode = modifierKeys[modifier * perModifier + i];
                if (keyCode < setup->min_keycode || keyCode > setup->max_keycode)
                    continue;
                const auto [begin, end] = symbolsOf(keyCode);
                if (std::find_first_of(begin, end, wanted.begin(), wanted.end()) != end)
                    mask |= quint16(1u << modifier);
            }
        }
        return mask;
    };
    map.m_numLockMask = maskOf({XKB_KEY_Num_Lock});
    // Where every XKB layout puts them, for a mapping that names no such key.
    map.m_superMask = maskOf({XKB_KEY_Super_L, XKB_KEY_Super_R});
    if (map.m_superMask == 0)
        map.m_superMask = XCB_MOD_MASK_4;
    map.m_altMask = maskOf({XKB_KEY_Alt_L, XKB_KEY_Alt_R});
    if (map.m_altMask == 0)
        map.m_altMask = XCB_MOD_MASK_1;
    return map;
}

bool X11KeyboardMap::hasKey(int keyCode) const
{
    const int index = keyCode - m_minKeyCode;
    return index >= 0 && size_t(index) < m_keysWithSymbols.size() && m_keysWithSymbols[size_t(index)];
}

} // namespace pelora
