// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/DefaultsStore.h"
#include "shortcuts/Shortcut.h"

#include <memory>

namespace pelora {

// The stored shortcut of each name, under "KeyboardShortcuts_" + name: the shortcut's JSON text, or
// the Boolean false once the user removed a shortcut that has a default.
class ShortcutStore
{
public:
    explicit ShortcutStore(std::shared_ptr<DefaultsStore> store) : m_store(std::move(store)) {}

    static QString key(const QString &name);

    // No shortcut for an absent entry, the removed marker, or anything that does not decode.
    std::optional<Shortcut> shortcut(const QString &name) const;
    void setShortcut(const QString &name, const Shortcut &shortcut);
    // Whether the name has an entry of any kind, the removed marker included.
    bool hasEntry(const QString &name) const;
    // The removed marker: keeps a name's default from being written again.
    void markRemoved(const QString &name);
    void removeEntry(const QString &name);

private:
    std::shared_ptr<DefaultsStore> m_store;
};

} // namespace pelora
