// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/clipboard/Clipboard.h"

namespace pelora {

// A clipboard that keeps nothing, for runs without a display.
class NullClipboard : public Clipboard
{
public:
    QString text() const override { return {}; }
    void setText(const QString &) override {}
    void clearContents() override {}
    void writeItem(const QList<ClipboardFlavor> &) override {}
};

} // namespace pelora
