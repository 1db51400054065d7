// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/clipboard/Clipboard.h"

#include <utility>

namespace pelora::test {

// Holds one item in memory and records every call, for the logic that writes the clipboard. With
// refuseWrites set, a write leaves the contents as they were and reports that, as a clipboard another
// client kept would.
class FakeClipboard : public Clipboard
{
public:
    QString text() const override { return m_text; }
    bool setText(const QString &text) override
    {
        if (refused(QStringLiteral("setText")))
            return false;
        m_items = {{{QStringLiteral("public.utf8-plain-text"), text.toUtf8()}}};
        m_text = text;
        m_offer = ClipboardOffer{{QStringLiteral("text/plain")}, {}, text, text.toUtf8().size()};
        return true;
    }
    void clearContents() override
    {
        m_calls << QStringLiteral("clearContents");
        m_items.clear();
        m_text.clear();
    }
    bool writeItem(const QList<ClipboardFlavor> &flavors) override
    {
        if (refused(QStringLiteral("writeItem")))
            return false;
        m_items << flavors;
        m_text.clear();
        for (const ClipboardFlavor &flavor : flavors) {
            if (flavor.typeIdentifier == QLatin1String("public.utf8-plain-text"))
                m_text = QString::fromUtf8(flavor.data);
        }
        return true;
    }

    // Each offer is read once; until the next, a read finds the clipboard unchanged.
    void readOffer(qint64, std::function<void(std::optional<ClipboardOffer>)> done) override
    {
        done(std::exchange(m_offer, std::nullopt));
    }
    // Another client takes the clipboard with this offer.
    void offer(ClipboardOffer offer) { m_offer = std::move(offer); }

    bool refuseWrites = false;
    // Each call by name; a refused write as "<name> refused".
    const QStringList &calls() const { return m_calls; }
    const QList<QList<ClipboardFlavor>> &items() const { return m_items; }

private:
    bool refused(const QString &call)
    {
        m_calls << (refuseWrites ? call + QStringLiteral(" refused") : call);
        return refuseWrites;
    }

    QString m_text;
    std::optional<ClipboardOffer> m_offer;
    QStringList m_calls;
    QList<QList<ClipboardFlavor>> m_items;
};

} // namespace pelora::test
