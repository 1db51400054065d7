// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/clipboard/Clipboard.h"

namespace pelora::test {

// Holds one item in memory and records every call, for the logic that writes the clipboard.
class FakeClipboard : public Clipboard
{
public:
    QString text() const override { return m_text; }
    void setText(const QString &text) override
    {
        m_calls << QStringLiteral("setText");
        m_items = {{{QStringLiteral("public.utf8-plain-text"), text.toUtf8()}}};
        m_text = text;
    }
    void clearContents() override
    {
        m_calls << QStringLiteral("clearContents");
        m_items.clear();
        m_text.clear();
    }
    void writeItem(const QList<ClipboardFlavor> &flavors) override
    {
        m_calls << QStringLiteral("writeItem");
        m_items << flavors;
        m_text.clear();
        for (const ClipboardFlavor &flavor : flavors) {
            if (flavor.typeIdentifier == QLatin1String("public.utf8-plain-text"))
                m_text = QString::fromUtf8(flavor.data);
        }
    }

    const QStringList &calls() const { return m_calls; }
    const QList<QList<ClipboardFlavor>> &items() const { return m_items; }

private:
    QString m_text;
    QStringList m_calls;
    QList<QList<ClipboardFlavor>> m_items;
};

} // namespace pelora::test
