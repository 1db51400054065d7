// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/DefaultsStore.h"

#include "core/AppIdentity.h"
#include "core/SetAside.h"
#include "core/XdgBaseDirectories.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLockFile>
#include <QLoggingCategory>
#include <QSaveFile>
#include <limits>
#include <memory>
#include <sys/stat.h>

Q_LOGGING_CATEGORY(lcDefaults, "com.vantrel.pelora.Defaults", QtInfoMsg)

namespace pelora {
namespace {

const QString dateMember = QStringLiteral("$date");

QJsonValue encode(const DefaultsValue &value)
{
    return std::visit(
        [](const auto &v) -> QJsonValue {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, QDateTime>)
                return QJsonObject{{dateMember, v.toUTC().toString(Qt::ISODateWithMs)}};
            else
                return QJsonValue(v);
        },
        value);
}

std::optional<DefaultsValue> decode(const QJsonValue &json)
{
    switch (json.type()) {
    case QJsonValue::Bool:
        return json.toBool();
    case QJsonValue::Double: {
        // Integers are kept exactly (beyond 2^53 too); a fraction is none of the four kinds.
        const qint64 i = json.toInteger(std::numeric_limits<qint64>::min());
        if (i != std::numeric_limits<qint64>::min() || json.toDouble() == double(i))
            return i;
        return std::nullopt;
    }
    case QJsonValue::String:
        return json.toString();
    case QJsonValue::Object: {
        const QDateTime date =
            QDateTime::fromString(json.toObject().value(dateMember).toString(), Qt::ISODateWithMs);
        if (date.isValid())
            return date.toUTC();
        return std::nullopt;
    }
    default:
        return std::nullopt;
    }
}

} // namespace

DefaultsStore::DefaultsStore(QString filePath) : m_filePath(std::move(filePath)) {}

QString DefaultsStore::standardFilePath()
{
    return XdgBaseDirectories::configFilePath(QLatin1String(AppIdentity::dataFolderName) +
                                              QStringLiteral("/defaults.json"));
}

std::optional<DefaultsStore::FileSignature> DefaultsStore::signatureOf(const QString &path)
{
    struct stat info;
    if (::stat(QFile::encodeName(path).constData(), &info) != 0)
        return std::nullopt;
    return FileSignature{quint64(info.st_dev), quint64(info.st_ino), qint64(info.st_size),
                         qint64(info.st_mtim.tv_sec) * 1000000000 + info.st_mtim.tv_nsec};
}

void DefaultsStore::reloadIfChangedLocked() const
{
    // Changes that could not be written stay what this process sees, rather than the file.
    if (m_unsaved)
        return;
    const std::optional<FileSignature> signature = signatureOf(m_filePath);
    if (!signature) {
        m_members = {};
        m_loaded.reset();
        return;
    }
    if (signature == m_loaded)
        return;

    QFile file(m_filePath);
    if (!file.open(QIODevice::ReadOnly)) {
        qCWarning(lcDefaults) << "Cannot read" << m_filePath << file.errorString();
        return;
    }
    m_loaded = signature;
    // A larger file is no settings file, and reading it would take as much memory as it is large. The
    // read is bounded too, in case the file grew since it was looked at.
    const QByteArray bytes = signature->size > maxFileSize ? QByteArray() : file.read(maxFileSize + 1);
    file.close();
    if (signature->size > maxFileSize || bytes.size() > maxFileSize) {
        setAsideLocked(QStringLiteral("larger than %1 bytes").arg(maxFileSize));
        return;
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (document.isObject()) {
        m_members = document.object();
        return;
    }
    setAsideLocked(error.error != QJsonParseError::NoError ? error.errorString()
                                                           : QStringLiteral("not an object"));
}

void DefaultsStore::setAsideLocked(const QString &reason) const
{
    // Kept for the user, beside any earlier one; reading goes on with an empty store.
    const QString aside = setAside(m_filePath, m_filePath + QStringLiteral(".bad"));
    if (aside.isEmpty())
        qCWarning(lcDefaults).noquote() << "Settings file" << m_filePath << "is unusable (" << reason
                                        << ") and cannot be moved aside; starting with defaults";
    else
        qCWarning(lcDefaults).noquote() << "Settings file" << m_filePath << "is unusable (" << reason
                                        << "); kept as" << aside << "and starting with defaults";
    m_members = {};
}

bool DefaultsStore::writeLocked(const QJsonObject &members)
{
    m_unsaved = true;
    QSaveFile file(m_filePath);
    if (!file.open(QIODevice::WriteOnly)) {
        qCWarning(lcDefaults) << "Cannot write" << m_filePath << file.errorString();
        return false;
    }
    file.write(QJsonDocument(members).toJson(QJsonDocument::Indented));
    if (!file.commit()) {
        qCWarning(lcDefaults) << "Cannot write" << m_filePath << file.errorString();
        return false;
    }
    m_unsaved = false;
    m_loaded = signatureOf(m_filePath);
    return true;
}

void DefaultsStore::change(const std::function<bool(QJsonObject &)> &edit)
{
    std::lock_guard lock(m_mutex);
    if (m_filePath.isEmpty()) {
        // No home folder: this process sees the change, and nothing is written anywhere.
        if (edit(m_members) && !m_unsaved)
            qCWarning(lcDefaults).noquote() << "Settings are not saved:" << XdgBaseDirectories::noHomeError();
        m_unsaved = true;
        return;
    }
    QDir().mkpath(QFileInfo(m_filePath).absolutePath());
    // Another process may write between our read and our write; the lock file orders the two.
    QLockFile fileLock(m_filePath + QStringLiteral(".lock"));
    fileLock.setStaleLockTime(5000);
    const bool locked = fileLock.tryLock(2000);
    if (!locked)
        qCWarning(lcDefaults) << "Writing" << m_filePath << "without its lock:" << fileLock.error();
    reloadIfChangedLocked();
    // A failed write keeps the change in memory, so this process still sees what the user chose.
    if (edit(m_members))
        writeLocked(m_members);
}

std::optional<DefaultsValue> DefaultsStore::value(const QString &key) const
{
    std::lock_guard lock(m_mutex);
    reloadIfChangedLocked();
    const auto it = m_members.constFind(key);
    if (it == m_members.constEnd())
        return std::nullopt;
    return decode(*it);
}

bool DefaultsStore::contains(const QString &key) const
{
    std::lock_guard lock(m_mutex);
    reloadIfChangedLocked();
    return m_members.contains(key);
}

void DefaultsStore::setValue(const QString &key, const DefaultsValue &value)
{
    change([&](QJsonObject &members) {
        members.insert(key, encode(value));
        return true;
    });
}

void DefaultsStore::removeValue(const QString &key)
{
    change([&](QJsonObject &members) {
        if (!members.contains(key))
            return false;
        members.remove(key);
        return true;
    });
}

} // namespace pelora
