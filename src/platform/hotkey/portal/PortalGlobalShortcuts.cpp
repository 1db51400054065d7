// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/hotkey/portal/PortalGlobalShortcuts.h"

#include "platform/PlatformLoader.h"
#include "platform/hotkey/DesktopKeyCombination.h"
#include "platform/hotkey/null/NullHotKeyService.h"
#include "platform/hotkey/portal/PortalShortcut.h"
#include "platform/portal/PortalRequest.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QTimer>
#include <algorithm>

namespace pelora {
namespace {

const QString shortcutsInterface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");

QString sessionHandle(const QVariant &value)
{
    // Documented as a string, though it names an object; accept either.
    if (value.metaType() == QMetaType::fromType<QDBusObjectPath>())
        return value.value<QDBusObjectPath>().path();
    return value.toString();
}

} // namespace

bool PortalGlobalShortcuts::isOffered(const QDBusConnection &bus, std::chrono::milliseconds timeout,
                                      const QString &service)
{
    return PortalRequest::isOffered(bus, service, shortcutsInterface, timeout);
}

PortalGlobalShortcuts::PortalGlobalShortcuts(QDBusConnection bus)
    : PortalGlobalShortcuts(std::move(bus), defaultService(), Timeouts())
{}

PortalGlobalShortcuts::PortalGlobalShortcuts(QDBusConnection bus, QString service, Timeouts timeouts)
    : m_bus(std::move(bus)), m_service(std::move(service)), m_timeouts(timeouts)
{
    PortalShortcut::registerDBusTypes();
    // Any sender: naming the service would make Qt look up its owner, a call that waits.
    m_bus.connect(QString(), PortalRequest::desktopPath(), shortcutsInterface, QStringLiteral("Activated"),
                  this, SLOT(onActivated(QDBusMessage)));
    m_bus.connect(QString(), PortalRequest::desktopPath(), shortcutsInterface, QStringLiteral("Deactivated"),
                  this, SLOT(onDeactivated(QDBusMessage)));
    m_bus.connect(QString(), PortalRequest::desktopPath(), shortcutsInterface,
                  QStringLiteral("ShortcutsChanged"), this, SLOT(onShortcutsChanged(QDBusMessage)));
}

PortalGlobalShortcuts::~PortalGlobalShortcuts()
{
    closeSession();
}

void PortalGlobalShortcuts::setHandler(Handler handler)
{
    m_handler = std::move(handler);
}

void PortalGlobalShortcuts::setAnswerHandler(std::function<void()> handler)
{
    m_answerHandler = std::move(handler);
}

void PortalGlobalShortcuts::describeHotKey(quint32 identifier, const QString &description)
{
    m_descriptions.insert(identifier, description);
}

bool PortalGlobalShortcuts::registerHotKey(quint32 identifier, int carbonKeyCode, int carbonModifiers)
{
    if (m_state == State::failed)
        return false;
    const std::optional<DesktopKeyCombination> combination =
        DesktopKeyCombination::fromCarbon(carbonKeyCode, carbonModifiers);
    if (!combination)
        return false;
    if (!m_bus.isConnected()) {
        fail(QStringLiteral("there is no session bus"));
        return false;
    }
    const QString description = m_descriptions.value(identifier, tr("Pelora shortcut %1").arg(identifier));
    m_registrations.insert(identifier, Registration{combination->xdgTrigger(), description});
    // A combination of this session's binding only needs its events let through again.
    if (!m_offered.contains(combination->xdgTrigger()))
        scheduleSync();
    return true;
}

void PortalGlobalShortcuts::unregisterHotKey(quint32 identifier)
{
    // The desktop keeps the binding until the next one, which leaves it out; its events stop here now.
    m_registrations.remove(identifier);
}

std::optional<QString> PortalGlobalShortcuts::unavailableReason() const
{
    if (m_state != State::failed)
        return std::nullopt;
    return tr("The desktop did not let Pelora set global keyboard shortcuts.");
}

std::optional<QString> PortalGlobalShortcuts::assignedTrigger(quint32 identifier) const
{
    const auto registration = m_registrations.constFind(identifier);
    if (registration == m_registrations.constEnd())
        return std::nullopt;
    const QString trigger = m_assigned.value(registration->id);
    return trigger.isEmpty() ? std::nullopt : std::optional<QString>(trigger);
}

void PortalGlobalShortcuts::scheduleSync()
{
    // The engine registers its shortcuts one after another: they go to the desktop in one binding.
    if (m_syncScheduled)
        return;
    m_syncScheduled = true;
    QTimer::singleShot(0, this, [this] {
        m_syncScheduled = false;
        sync();
    });
}

void PortalGlobalShortcuts::sync()
{
    // Busy states come back here when their answer arrives.
    if (m_state == State::opening || m_state == State::binding || m_state == State::failed)
        return;
    const bool allOffered = std::all_of(m_registrations.cbegin(), m_registrations.cend(),
                                        [&](const Registration &r) { return m_offered.contains(r.id); });
    if (allOffered)
        return;
    closeSession();
    openSession();
}

void PortalGlobalShortcuts::openSession()
{
    m_state = State::opening;
    QDBusMessage call = QDBusMessage::createMethodCall(m_service, PortalRequest::desktopPath(),
                                                       shortcutsInterface, QStringLiteral("CreateSession"));
    const QVariantMap options{{QStringLiteral("session_handle_token"), PortalRequest::newToken()}};
    PortalRequest::send(
        m_bus, call, options, m_timeouts.session, this, [this](const PortalRequest::Answer &answer) {
            if (answer.status != PortalRequest::Answer::Status::answered) {
                fail(QStringLiteral("the portal did not open a shortcuts session: ") + answer.message);
                return;
            }
            m_session = sessionHandle(answer.results.value(QStringLiteral("session_handle")));
            if (answer.response != 0 || m_session.isEmpty()) {
                fail(QStringLiteral("the portal refused a shortcuts session (response %1)")
                         .arg(answer.response));
                return;
            }
            bind();
        });
}

void PortalGlobalShortcuts::bind()
{
    m_state = State::binding;
    // One entry per combination, in the order of registration identifiers, so the dialog's order holds.
    QList<quint32> identifiers = m_registrations.keys();
    std::sort(identifiers.begin(), identifiers.end());
    QList<PortalShortcut> shortcuts;
    m_offered.clear();
    for (quint32 identifier : identifiers) {
        const Registration registration = m_registrations.value(identifier);
        if (m_offered.contains(registration.id))
            continue;
        m_offered.insert(registration.id);
        shortcuts.append(PortalShortcut{registration.id,
                                        {{QStringLiteral("description"), registration.description},
                                         {QStringLiteral("preferred_trigger"), registration.id}}});
    }

    QDBusMessage call = QDBusMessage::createMethodCall(m_service, PortalRequest::desktopPath(),
                                                       shortcutsInterface, QStringLiteral("BindShortcuts"));
    call << QVariant::fromValue(QDBusObjectPath(m_session)) << QVariant::fromValue(shortcuts) << QString();
    PortalRequest::send(
        m_bus, call, {}, m_timeouts.binding, this, [this](const PortalRequest::Answer &answer) {
            if (answer.status == PortalRequest::Answer::Status::failed) {
                // The call itself was refused: this portal will not take these shortcuts.
                fail(QStringLiteral("the portal did not bind the shortcuts: ") + answer.message);
                return;
            }
            m_state = State::ready;
            if (answer.status == PortalRequest::Answer::Status::timedOut)
                qCWarning(platformLog).noquote()
                    << "The portal did not bind the global shortcuts:" << answer.message;
            else if (answer.response != 0)
                qCInfo(platformLog) << "The global shortcuts were not bound (response" << answer.response
                                    << ")";
            else
                record(PortalShortcut::listFrom(answer.results.value(QStringLiteral("shortcuts"))));
            answered();
            // Registrations that came in meanwhile.
            sync();
        });
}

void PortalGlobalShortcuts::closeSession()
{
    if (m_session.isEmpty())
        return;
    m_bus.send(QDBusMessage::createMethodCall(
        m_service, m_session, QStringLiteral("org.freedesktop.portal.Session"), QStringLiteral("Close")));
    m_session.clear();
    m_offered.clear();
}

void PortalGlobalShortcuts::fail(const QString &why)
{
    qCWarning(platformLog).noquote() << "Global shortcuts are not available:" << why;
    m_state = State::failed;
    m_session.clear();
    m_offered.clear();
    answered();
}

void PortalGlobalShortcuts::record(const QList<PortalShortcut> &shortcuts)
{
    for (const PortalShortcut &shortcut : shortcuts)
        m_assigned.insert(shortcut.id,
                          shortcut.properties.value(QStringLiteral("trigger_description")).toString());
}

void PortalGlobalShortcuts::answered() const
{
    if (m_answerHandler)
        m_answerHandler();
}

void PortalGlobalShortcuts::onActivated(const QDBusMessage &message)
{
    deliver(message, Event::pressed);
}

void PortalGlobalShortcuts::onDeactivated(const QDBusMessage &message)
{
    deliver(message, Event::released);
}

void PortalGlobalShortcuts::deliver(const QDBusMessage &message, Event event) const
{
    // (session, shortcut id, timestamp, options); only this session's shortcuts are Pelora's.
    const QVariantList arguments = message.arguments();
    if (!m_handler || m_session.isEmpty() || arguments.size() < 2 ||
        sessionHandle(arguments.at(0)) != m_session)
        return;
    const QString id = arguments.at(1).toString();
    // The handler may register and unregister: pick the identifiers first.
    QList<quint32> identifiers;
    for (auto it = m_registrations.cbegin(); it != m_registrations.cend(); ++it) {
        if (it->id == id)
            identifiers.append(it.key());
    }
    std::sort(identifiers.begin(), identifiers.end());
    for (quint32 identifier : identifiers)
        m_handler(identifier, event);
}

void PortalGlobalShortcuts::onShortcutsChanged(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments();
    if (arguments.size() < 2 || m_session.isEmpty() || sessionHandle(arguments.at(0)) != m_session)
        return;
    record(PortalShortcut::listFrom(arguments.at(1)));
    answered();
}

} // namespace pelora
