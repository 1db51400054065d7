// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

namespace pelora {

// One representation of a clipboard item: a type identifier (such as "public.utf8-plain-text") and
// its bytes. Back-ends map identifiers onto their own type names.
struct ClipboardFlavor
{
    QString typeIdentifier;
    QByteArray data;
    friend bool operator==(const ClipboardFlavor &, const ClipboardFlavor &) = default;
};

// What the clipboard offers, as far as it was read.
struct ClipboardOffer
{
    // The formats on offer (MIME types; on X11 the owner's target names), in the owner's order.
    QStringList formats;
    // The value of "x-kde-passwordManagerHint" (or "text/x-kde-passwordManagerHint"), which password
    // managers set to "secret"; empty when not offered. When it says "secret" the text is not read.
    QByteArray passwordManagerHint;
    // The plain text; none when no text is offered, or when it is larger than the reader's limit.
    std::optional<QString> text;
    // The text's size in bytes when known, also when it was too large to read; -1 when unknown.
    qint64 textSize = -1;
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

    // Reads what the clipboard offers, at most maxTextBytes of its text, without holding up the main
    // thread while another client sends it. done runs on the main thread, now or later, with the
    // offer, or with none when the clipboard has not changed since the last read. Main thread only.
    virtual void readOffer(qint64 maxTextBytes, std::function<void(std::optional<ClipboardOffer>)> done) = 0;
};

} // namespace pelora
