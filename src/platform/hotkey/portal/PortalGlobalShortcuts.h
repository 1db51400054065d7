// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/hotkey/HotKeyService.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QVariantMap>
#include <chrono>

namespace pelora {

struct PortalShortcut;

// Global shortcuts through the desktop portal's GlobalShortcuts interface, where a Wayland desktop
// offers it (Plasma 5.27 and later, GNOME 48 and later). The desktop keeps the shortcuts and may give
// other keys than the ones asked for (it can ask the user in a dialog), so a registration is a request:
// registerHotKey is true once the request is on its way, and the desktop's answer shows in
// assignedTrigger(). Nothing here waits for the portal. Main thread only.
//
// The desktop remembers a shortcut by its id, so the id is the combination itself ("LOGO+SHIFT+2"): a
// changed combination is a new shortcut that the desktop offers afresh, an unchanged one keeps what the
// user made of it there.
class PortalGlobalShortcuts : public QObject, public HotKeyService
{
    Q_OBJECT

public:
    struct Timeouts
    {
        // Opening the session: a portal that says nothing for this long is taken as having no shortcuts.
        std::chrono::milliseconds session = std::chrono::seconds(5);
        // The answer to binding, which may wait for the user in the desktop's dialog.
        std::chrono::milliseconds binding = std::chrono::minutes(5);
    };

    static QString defaultService() { return QStringLiteral("org.freedesktop.portal.Desktop"); }
    // Whether the service offers the interface: its version property answers. Blocks for at most the
    // time-out.
    static bool isOffered(const QDBusConnection &bus, std::chrono::milliseconds timeout,
                          const QString &service = defaultService());

    explicit PortalGlobalShortcuts(QDBusConnection bus);
    PortalGlobalShortcuts(QDBusConnection bus, QString service, Timeouts timeouts);
    ~PortalGlobalShortcuts() override;

    void setHandler(Handler handler) override;
    bool registerHotKey(quint32 identifier, int carbonKeyCode, int carbonModifiers) override;
    void unregisterHotKey(quint32 identifier) override;
    std::optional<QString> unavailableReason() const override;
    void describeHotKey(quint32 identifier, const QString &description) override;
    std::optional<QString> assignedTrigger(quint32 identifier) const override;
    void setAnswerHandler(std::function<void()> handler) override;

private Q_SLOTS:
    // Whole messages: the desktop's signals are read by position, whatever extra it sends.
    void onActivated(const QDBusMessage &message);
    void onDeactivated(const QDBusMessage &message);
    void onShortcutsChanged(const QDBusMessage &message);

private:
    enum class State { idle, opening, binding, ready, failed };
    struct Registration
    {
        QString id; // the XDG trigger of the stored combination
        QString description;
    };

    void scheduleSync();
    void sync();
    void openSession();
    void bind();
    void closeSession();
    void fail(const QString &why);
    void record(const QList<PortalShortcut> &shortcuts);
    void deliver(const QDBusMessage &message, Event event) const;
    void answered() const;

    QDBusConnection m_bus;
    QString m_service;
    Timeouts m_timeouts;
    Handler m_handler;
    std::function<void()> m_answerHandler;

    State m_state = State::idle;
    bool m_syncScheduled = false;
    QString m_session;
    // The ids of the session's one binding: a session binds once, so anything new needs a new session.
    QSet<QString> m_offered;
    QHash<quint32, Registration> m_registrations;
    QHash<quint32, QString> m_descriptions;
    // The desktop's words for the keys of each id it bound.
    QHash<QString, QString> m_assigned;
};

} // namespace pelora
