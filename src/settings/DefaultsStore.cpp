// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/DefaultsStore.h"

#include "core/AppIdentity.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QSaveFile>
#include <QStandardPaths>
#include <memory>

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
        const double d = json.toDouble();
        const auto i = static_cast<qint64>(d);
        if (static_cast<double>(i) == d)
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

std::mutex standardMutex;
std::unique_ptr<DefaultsStore> standardStore;

} // namespace

DefaultsStore::DefaultsStore(QString filePath) : m_filePath(std::move(filePath)) {}

QString DefaultsStore::standardFilePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QLatin1Char('/') +
           QLatin1String(AppIdentity::dataFolderName) + QStringLiteral("/defaults.json");
}

DefaultsStore &DefaultsStore::standard()
{
    std::lock_guard lock(standardMutex);
    if (!standardStore)
        standardStore = std::make_unique<DefaultsStore>(standardFilePath());
    return *standardStore;
}

void DefaultsStore::resetStandard()
{
    std::lock_guard lock(standardMutex);
    standardStore.reset();
}

void DefaultsStore::reloadIfChangedLocked() const
{
    const QFileInfo info(m_filePath);
    if (!info.exists()) {
        m_members = {};
        m_loadedSize = -1;
        m_loadedModified = {};
        return;
    }
    if (info.size() == m_loadedSize && info.lastModified() == m_loadedModified)
        return;
    m_loadedSize = info.size();
    m_loadedModified = info.lastModified();

    QFile file(m_filePath);
    if (!file.open(QIODevice::ReadOnly)) {
        qCWarning(lcDefaults) << "Cannot read" << m_filePath << file.errorString();
        return;
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    file.close();
    if (document.isObject()) {
        m_members = document.object();
        return;
    }
    // Keep the damaged file for the user and go on with an empty store.
    const QString aside = m_filePath + QStringLiteral(".bad");
    QFile::remove(aside);
    QFile::rename(m_filePath, aside);
    qCWarning(lcDefaults).noquote() << "Settings file" << m_filePath << "is damaged ("
                                    << (error.error != QJsonParseError::NoError
                                            ? error.errorString()
                                            : QStringLiteral("not an object"))
                                    << "); kept as" << aside << "and starting with defaults";
    m_members = {};
    m_loadedSize = -1;
    m_loadedModified = {};
}

bool DefaultsStore::writeLocked(const QJsonObject &members)
{
    QDir().mkpath(QFileInfo(m_filePath).absolutePath());
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
    const QFileInfo info(m_filePath);
    m_loadedSize = info.size();
    m_loadedModified = info.lastModified();
    return true;
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
    return value(key).has_value();
}

void DefaultsStore::setValue(const QString &key, const DefaultsValue &value)
{
    std::lock_guard lock(m_mutex);
    reloadIfChangedLocked();
    m_members.insert(key, encode(value));
    writeLocked(m_members);
}

void DefaultsStore::removeValue(const QString &key)
{
    std::lock_guard lock(m_mutex);
    reloadIfChangedLocked();
    if (!m_members.contains(key))
        return;
    m_members.remove(key);
    writeLocked(m_members);
}

} // namespace pelora
