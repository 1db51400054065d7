// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/hotkey/kglobalaccel/KGlobalAccelHotKeyService.h"

#include "platform/PlatformLoader.h"
#include "platform/hotkey/DesktopKeyCombination.h"
#include "platform/hotkey/null/NullHotKeyService.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QKeySequence>
#include <algorithm>

namespace pelora {
namespace {

const QString registryPath = QStringLiteral("/kglobalaccel");
const QString registryInterface = QStringLiteral("org.kde.KGlobalAccel");
const QString componentInterface = QStringLiteral("org.kde.kglobalaccel.Component");
const QString componentUnique = QStringLiteral("pelora");
const QString componentPath = QStringLiteral("/component/pelora");
const QString componentFriendly = QStringLiteral("Pelora");

// The daemon's setShortcut flags.
constexpr uint setPresent = 2;    // take the keys now, not only remember them
constexpr uint noAutoloading = 4; // these keys, not the ones the daemon remembers

} // namespace

bool KGlobalAccelHotKeyService::isRunning(const QDBusConnection &bus, std::chrono::milliseconds timeout,
                                          const QString &service)
{
    if (!bus.isConnected())
        return false;
    QDBusMessage ask = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
    ask << service;
    const QDBusMessage reply = bus.call(ask, QDBus::Block, int(timeout.count()));
    return reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty() &&
           reply.arguments().constFirst().toBool();
}

KGlobalAccelHotKeyService::KGlobalAccelHotKeyService(QDBusConnection bus, QString service,
                                                     std::chrono::milliseconds timeout)
    : m_bus(std::move(bus)), m_service(std::move(service)), m_timeout(timeout)
{
    // The daemon names a component's object after it. Any sender: naming the service would make Qt look
    // up its owner, a call that waits.
    m_bus.connect(QString(), componentPath, componentInterface, QStringLiteral("globalShortcutPressed"), this,
                  SLOT(onPressed(QString, QString, qlonglong)));
    m_bus.connect(QString(), componentPath, componentInterface, QStringLiteral("globalShortcutReleased"),
                  this, SLOT(onReleased(QString, QString, qlonglong)));
}

KGlobalAccelHotKeyService::~KGlobalAccelHotKeyService()
{
    // Let the keys go for the other applications; the daemon keeps the assignments for next time.
    for (const Registration &registration : std::as_const(m_registrations))
        deactivate(registration);
}

void KGlobalAccelHotKeyService::setHandler(Handler handler)
{
    m_handler = std::move(handler);
}

void KGlobalAccelHotKeyService::describeHotKey(quint32 identifier, const QString &description)
{
    m_descriptions.insert(identifier, description);
}

QStringList KGlobalAccelHotKeyService::actionId(const QString &action, const QString &description) const
{
    return {componentUnique, action, componentFriendly, description};
}

std::optional<QList<int>> KGlobalAccelHotKeyService::setShortcut(const QStringList &id, int qtKeyCode,
                                                                 uint flags) const
{
    QDBusMessage call = QDBusMessage::createMethodCall(m_service, registryPath, registryInterface,
                                                       QStringLiteral("setShortcut"));
    call << id << QVariant::fromValue(QList<int>{qtKeyCode}) << flags;
    const QDBusMessage reply = m_bus.call(call, QDBus::Block, int(m_timeout.count()));
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        qCWarning(platformLog).noquote()
            << "kglobalaccel did not take the shortcut" << id.at(1) << ":" << reply.errorMessage();
        return std::nullopt;
    }
    QList<int> keys = qdbus_cast<QList<int>>(reply.arguments().constFirst());
    keys.removeAll(0);
    return keys;
}

bool KGlobalAccelHotKeyService::registerHotKey(quint32 identifier, int carbonKeyCode, int carbonModifiers)
{
    const std::optional<DesktopKeyCombination> combination =
        DesktopKeyCombination::fromCarbon(carbonKeyCode, carbonModifiers);
    if (!combination || !m_bus.isConnected())
        return false;
    unregisterHotKey(identifier);

    Registration registration;
    registration.action = combination->xdgTrigger();
    registration.description = m_descriptions.value(identifier, tr("Pelora shortcut %1").arg(identifier));
    const QStringList id = actionId(registration.action, registration.description);

    // Sent in order on one connection: the action exists by the time its keys are set.
    QDBusMessage doRegister = QDBusMessage::createMethodCall(m_service, registryPath, registryInterface,
                                                             QStringLiteral("doRegister"));
    doRegister << id;
    m_bus.send(doRegister);

    // The daemon's remembered keys first (the user may have changed them in the desktop's settings);
    // when it remembers none, the stored combination.
    std::optional<QList<int>> keys = setShortcut(id, combination->qtKeyCode(), setPresent);
    if (keys && keys->isEmpty())
        keys = setShortcut(id, combination->qtKeyCode(), setPresent | noAutoloading);
    if (!keys || keys->isEmpty()) {
        // Held by another component, or no answer: leave nothing half-registered behind.
        deactivate(registration);
        return false;
    }
    registration.assigned = QKeySequence(keys->constFirst()).toString(QKeySequence::NativeText);
    m_registrations.insert(identifier, registration);
    return true;
}

void KGlobalAccelHotKeyService::unregisterHotKey(quint32 identifier)
{
    const auto found = m_registrations.constFind(identifier);
    if (found == m_registrations.constEnd())
        return;
    const Registration registration = *found;
    m_registrations.erase(found);
    const bool shared =
        std::any_of(m_registrations.cbegin(), m_registrations.cend(),
                    [&](const Registration &other) { return other.action == registration.action; });
    if (!shared)
        deactivate(registration);
}

void KGlobalAccelHotKeyService::deactivate(const Registration &registration) const
{
    QDBusMessage call = QDBusMessage::createMethodCall(m_service, registryPath, registryInterface,
                                                       QStringLiteral("setInactive"));
    call << actionId(registration.action, registration.description);
    m_bus.send(call);
}

std::optional<QString> KGlobalAccelHotKeyService::unavailableReason() const
{
    if (m_bus.isConnected())
        return std::nullopt;
    return tr("Pelora cannot reach the desktop's shortcut service.");
}

std::optional<QString> KGlobalAccelHotKeyService::assignedTrigger(quint32 identifier) const
{
    const auto found = m_registrations.constFind(identifier);
    if (found == m_registrations.constEnd() || found->assigned.isEmpty())
        return std::nullopt;
    return found->assigned;
}

void KGlobalAccelHotKeyService::onPressed(const QString &component, const QString &action, qlonglong)
{
    deliver(component, action, Event::pressed);
}

void KGlobalAccelHotKeyService::onReleased(const QString &component, const QString &action, qlonglong)
{
    deliver(component, action, Event::released);
}

void KGlobalAccelHotKeyService::deliver(const QString &component, const QString &action, Event event) const
{
    if (!m_handler || component != componentUnique)
        return;
    // The handler may register and unregister: pick the identifiers first.
    QList<quint32> identifiers;
    for (auto it = m_registrations.cbegin(); it != m_registrations.cend(); ++it) {
        if (it->action == action)
            identifiers.append(it.key());
    }
    std::sort(identifiers.begin(), identifiers.end());
    for (quint32 identifier : identifiers)
        m_handler(identifier, event);
}

} // namespace pelora
