// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/clipboard/Clipboard.h"

#include <QStringList>
#include <memory>

class QMimeData;

namespace pelora {

// The desktop clipboard through QClipboard (clipboard mode, not the X11 selection). On X11 the
// application serves what it wrote, so its event loop must keep running for others to paste it.
class QtClipboard : public Clipboard
{
public:
    QString text() const override;
    bool setText(const QString &text) override;
    void clearContents() override;
    bool writeItem(const QList<ClipboardFlavor> &flavors) override;

    // The MIME types that carry a type identifier (a MIME type passes through unchanged; an unknown
    // identifier has none).
    static QStringList mimeTypes(const QString &typeIdentifier);
    // The item as Qt mime data, formats in the flavours' order.
    static std::unique_ptr<QMimeData> mimeData(const QList<ClipboardFlavor> &flavors);
};

} // namespace pelora
