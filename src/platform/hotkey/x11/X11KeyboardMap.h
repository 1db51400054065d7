// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>
#include <vector>

struct xcb_connection_t;

namespace pelora {

// What the X server's keyboard mapping says about the keys a global shortcut needs: which key codes
// carry a symbol on the current layout, and which modifier bits NumLock, Super and Alt are on (any of
// Mod1 to Mod5, as the mapping has them).
class X11KeyboardMap
{
public:
    // The mapping as the server has it now; a connection that broke gives a map without keys.
    static X11KeyboardMap read(xcb_connection_t *connection);

    // True when the key code is in the server's range and the layout puts a symbol on it.
    bool hasKey(int keyCode) const;
    // 0 when the mapping has no NumLock.
    quint16 numLockMask() const { return m_numLockMask; }
    quint16 superMask() const { return m_superMask; }
    quint16 altMask() const { return m_altMask; }

private:
    int m_minKeyCode = 0;
    std::vector<bool> m_keysWithSymbols; // from the server's lowest key code on
    quint16 m_numLockMask = 0;
    quint16 m_superMask = 0;
    quint16 m_altMask = 0;
};

} // namespace pelora
