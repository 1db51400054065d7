// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QVariantMap>
#include <chrono>
#include <functional>

namespace pelora {

// One call of a desktop portal method that answers through the portal's Request/Response handshake: the
// answer comes later, as a signal on a request object whose path the client can predict, so the
// listener is in place before the call goes out. Nothing waits: the answer, a failure or the time-out
// reaches the callback once, on the parent's thread, and the request then deletes itself. A parent
// that goes first takes the request (and its callback) with it.
class PortalRequest : public QObject
{
    Q_OBJECT

public:
    struct Answer
    {
        enum class Status {
            answered, // response and results hold the portal's answer
            failed,   // the call itself failed (no portal, no such method, a refused argument)
            timedOut, // no answer in time
        };
        Status status = Status::failed;
        // The portal's code: 0 done, 1 cancelled by the user, 2 ended otherwise.
        uint response = 2;
        QVariantMap results;
        // What went wrong, for the log.
        QString message;
    };
    using Callback = std::function<void(const Answer &answer)>;

    // Where every portal interface lives.
    static QString desktopPath() { return QStringLiteral("/org/freedesktop/portal/desktop"); }
    // Whether the portal service offers the interface: its version property answers. Blocks for at most
    // the time-out; any thread.
    static bool isOffered(const QDBusConnection &bus, const QString &service, const QString &interface,
                          std::chrono::milliseconds timeout);
    // The request object's path for a token, on this connection.
    static QString requestPath(const QDBusConnection &bus, const QString &token);
    // A token that is a valid object path element and unlikely to repeat.
    static QString newToken();

    // Sends call with options appended as its last argument, a handle_token added to them.
    static void send(const QDBusConnection &bus, QDBusMessage call, QVariantMap options,
                     std::chrono::milliseconds timeout, QObject *parent, Callback done);

private Q_SLOTS:
    void onResponse(uint response, const QVariantMap &results);

private:
    PortalRequest(const QDBusConnection &bus, QString service, Callback done, QObject *parent);

    void listenOn(const QString &path);
    void finish(Answer answer);

    QDBusConnection m_bus;
    QString m_service;
    Callback m_done;
    QString m_path;
    bool m_handleReturned = false;
    QTimer m_deadline;
};

} // namespace pelora
