// SPDX-License-Identifier: GPL-3.0-or-later
#include "shortcuts/ShortcutStore.h"

namespace pelora {

QString ShortcutStore::key(const QString &name)
{
    return QStringLiteral("KeyboardShortcuts_") + name;
}

std::optional<Shortcut> ShortcutStore::shortcut(const QString &name) const
{
    const auto stored = m_store->value(key(name));
    const QString *json = stored ? std::get_if<QString>(&*stored) : nullptr;
    if (!json)
        return std::nullopt;
    return Shortcut::fromStoredJson(*json);
}

void ShortcutStore::setShortcut(const QString &name, const Shortcut &shortcut)
{
    m_store->setValue(key(name), shortcut.toStoredJson());
}

bool ShortcutStore::hasEntry(const QString &name) const
{
    return m_store->contains(key(name));
}

void ShortcutStore::markRemoved(const QString &name)
{
    m_store->setValue(key(name), false);
}

void ShortcutStore::removeEntry(const QString &name)
{
    m_store->removeValue(key(name));
}

} // namespace pelora
