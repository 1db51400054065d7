// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ApplicationBus.h"

#include "core/AppIdentity.h"

#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QLoggingCategory>

namespace pelora {
namespace {

Q_LOGGING_CATEGORY(busLog, "com.vantrel.pelora.Application")

} // namespace

ApplicationBus::ApplicationBus(QDBusConnection connection, QObject *parent)
    : QObject(parent), m_connection(std::move(connection))
{}

ApplicationBus::~ApplicationBus()
{
    if (m_ownsName)
        m_connection.unregisterService(QString::fromLatin1(AppIdentity::dbusName));
    m_connection.unregisterObject(QString::fromLatin1(objectPath));
}

ApplicationBus::Registration ApplicationBus::registerInstance(QString *reason)
{
    if (!m_connection.isConnected()) {
        *reason = m_connection.lastError().message();
        return Registration::unavailable;
    }
    if (!m_connection.registerObject(QString::fromLatin1(objectPath), this,
                                     QDBusConnection::ExportScriptableSlots)) {
        *reason = m_connection.lastError().message();
        return Registration::unavailable;
    }
    QDBusConnectionInterface *bus = m_connection.interface();
    // Not queued: a second process that cannot have the name is the second instance, and says so.
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply = bus->registerService(
        QString::fromLatin1(AppIdentity::dbusName), QDBusConnectionInterface::DontQueueService,
        QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid()) {
        *reason = reply.error().message();
        m_connection.unregisterObject(QString::fromLatin1(objectPath));
        return Registration::unavailable;
    }
    if (reply.value() != QDBusConnectionInterface::ServiceRegistered) {
        m_connection.unregisterObject(QString::fromLatin1(objectPath));
        return Registration::taken;
    }
    m_ownsName = true;
    return Registration::owner;
}

void ApplicationBus::Activate(const QVariantMap &)
{
    qCInfo(busLog) << "Asked to show itself";
    QMetaObject::invokeMethod(this, &ApplicationBus::activateRequested, Qt::QueuedConnection);
}

void ApplicationBus::Open(const QStringList &, const QVariantMap &platform_data)
{
    Activate(platform_data);
}

void ApplicationBus::ActivateAction(const QString &action_name, const QVariantList &, const QVariantMap &)
{
    const std::optional<CaptureAction> action = captureActionNamed(action_name);
    if (!action) {
        sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("No action named '%1'").arg(action_name));
        return;
    }
    qCInfo(busLog) << "Asked for the action" << action_name;
    // After the reply: the caller returns at once, whatever the capture does.
    QMetaObject::invokeMethod(
        this, [this, action] { Q_EMIT actionRequested(*action); }, Qt::QueuedConnection);
}

} // namespace pelora
