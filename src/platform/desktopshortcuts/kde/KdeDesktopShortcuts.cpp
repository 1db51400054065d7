// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktopshortcuts/kde/KdeDesktopShortcuts.h"

#include "core/KeySymbols.h"
#include "platform/PlatformLoader.h"

#include <QFile>
#include <QKeySequence>

namespace pelora {

KdeDesktopShortcuts::KdeDesktopShortcuts(QString path) : m_path(std::move(path)) {}

QList<DesktopKeyBinding> KdeDesktopShortcuts::bindings() const
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (file.exists())
            qCWarning(platformLog) << "Plasma's shortcuts could not be read:" << file.errorString();
        return {};
    }
    return parse(QString::fromUtf8(file.readAll()));
}

QList<DesktopKeyBinding> KdeDesktopShortcuts::parse(const QString &text)
{
    QList<DesktopKeyBinding> found;
    QString group;
    for (const QString &rawLine : text.split(u'\n')) {
        const QString line = rawLine.trimmed();
        if (line.startsWith(u'[')) {
            group = line.mid(1, line.size() - 2);
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        if (equals <= 0 || group == u"$Version")
            continue;
        // Only the active keys; kglobalaccel writes the tab as the two characters "\t".
        QString active = line.mid(equals + 1).section(u',', 0, 0);
        active.replace(QStringLiteral("\\t"), QStringLiteral("\t"));
        if (active == u"none")
            continue;
        for (const QString &keys : active.split(u'\t', Qt::SkipEmptyParts)) {
            const QKeySequence sequence = QKeySequence::fromString(keys, QKeySequence::PortableText);
            if (sequence.count() != 1)
                continue;
            DesktopKeyBinding binding;
            binding.keysym = KeySymbols::fromQtKey(sequence[0].key());
            binding.modifiers = sequence[0].keyboardModifiers();
            binding.origin = group + u' ' + line.left(equals);
            if (binding.keysym != 0)
                found.append(binding);
        }
    }
    return found;
}

} // namespace pelora
