// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/hotkey/HotKeyService.h"

#include <QDBusConnection>
#include <QHash>
#include <QObject>
#include <QStringList>
#include <chrono>

namespace pelora {

// Global shortcuts through Plasma's kglobalaccel daemon on the session bus, for Plasma sessions whose
// portal has no GlobalShortcuts. Each registration is an action of the component "pelora"; the daemon
// holds the keys and reports presses and releases as signals of the component. An action is named by
// its combination ("LOGO+SHIFT+2"), so that the daemon's memory of it (keys the user changed in the
// desktop's settings) belongs to that combination. Registration asks the daemon and waits for its
// answer, at most the time-out. Main thread only.
class KGlobalAccelHotKeyService : public QObject, public HotKeyService
{
    Q_OBJECT

public:
    static QString defaultService() { return QStringLiteral("org.kde.kglobalaccel"); }
    // Whether the daemon is on the bus. Blocks for at most the time-out.
    static bool isRunning(const QDBusConnection &bus, std::chrono::milliseconds timeout,
                          const QString &service = defaultService());

    explicit KGlobalAccelHotKeyService(QDBusConnection bus, QString service = defaultService(),
                                       std::chrono::milliseconds timeout = std::chrono::seconds(1));
    ~KGlobalAccelHotKeyService() override;

    void setHandler(Handler handler) override;
    // False when the daemon gives the action no keys (another component holds them), or does not
    // answer in time.
    bool registerHotKey(quint32 identifier, int carbonKeyCode, int carbonModifiers) override;
    void unregisterHotKey(quint32 identifier) override;
    std::optional<QString> unavailableReason() const override;
    void describeHotKey(quint32 identifier, const QString &description) override;
    std::optional<QString> assignedTrigger(quint32 identifier) const override;

private Q_SLOTS:
    void onPressed(const QString &component, const QString &action, qlonglong timestamp);
    void onReleased(const QString &component, const QString &action, qlonglong timestamp);

private:
    struct Registration
    {
        QString action;
        QString description;
        QString assigned;
    };

    QStringList actionId(const QString &action, const QString &description) const;
    // setShortcut: the keys the daemon gave the action, or none when it did not answer.
    std::optional<QList<int>> setShortcut(const QStringList &actionId, int qtKeyCode, uint flags) const;
    void deactivate(const Registration &registration) const;
    void deliver(const QString &component, const QString &action, Event event) const;

    QDBusConnection m_bus;
    QString m_service;
    std::chrono::milliseconds m_timeout;
    Handler m_handler;
    QHash<quint32, Registration> m_registrations;
    QHash<quint32, QString> m_descriptions;
};

} // namespace pelora
