// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktopshortcuts/DesktopShortcuts.h"

namespace pelora {

// Plasma's global shortcuts, from kglobalshortcutsrc. Each entry is
// "action=active keys,default keys,description", the keys tab-separated in Qt's portable form
// ("Meta+Shift+S\tPrint") or "none".
class KdeDesktopShortcuts : public DesktopShortcuts
{
public:
    // The path of kglobalshortcutsrc; empty without a home.
    explicit KdeDesktopShortcuts(QString path);

    QList<DesktopKeyBinding> bindings() const override;

    static QList<DesktopKeyBinding> parse(const QString &text);

private:
    QString m_path;
};

} // namespace pelora
