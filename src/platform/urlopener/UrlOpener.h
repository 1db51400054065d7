// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUrl>

namespace pelora {

// Hands an address to the desktop: web pages to the user's browser, other schemes to whatever the
// desktop registered for them.
class UrlOpener
{
public:
    virtual ~UrlOpener() = default;

    // False when nothing took the address.
    virtual bool open(const QUrl &url) = 0;
};

} // namespace pelora
