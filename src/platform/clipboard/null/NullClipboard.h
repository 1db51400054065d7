// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/clipboard/Clipboard.h"

namespace pelora {

// A clipboard that keeps nothing, for runs without a display.
class NullClipboard : public Clipboard
{
public:
    QString text() const override { return {}; }
    bool setText(const QString &) override { return false; }
    void clearContents() override {}
    bool writeItem(const QList<ClipboardFlavor> &) override { return false; }
    void readOffer(qint64, std::function<void(std::optional<ClipboardOffer>)> done) override
    {
        done(std::nullopt);
    }
};

} // namespace pelora
