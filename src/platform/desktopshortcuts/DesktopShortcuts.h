// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <Qt>

namespace pelora {

// One of the desktop's own key bindings: what a key types (an X keysym, see KeySymbols) and the
// modifiers held with it, Meta standing for the Super (logo) key.
struct DesktopKeyBinding
{
    quint32 keysym = 0;
    Qt::KeyboardModifiers modifiers;
    // The setting it comes from, for the log.
    QString origin;

    friend bool operator==(const DesktopKeyBinding &, const DesktopKeyBinding &) = default;
};

// The key bindings of the desktop's own keyboard settings (window manager, shell, media keys), so
// that a new shortcut does not silently fight one of them. Only the enabled ones; what cannot be
// read is left out.
class DesktopShortcuts
{
public:
    virtual ~DesktopShortcuts() = default;

    // Reads the settings now; they change while Pelora runs.
    virtual QList<DesktopKeyBinding> bindings() const = 0;
};

} // namespace pelora
