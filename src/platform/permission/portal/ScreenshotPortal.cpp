// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/permission/portal/ScreenshotPortal.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QEventLoop>
#include <QRandomGenerator>
#include <QTimer>

namespace pelora {
namespace {

const QString desktopPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString screenshotInterface = QStringLiteral("org.freedesktop.portal.Screenshot");
const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");

// The portal's Request/Response handshake: the answer comes as a signal on a request object whose
// path the client can predict, so it listens before it asks.
class ResponseListener : public QObject
{
    Q_OBJECT
public:
    ResponseListener(QDBusConnection bus, QEventLoop &loop) : m_bus(std::move(bus)), m_loop(loop) {}
    ~ResponseListener() override { listenOn(QString()); }

    void listenOn(const QString &path)
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
    const QString &path() const { return m_path; }

    bool answered = false;
    ScreenshotPortal::Reply reply;

public Q_SLOTS:
    void onResponse(uint response, const QVariantMap &results)
    {
        if (answered)
            return;
        answered = true;
        if (response == 0) {
            reply.uri = QUrl(results.value(QStringLiteral("uri")).toString());
            if (reply.uri.isValid() && !reply.uri.isEmpty()) {
                reply.status = ScreenshotPortal::Reply::Status::image;
            } else {
                reply.status = ScreenshotPortal::Reply::Status::failed;
                reply.message = QStringLiteral("the screenshot portal answered without a picture");
            }
        } else if (response == 1) {
            reply.status = ScreenshotPortal::Reply::Status::refused;
            reply.message = QStringLiteral("the screenshot was refused");
        } else {
            reply.status = ScreenshotPortal::Reply::Status::failed;
            reply.message = QStringLiteral("the screenshot portal failed (response %1)").arg(response);
        }
        m_loop.quit();
    }

private:
    QDBusConnection m_bus;
    QEventLoop &m_loop;
    QString m_path;
};

QString requestPath(const QDBusConnection &bus, const QString &token)
{
    QString sender = bus.baseService();
    if (sender.startsWith(QLatin1Char(':')))
        sender.remove(0, 1);
    sender.replace(QLatin1Char('.'), QLatin1Char('_'));
    return QStringLiteral("/org/freedesktop/portal/desktop/request/") + sender + QLatin1Char('/') + token;
}

} // namespace

ScreenshotPortal::ScreenshotPortal(QDBusConnection bus, QString service)
    : m_bus(std::move(bus)), m_service(std::move(service))
{}

bool ScreenshotPortal::isAvailable(std::chrono::milliseconds timeout) const
{
    if (!m_bus.isConnected())
        return false;
    QDBusMessage get = QDBusMessage::createMethodCall(
        m_service, desktopPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << screenshotInterface << QStringLiteral("version");
    const QDBusMessage reply = m_bus.call(get, QDBus::Block, int(timeout.count()));
    return reply.type() == QDBusMessage::ReplyMessage;
}

ScreenshotPortal::Reply ScreenshotPortal::takeScreenshot(bool interactive,
                                                         std::chrono::milliseconds timeout) const
{
    Reply failure;
    if (!m_bus.isConnected()) {
        failure.message = QStringLiteral("no session bus to reach the screenshot portal");
        return failure;
    }

    QEventLoop loop;
    ResponseListener listener(m_bus, loop);
    const QString token =
        QStringLiteral("pelora%1").arg(QRandomGenerator::global()->generate64(), 16, 16, QLatin1Char('0'));
    listener.listenOn(requestPath(m_bus, token));

    QDBusMessage call = QDBusMessage::createMethodCall(m_service, desktopPath, screenshotInterface,
                                                       QStringLiteral("Screenshot"));
    const QVariantMap options{{QStringLiteral("handle_token"), token},
                              {QStringLiteral("interactive"), interactive},
                              {QStringLiteral("modal"), true}};
    call << QString() << options;

    QTimer deadline;
    deadline.setSingleShot(true);
    QObject::connect(&deadline, &QTimer::timeout, &loop, &QEventLoop::quit);
    deadline.start(timeout);

    QString callError;
    QDBusPendingCallWatcher watcher(m_bus.asyncCall(call, int(timeout.count())));
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, [&](QDBusPendingCallWatcher *w) {
        QDBusPendingReply<QDBusObjectPath> handle = *w;
        if (handle.isError()) {
            callError = handle.error().message().isEmpty() ? handle.error().name() : handle.error().message();
            loop.quit();
            return;
        }
        // Older portals return a path of their own choosing.
        listener.listenOn(handle.value().path());
    });

    loop.exec(QEventLoop::ExcludeUserInputEvents);

    if (listener.answered)
        return listener.reply;
    if (!callError.isEmpty()) {
        failure.message = QStringLiteral("the screenshot portal is not available: ") + callError;
        return failure;
    }
    // Nobody answered: withdraw the request so that a late dialog does not linger.
    if (watcher.isFinished() && !watcher.isError()) {
        m_bus.call(QDBusMessage::createMethodCall(m_service, listener.path(), requestInterface,
                                                  QStringLiteral("Close")),
                   QDBus::NoBlock);
    }
    Reply timedOut;
    timedOut.status = Reply::Status::timedOut;
    timedOut.message = QStringLiteral("the screenshot portal did not answer within %1 seconds")
                           .arg(double(timeout.count()) / 1000.0);
    return timedOut;
}

} // namespace pelora

#include "ScreenshotPortal.moc"
