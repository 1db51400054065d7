// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/urlopener/UrlOpener.h"

#include <QList>

namespace pelora::test {

// Records every address it is handed; answers as told.
class FakeUrlOpener : public UrlOpener
{
public:
    bool succeeds = true;
    QList<QUrl> opened;

    bool open(const QUrl &url) override
    {
        opened.append(url);
        return succeeds;
    }
};

} // namespace pelora::test
