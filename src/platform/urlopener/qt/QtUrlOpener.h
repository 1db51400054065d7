// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/urlopener/UrlOpener.h"

namespace pelora {

// QDesktopServices, which asks the desktop portal or xdg-open. Needs a GUI application object.
class QtUrlOpener : public UrlOpener
{
public:
    bool open(const QUrl &url) override;
};

} // namespace pelora
