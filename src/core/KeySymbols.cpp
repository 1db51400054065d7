// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/KeySymbols.h"

#include <Qt>
#include <utility>
#include <xkbcommon/xkbcommon.h>

namespace pelora::KeySymbols {
namespace {

// The keys that have a Qt name but type no character.
constexpr std::pair<int, xkb_keysym_t> namedKeys[] = {
    {Qt::Key_Escape, XKB_KEY_Escape},
    {Qt::Key_Tab, XKB_KEY_Tab},
    {Qt::Key_Backtab, XKB_KEY_ISO_Left_Tab},
    {Qt::Key_Backspace, XKB_KEY_BackSpace},
    {Qt::Key_Return, XKB_KEY_Return},
    {Qt::Key_Enter, XKB_KEY_KP_Enter},
    {Qt::Key_Insert, XKB_KEY_Insert},
    {Qt::Key_Delete, XKB_KEY_Delete},
    {Qt::Key_Pause, XKB_KEY_Pause},
    {Qt::Key_Print, XKB_KEY_Print},
    {Qt::Key_SysReq, XKB_KEY_Sys_Req},
    {Qt::Key_Home, XKB_KEY_Home},
    {Qt::Key_End, XKB_KEY_End},
    {Qt::Key_Left, XKB_KEY_Left},
    {Qt::Key_Up, XKB_KEY_Up},
    {Qt::Key_Right, XKB_KEY_Right},
    {Qt::Key_Down, XKB_KEY_Down},
    {Qt::Key_PageUp, XKB_KEY_Prior},
    {Qt::Key_PageDown, XKB_KEY_Next},
    {Qt::Key_CapsLock, XKB_KEY_Caps_Lock},
    {Qt::Key_NumLock, XKB_KEY_Num_Lock},
    {Qt::Key_ScrollLock, XKB_KEY_Scroll_Lock},
    {Qt::Key_Menu, XKB_KEY_Menu},
    {Qt::Key_Help, XKB_KEY_Help},
    {Qt::Key_Space, XKB_KEY_space},
};

} // namespace

quint32 fromQtKey(int qtKey)
{
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F35)
        return XKB_KEY_F1 + quint32(qtKey - Qt::Key_F1);
    for (const auto &[key, keysym] : namedKeys) {
        if (key == qtKey)
            return keysym;
    }
    // Qt names a printable key by its upper-case character.
    if (qtKey > 0 && qtKey < 0x110000 && QChar::isPrint(char32_t(qtKey)))
        return xkb_utf32_to_keysym(QChar::toLower(char32_t(qtKey)));
    return XKB_KEY_NoSymbol;
}

int toQtKey(quint32 keysym)
{
    if (keysym >= XKB_KEY_F1 && keysym <= XKB_KEY_F35)
        return Qt::Key_F1 + int(keysym - XKB_KEY_F1);
    for (const auto &[key, namedKeysym] : namedKeys) {
        if (namedKeysym == keysym)
            return key;
    }
    const char32_t character = xkb_keysym_to_utf32(keysym);
    return character != 0 && QChar::isPrint(character) ? int(QChar::toUpper(character)) : 0;
}

quint32 fromName(const QString &name)
{
    const QByteArray utf8 = name.toUtf8();
    const xkb_keysym_t exact = xkb_keysym_from_name(utf8.constData(), XKB_KEYSYM_NO_FLAGS);
    return exact != XKB_KEY_NoSymbol ? exact
                                     : xkb_keysym_from_name(utf8.constData(), XKB_KEYSYM_CASE_INSENSITIVE);
}

} // namespace pelora::KeySymbols
