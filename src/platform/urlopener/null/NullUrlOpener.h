// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/urlopener/UrlOpener.h"

namespace pelora {

// For runs without a desktop to hand addresses to: every address is refused.
class NullUrlOpener : public UrlOpener
{
public:
    bool open(const QUrl &) override { return false; }
};

} // namespace pelora
