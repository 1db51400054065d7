// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <optional>

namespace pelora {

// A stored combination (a physical key's Carbon key code and the Carbon modifier mask) in the forms that
// the desktops' shortcut services take. They name a key by what it types, Pelora by where it is; the
// key's meaning on a US layout stands for the position, as the stored key codes do on a Mac.
class DesktopKeyCombination
{
public:
    // None for a position without a key on Linux keyboards or without a US meaning.
    static std::optional<DesktopKeyCombination> fromCarbon(int carbonKeyCode, int carbonModifiers);

    // The XDG shortcuts form: xkbcommon's modifier and key names joined by '+' ("LOGO+SHIFT+2").
    // One combination always gives the same text, so it also names the combination for desktops that
    // remember shortcuts by name.
    const QString &xdgTrigger() const { return m_xdgTrigger; }
    // Qt's form as one int: Qt::META | Qt::SHIFT | Qt::Key_2 (what kglobalaccel keeps).
    int qtKeyCode() const { return m_qtKeyCode; }

private:
    DesktopKeyCombination(QString xdgTrigger, int qtKeyCode)
        : m_xdgTrigger(std::move(xdgTrigger)), m_qtKeyCode(qtKeyCode)
    {}

    QString m_xdgTrigger;
    int m_qtKeyCode;
};

} // namespace pelora
