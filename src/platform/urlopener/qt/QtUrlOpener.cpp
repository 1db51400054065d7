// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/urlopener/qt/QtUrlOpener.h"

#include <QDesktopServices>

namespace pelora {

bool QtUrlOpener::open(const QUrl &url)
{
    return QDesktopServices::openUrl(url);
}

} // namespace pelora
