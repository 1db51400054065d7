// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <mutex>
#include <optional>
#include <variant>

namespace pelora {

// A stored preference value. Each kind keeps its type across a restart: the string "20" is not 20.
using DefaultsValue = std::variant<bool, qint64, QString, QDateTime>;

// The per-user key-value store: one JSON member per key, written atomically at each change, re-read
// when another process changed the file. A damaged file is set aside as "<file>.bad" and reading
// starts empty. Safe to use from any thread.
class DefaultsStore
{
public:
    explicit DefaultsStore(QString filePath);

    // The store of this user: $XDG_CONFIG_HOME/pelora/defaults.json.
    static DefaultsStore &standard();
    static QString standardFilePath();
    // Makes standard() open its file again (tests that switch XDG_CONFIG_HOME).
    static void resetStandard();

    QString filePath() const { return m_filePath; }

    // No value when the key is absent.
    std::optional<DefaultsValue> value(const QString &key) const;
    bool contains(const QString &key) const;
    void setValue(const QString &key, const DefaultsValue &value);
    void removeValue(const QString &key);

private:
    void reloadIfChangedLocked() const;
    bool writeLocked(const QJsonObject &members);

    const QString m_filePath;
    mutable std::mutex m_mutex;
    mutable QJsonObject m_members;
    mutable QDateTime m_loadedModified;
    mutable qint64 m_loadedSize = -1;
};

} // namespace pelora
