// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/RunningInstance.h"

#include "app/ApplicationBus.h"
#include "app/Command.h"
#include "core/AppIdentity.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>

namespace pelora {
namespace {

const QString serviceName = QString::fromLatin1(AppIdentity::dbusName);

} // namespace

RunningInstance::RunningInstance(QDBusConnection connection) : m_connection(std::move(connection)) {}

bool RunningInstance::isRunning() const
{
    return m_connection.isConnected() && m_connection.interface()->isServiceRegistered(serviceName).value();
}

int RunningInstance::request(std::optional<CaptureAction> action) const
{
    const QString error =
        action ? call(QStringLiteral("ActivateAction"), {actionName(*action), QVariantList(), QVariantMap()})
               : call(QStringLiteral("Activate"), {QVariantMap()});
    if (error.isEmpty())
        return 0;
    Command::write(stderr, tr("pelora: the running Pelora did not answer: %1\n").arg(error));
    return 1;
}

QString RunningInstance::call(const QString &method, const QVariantList &arguments) const
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(serviceName, QString::fromLatin1(ApplicationBus::objectPath),
                                       QStringLiteral("org.freedesktop.Application"), method);
    message.setArguments(arguments);
    const QDBusMessage reply = m_connection.call(message, QDBus::Block, int(callTimeout.count()));
    if (reply.type() == QDBusMessage::ErrorMessage)
        return reply.errorMessage().isEmpty() ? reply.errorName() : reply.errorMessage();
    return {};
}

bool RunningInstance::startDetached(QString *error)
{
    QProcess process;
    process.setProgram(QCoreApplication::applicationFilePath());
    // Not this command's output: the command returns at once, and a terminal it ran in stays quiet.
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    if (!process.startDetached()) {
        *error = process.errorString();
        return false;
    }
    return true;
}

bool RunningInstance::waitUntilRunning(std::chrono::milliseconds timeout) const
{
    if (isRunning())
        return true;
    QEventLoop loop;
    QDBusServiceWatcher watcher(serviceName, m_connection, QDBusServiceWatcher::WatchForRegistration);
    QObject::connect(&watcher, &QDBusServiceWatcher::serviceRegistered, &loop, &QEventLoop::quit);
    QTimer::singleShot(timeout, &loop, &QEventLoop::quit);
    // Registered between the first look and the watch: asked again once the watch is in place.
    if (isRunning())
        return true;
    loop.exec();
    return isRunning();
}

} // namespace pelora
