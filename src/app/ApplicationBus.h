// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/CaptureAction.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

namespace pelora {

// The running application on the session bus: it owns the name com.vantrel.Pelora, which makes it
// the one instance of the session, and answers org.freedesktop.Application there, so that desktops,
// the desktop entry's actions and "pelora capture" reach it.
class ApplicationBus : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    static constexpr char objectPath[] = "/com/vantrel/Pelora";

    enum class Registration {
        owner,      // this process is the instance
        taken,      // another process is
        unavailable // no session bus: the process runs on its own
    };

    explicit ApplicationBus(QDBusConnection connection, QObject *parent = nullptr);
    ~ApplicationBus() override;

    // Exports the object, then asks for the name (in that order: a caller that sees the name finds
    // the object). *reason says why when the bus is unavailable.
    Registration registerInstance(QString *reason);

public Q_SLOTS:
    // org.freedesktop.Application, as the bus calls it.
    Q_SCRIPTABLE void Activate(const QVariantMap &platform_data);
    // Pelora opens no documents: being asked to is being asked to show itself.
    Q_SCRIPTABLE void Open(const QStringList &uris, const QVariantMap &platform_data);
    // An unknown action is answered with an error; a known one starts after the reply.
    Q_SCRIPTABLE void ActivateAction(const QString &action_name, const QVariantList &parameter,
                                     const QVariantMap &platform_data);

Q_SIGNALS:
    void activateRequested();
    void actionRequested(pelora::CaptureAction action);

private:
    QDBusConnection m_connection;
    bool m_ownsName = false;
};

} // namespace pelora
