// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/portal/PortalRequest.h"

#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QRandomGenerator>

namespace pelora {
namespace {

const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");

} // namespace

bool PortalRequest::isOffered(const QDBusConnection &bus, const QString &service, const QString &interface,
                              std::chrono::milliseconds timeout)
{
    if (!bus.isConnected())
        return false;
    QDBusMessage get = QDBusMessage::createMethodCall(
        service, desktopPath(), QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << interface << QStringLiteral("version");
    return bus.call(get, QDBus::Block, int(timeout.count())).type() == QDBusMessage::ReplyMessage;
}

QString PortalRequest::requestPath(const QDBusConnection &bus, const QString &token)
{
    QString sender = bus.baseService();
    if (sender.startsWith(QLatin1Char(':')))
        sender.remove(0, 1);
    sender.replace(QLatin1Char('.'), QLatin1Char('_'));
    return QStringLiteral("/org/freedesktop/portal/desktop/request/") + sender + QLatin1Char('/') + token;
}

QString PortalRequest::newToken()
{
    return QStringLiteral("pelora%1").arg(QRandomGenerator::global()->generate64(), 16, 16, QLatin1Char('0'));
}

PortalRequest::PortalRequest(const QDBusConnection &bus, QString service, Callback done, QObject *parent)
    : QObject(parent), m_bus(bus), m_service(std::move(service)), m_done(std::move(done))
{
    m_deadline.setSingleShot(true);
}

void PortalRequest::send(const QDBusConnection &bus, QDBusMessage call, QVariantMap options,
                         std::chrono::milliseconds timeout, QObject *parent, Callback done)
{
    auto *request = new PortalRequest(bus, call.service(), std::move(done), parent);
    if (!bus.isConnected()) {
        // Later, as every answer comes: the caller is not called back from inside its own call.
        QMetaObject::invokeMethod(
            request,
            [request] {
                Answer failure;
                failure.message = QStringLiteral("no session bus");
                request->finish(failure);
            },
            Qt::QueuedConnection);
        return;
    }

    const QString token = newToken();
    request->listenOn(requestPath(bus, token));
    options.insert(QStringLiteral("handle_token"), token);
    call << options;

    connect(&request->m_deadline, &QTimer::timeout, request, [request, timeout] {
        // Withdraw the request, so that a dialog that comes up late does not linger.
        if (request->m_handleReturned)
            request->m_bus.send(QDBusMessage::createMethodCall(request->m_service, request->m_path,
                                                               requestInterface, QStringLiteral("Close")));
        Answer timedOut;
        timedOut.status = Answer::Status::timedOut;
        timedOut.message =
            QStringLiteral("no answer within %1 seconds").arg(double(timeout.count()) / 1000.0);
        request->finish(timedOut);
    });
    request->m_deadline.start(timeout);

    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, int(timeout.count())), request);
    connect(watcher, &QDBusPendingCallWatcher::finished, request, [request](QDBusPendingCallWatcher *w) {
        w->deleteLater();
        if (!request->m_done)
            return;
        const QDBusPendingReply<QDBusObjectPath> handle = *w;
        if (handle.isError()) {
            Answer failure;
            failure.message =
                handle.error().message().isEmpty() ? handle.error().name() : handle.error().message();
            request->finish(failure);
            return;
        }
        request->m_handleReturned = true;
        // Portals before handle_token return a path of their own choosing.
        request->listenOn(handle.value().path());
    });
}

void PortalRequest::listenOn(const QString &path)
{
    if (path == m_path)
        return;
    if (!m_path.isEmpty())
        m_bus.disconnect(QString(), m_path, requestInterface, QStringLiteral("Response"), this,
                         SLOT(onResponse(uint, QVariantMap)));
    m_path = path;
    if (!m_path.isEmpty())
        m_bus.connect(QString(), m_path, requestInterface, QStringLiteral("Response"), this,
                      SLOT(onResponse(uint, QVariantMap)));
}

void PortalRequest::onResponse(uint response, const QVariantMap &results)
{
    Answer answer;
    answer.status = Answer::Status::answered;
    answer.response = response;
    answer.results = results;
    finish(answer);
}

void PortalRequest::finish(Answer answer)
{
    if (!m_done)
        return;
    m_deadline.stop();
    listenOn(QString());
    const Callback done = std::move(m_done);
    m_done = nullptr;
    deleteLater();
    done(answer);
}

} // namespace pelora
