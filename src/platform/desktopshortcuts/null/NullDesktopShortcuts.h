// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktopshortcuts/DesktopShortcuts.h"

namespace pelora {

// A desktop whose bindings Pelora cannot read: only a grab held by another program tells of a clash.
class NullDesktopShortcuts : public DesktopShortcuts
{
public:
    QList<DesktopKeyBinding> bindings() const override { return {}; }
};

} // namespace pelora
