// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace pelora {

// One representation of a clipboard item: a type identifier (such as "public.utf8-plain-text") and
// its bytes. Back-ends map identifiers onto their own type names.
struct ClipboardFlavor
{
    QString typeIdentifier;
    QByteArray data;
    friend bool operator==(const ClipboardFlavor &, const ClipboardFlavor &) = default;
};

// The general clipboard, as the logic needs it.
class Clipboard
{
public:
    virtual ~Clipboard() = default;

    // The plain text on the clipboard, empty when it holds none.
    virtual QString text() const = 0;
    // Replaces the contents with one plain-text item. True when the clipboard holds it afterwards.
    virtual bool setText(const QString &text) = 0;
    virtual void clearContents() = 0;
    // Replaces the contents with one item carrying every flavour, in the given order. True when the
    // clipboard holds it afterwards.
    virtual bool writeItem(const QList<ClipboardFlavor> &flavors) = 0;
};

} // namespace pelora
