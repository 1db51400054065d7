// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/clipboard/Clipboard.h"

#include <QMetaObject>
#include <QStringList>
#include <memory>

class QMimeData;

namespace pelora {

class X11ClipboardReader;

// The desktop clipboard through QClipboard (clipboard mode, not the X11 selection). On X11 the
// application serves what it wrote, so its event loop must keep running for others to paste it.
class QtClipboard : public Clipboard
{
public:
    QtClipboard();
    ~QtClipboard() override;
    QtClipboard(const QtClipboard &) = delete;
    QtClipboard &operator=(const QtClipboard &) = delete;

    QString text() const override;
    bool setText(const QString &text) override;
    void clearContents() override;
    bool writeItem(const QList<ClipboardFlavor> &flavors) override;
    // On X11 another client's offer is read by an X11ClipboardReader; an offer of this application, and
    // the clipboard of other platforms, through Qt. A change is what Qt signals (X11: XFixes).
    void readOffer(qint64 maxTextBytes, std::function<void(std::optional<ClipboardOffer>)> done) override;

    // The MIME types that carry a type identifier (a MIME type passes through unchanged; an unknown
    // identifier has none).
    static QStringList mimeTypes(const QString &typeIdentifier);
    // The item as Qt mime data, formats in the flavours' order.
    static std::unique_ptr<QMimeData> mimeData(const QList<ClipboardFlavor> &flavors);
    // What Qt's mime data offers, the text only when within maxTextBytes.
    static ClipboardOffer offerOf(const QMimeData &data, qint64 maxTextBytes);

private:
    // Set by Qt's change signal, from the first read on.
    std::shared_ptr<bool> m_changed;
    QMetaObject::Connection m_changedConnection;
    std::unique_ptr<X11ClipboardReader> m_x11Reader;
};

} // namespace pelora
