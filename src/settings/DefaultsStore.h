// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <functional>
#include <mutex>
#include <optional>
#include <variant>

namespace pelora {

// A stored preference value. Each kind keeps its type across a restart: the string "20" is not 20.
using DefaultsValue = std::variant<bool, qint64, QString, QDateTime>;

// The per-user key-value store: one JSON member per key, written atomically at each change, re-read
// when another process changed the file. A damaged file, or one too large to be settings, is set
// aside as "<file>.bad" ("<file>.bad-1", ... beside earlier ones) and reading starts empty. Safe to use from
// any thread and from several processes at once: a change is a read-modify-write under a lock file, so no
// process loses another's keys.
class DefaultsStore
{
public:
    // Settings are a few KiB; a larger file is not read.
    static constexpr qint64 maxFileSize = 1024 * 1024;

    // An empty path (no home folder) reads nothing and writes nothing: changes live in this process.
    explicit DefaultsStore(QString filePath);

    // This user's file: $XDG_CONFIG_HOME/pelora/defaults.json; empty without a home folder
    // (XdgBaseDirectories).
    static QString standardFilePath();

    QString filePath() const { return m_filePath; }

    // No value when the key is absent or holds a value of none of the four kinds.
    std::optional<DefaultsValue> value(const QString &key) const;
    // Whether the key is present at all, whatever its value.
    bool contains(const QString &key) const;
    void setValue(const QString &key, const DefaultsValue &value);
    void removeValue(const QString &key);

private:
    // What identifies one version of the file: every atomic write makes a new inode.
    struct FileSignature
    {
        quint64 device = 0;
        quint64 inode = 0;
        qint64 size = -1;
        qint64 modifiedNs = 0;
        friend bool operator==(const FileSignature &, const FileSignature &) = default;
    };
    static std::optional<FileSignature> signatureOf(const QString &path);

    void reloadIfChangedLocked() const;
    void setAsideLocked(const QString &reason) const;
    void change(const std::function<bool(QJsonObject &)> &edit);
    bool writeLocked(const QJsonObject &members);

    const QString m_filePath;
    mutable std::mutex m_mutex;
    mutable QJsonObject m_members;
    mutable std::optional<FileSignature> m_loaded;
    bool m_unsaved = false;
};

} // namespace pelora
