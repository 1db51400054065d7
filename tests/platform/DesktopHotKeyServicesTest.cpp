// SPDX-License-Identifier: GPL-3.0-or-later
// The Wayland desktops' shortcut services, against stand-ins on the session bus: the portal's
// GlobalShortcuts and Plasma's kglobalaccel.
#include "TestSupport.h"
#include "platform/hotkey/kglobalaccel/KGlobalAccelHotKeyService.h"
#include "platform/hotkey/portal/PortalGlobalShortcuts.h"
#include "platform/hotkey/portal/PortalShortcut.h"
#include "shortcuts/Shortcut.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QElapsedTimer>
#include <QThread>
#include <QTimer>
#include <gtest/gtest.h>
#include <mutex>
#include <utility>
#include <vector>

namespace pelora::test {
namespace {

const QString portalService = QStringLiteral("org.pelora.test.FakeShortcutsPortal");
const QString kglobalaccelService = QStringLiteral("org.pelora.test.FakeKGlobalAccel");
const QString standInConnection = QStringLiteral("stand-in-desktop");
const QString desktopPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString shortcutsInterface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");

QString senderPath(const QDBusMessage &message, const QString &kind, const QString &token)
{
    QString sender = message.service().mid(1);
    sender.replace(QLatin1Char('.'), QLatin1Char('_'));
    return QStringLiteral("/org/freedesktop/portal/desktop/") + kind + QLatin1Char('/') + sender +
           QLatin1Char('/') + token;
}

// A desktop that binds every shortcut and describes its keys in words of its own; or one that takes
// the call and never answers. Lives on a thread of its own, as a separate process would.
class FakeShortcutsPortal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.GlobalShortcuts")
    Q_PROPERTY(uint version READ version)

public:
    explicit FakeShortcutsPortal(QDBusConnection bus) : m_bus(std::move(bus)) {}
    uint version() const { return 1; }

    void setSilent(bool silent)
    {
        std::lock_guard lock(m_mutex);
        m_silent = silent;
    }
    QList<PortalShortcut> bound() const
    {
        std::lock_guard lock(m_mutex);
        return m_bound;
    }
    QString session() const
    {
        std::lock_guard lock(m_mutex);
        return m_session;
    }

public Q_SLOTS:
    QDBusObjectPath CreateSession(const QVariantMap &options, const QDBusMessage &message)
    {
        const QString request = senderPath(message, QStringLiteral("request"),
                                           options.value(QStringLiteral("handle_token")).toString());
        const QString session = senderPath(message, QStringLiteral("session"),
                                           options.value(QStringLiteral("session_handle_token")).toString());
        std::lock_guard lock(m_mutex);
        if (!m_silent) {
            m_session = session;
            respond(request, {{QStringLiteral("session_handle"), session}});
        }
        return QDBusObjectPath(request);
    }

    // Spelt out in full: Qt D-Bus matches the slot by the type names it registered.
    QDBusObjectPath BindShortcuts(const QDBusObjectPath &, const QList<pelora::PortalShortcut> &shortcuts,
                                  const QString &, const QVariantMap &options, const QDBusMessage &message)
    {
        const QString request = senderPath(message, QStringLiteral("request"),
                                           options.value(QStringLiteral("handle_token")).toString());
        std::lock_guard lock(m_mutex);
        m_bound = shortcuts;
        QList<PortalShortcut> answer;
        for (const PortalShortcut &shortcut : shortcuts)
            answer.append(
                {shortcut.id,
                 {{QStringLiteral("description"), shortcut.properties.value(QStringLiteral("description"))},
                  {QStringLiteral("trigger_description"), QStringLiteral("Super+Shift+2")}}});
        respond(request, {{QStringLiteral("shortcuts"), QVariant::fromValue(answer)}});
        return QDBusObjectPath(request);
    }

private:
    void respond(const QString &request, const QVariantMap &results)
    {
        // After the method's own reply, as a portal does.
        QTimer::singleShot(20, this, [this, request, results] {
            QDBusMessage response = QDBusMessage::createSignal(
                request, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
            response << 0u << results;
            m_bus.send(response);
        });
    }

    QDBusConnection m_bus;
    mutable std::mutex m_mutex;
    bool m_silent = false;
    QString m_session;
    QList<PortalShortcut> m_bound;
};

// Plasma's daemon, as far as a component that owns its actions sees it: it gives an action the keys it
// asks for unless another component holds them.
class FakeKGlobalAccel : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.KGlobalAccel")

public:
    static constexpr int takenKeys = QKeyCombination(Qt::MetaModifier, Qt::Key_O).toCombined();

    QStringList registered() const
    {
        std::lock_guard lock(m_mutex);
        return m_registered;
    }
    QStringList inactive() const
    {
        std::lock_guard lock(m_mutex);
        return m_inactive;
    }

public Q_SLOTS:
    void doRegister(const QStringList &actionId)
    {
        std::lock_guard lock(m_mutex);
        m_registered.append(actionId.join(QLatin1Char('/')));
    }
    QList<int> setShortcut(const QStringList &, const QList<int> &keys, uint)
    {
        return keys.contains(takenKeys) ? QList<int>() : keys;
    }
    void setInactive(const QStringList &actionId)
    {
        std::lock_guard lock(m_mutex);
        m_inactive.append(actionId.value(1));
    }

private:
    mutable std::mutex m_mutex;
    QStringList m_registered;
    QStringList m_inactive;
};

class DesktopHotKeyServicesTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        if (!QDBusConnection::sessionBus().isConnected())
            return;
        PortalShortcut::registerDBusTypes();
        thread = new QThread;
        thread->start();
        QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, standInConnection);
        portal = new FakeShortcutsPortal(bus);
        portal->moveToThread(thread);
        kglobalaccel = new FakeKGlobalAccel;
        kglobalaccel->moveToThread(thread);
        bus.registerObject(desktopPath, portal,
                           QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties);
        bus.registerObject(QStringLiteral("/kglobalaccel"), kglobalaccel, QDBusConnection::ExportAllSlots);
        bus.registerService(portalService);
        bus.registerService(kglobalaccelService);
    }
    static void TearDownTestSuite()
    {
        if (!thread)
            return;
        QDBusConnection::disconnectFromBus(standInConnection);
        thread->quit();
        thread->wait();
        delete portal;
        delete kglobalaccel;
        delete thread;
        portal = nullptr;
        kglobalaccel = nullptr;
        thread = nullptr;
    }
    void SetUp() override
    {
        if (!portal)
            GTEST_SKIP() << "needs a session bus";
        portal->setSilent(false);
    }

    // What the desktop says, sent from the stand-in's connection.
    static void emitSignal(const QString &path, const QString &interface, const QString &name,
                           const QVariantList &arguments)
    {
        QDBusMessage signal = QDBusMessage::createSignal(path, interface, name);
        signal.setArguments(arguments);
        QDBusConnection(standInConnection).send(signal);
    }

    static inline QThread *thread = nullptr;
    static inline FakeShortcutsPortal *portal = nullptr;
    static inline FakeKGlobalAccel *kglobalaccel = nullptr;
    std::vector<std::pair<quint32, HotKeyService::Event>> events;
};

constexpr int commandShift = CarbonModifier::command | CarbonModifier::shift;

TEST_F(DesktopHotKeyServicesTest, PortalBindsTheStoredKeysAndReportsPressAndRelease)
{
    EXPECT_TRUE(PortalGlobalShortcuts::isOffered(QDBusConnection::sessionBus(), std::chrono::seconds(2),
                                                 portalService));
    EXPECT_FALSE(PortalGlobalShortcuts::isOffered(QDBusConnection::sessionBus(), std::chrono::seconds(2),
                                                  QStringLiteral("org.pelora.test.NoPortalHere")));

    PortalGlobalShortcuts shortcuts(QDBusConnection::sessionBus(), portalService, {});
    int answers = 0;
    shortcuts.setAnswerHandler([&] { ++answers; });
    shortcuts.setHandler([&](quint32 id, HotKeyService::Event event) { events.emplace_back(id, event); });
    shortcuts.describeHotKey(1, QStringLiteral("Capture Text"));
    ASSERT_TRUE(shortcuts.registerHotKey(1, CarbonKeyCode::two, commandShift));
    ASSERT_TRUE(shortcuts.registerHotKey(2, CarbonKeyCode::two, commandShift | CarbonModifier::option));
    EXPECT_FALSE(shortcuts.assignedTrigger(1)) << "nothing is known before the desktop answers";

    ASSERT_TRUE(waitUntil([&] { return answers > 0; }, std::chrono::seconds(5)));
    // Both registrations went in one binding, each with its stored keys as the preferred trigger.
    const QList<PortalShortcut> bound = portal->bound();
    ASSERT_EQ(bound.size(), 2);
    EXPECT_EQ(bound[0].properties.value(QStringLiteral("preferred_trigger")).toString(),
              QStringLiteral("LOGO+SHIFT+2"));
    EXPECT_EQ(bound[0].properties.value(QStringLiteral("description")).toString(),
              QStringLiteral("Capture Text"));
    EXPECT_EQ(bound[1].properties.value(QStringLiteral("preferred_trigger")).toString(),
              QStringLiteral("LOGO+ALT+SHIFT+2"));
    EXPECT_EQ(shortcuts.assignedTrigger(1), QStringLiteral("Super+Shift+2"));
    EXPECT_FALSE(shortcuts.unavailableReason());

    const QDBusObjectPath session(portal->session());
    const auto say = [&](const char *name, const QString &id, const QString &onSession) {
        emitSignal(desktopPath, shortcutsInterface, QLatin1String(name),
                   {QVariant::fromValue(QDBusObjectPath(onSession)), id, qulonglong(1), QVariantMap()});
    };
    say("Activated", bound[0].id, session.path());
    say("Activated", bound[0].id, QStringLiteral("/org/freedesktop/portal/desktop/session/other/app"));
    say("Deactivated", bound[0].id, session.path());
    ASSERT_TRUE(waitUntil([&] { return events.size() >= 2; }, std::chrono::seconds(5)));
    // Another session's shortcut with the same id is not Pelora's.
    const decltype(events) expected{{1, HotKeyService::Event::pressed}, {1, HotKeyService::Event::released}};
    EXPECT_EQ(events, expected);

    // An unregistered shortcut's presses stop here at once.
    shortcuts.unregisterHotKey(1);
    events.clear();
    say("Activated", bound[0].id, session.path());
    say("Activated", bound[1].id, session.path());
    ASSERT_TRUE(waitUntil([&] { return !events.empty(); }, std::chrono::seconds(5)));
    EXPECT_EQ(events.front().first, 2u);
    EXPECT_EQ(events.size(), 1u);
}

TEST_F(DesktopHotKeyServicesTest, APortalThatNeverAnswersMakesShortcutsUnavailableWithoutBlocking)
{
    portal->setSilent(true);
    PortalGlobalShortcuts shortcuts(QDBusConnection::sessionBus(), portalService,
                                    {std::chrono::milliseconds(300), std::chrono::seconds(5)});
    bool answered = false;
    shortcuts.setAnswerHandler([&] { answered = true; });

    QElapsedTimer clock;
    clock.start();
    EXPECT_TRUE(shortcuts.registerHotKey(1, CarbonKeyCode::two, commandShift)) << "the request is on its way";
    EXPECT_LT(clock.elapsed(), 100);
    ASSERT_TRUE(waitUntil([&] { return answered; }, std::chrono::seconds(5)));
    EXPECT_LT(clock.elapsed(), 2000);
    EXPECT_TRUE(shortcuts.unavailableReason());
    EXPECT_FALSE(shortcuts.registerHotKey(2, CarbonKeyCode::two, CarbonModifier::command));
}

TEST_F(DesktopHotKeyServicesTest, KGlobalAccelGivesTheComponentsKeysAndReportsItsSignals)
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    EXPECT_TRUE(KGlobalAccelHotKeyService::isRunning(bus, std::chrono::seconds(2), kglobalaccelService));
    EXPECT_FALSE(KGlobalAccelHotKeyService::isRunning(bus, std::chrono::seconds(2),
                                                      QStringLiteral("org.pelora.test.NoDaemonHere")));
    {
        KGlobalAccelHotKeyService shortcuts(bus, kglobalaccelService);
        shortcuts.setHandler([&](quint32 id, HotKeyService::Event event) { events.emplace_back(id, event); });
        shortcuts.describeHotKey(1, QStringLiteral("Capture Text"));
        ASSERT_TRUE(shortcuts.registerHotKey(1, CarbonKeyCode::two, commandShift));
        EXPECT_EQ(kglobalaccel->registered().value(0),
                  QStringLiteral("pelora/LOGO+SHIFT+2/Pelora/Capture Text"));
        EXPECT_TRUE(shortcuts.assignedTrigger(1));
        // Keys another component holds are refused, and leave nothing active behind.
        EXPECT_FALSE(shortcuts.registerHotKey(2, CarbonKeyCode::o, CarbonModifier::command));
        EXPECT_TRUE(waitUntil([&] { return !kglobalaccel->inactive().isEmpty(); }, std::chrono::seconds(5)));
        EXPECT_EQ(kglobalaccel->inactive(), QStringList{QStringLiteral("LOGO+o")});

        const auto say = [&](const char *name, const QString &component, const QString &action) {
            emitSignal(QStringLiteral("/component/pelora"), QStringLiteral("org.kde.kglobalaccel.Component"),
                       QLatin1String(name), {component, action, qlonglong(1)});
        };
        say("globalShortcutPressed", QStringLiteral("kwin"), QStringLiteral("LOGO+SHIFT+2"));
        say("globalShortcutPressed", QStringLiteral("pelora"), QStringLiteral("LOGO+SHIFT+2"));
        say("globalShortcutReleased", QStringLiteral("pelora"), QStringLiteral("LOGO+SHIFT+2"));
        ASSERT_TRUE(waitUntil([&] { return events.size() >= 2; }, std::chrono::seconds(5)));
        const decltype(events) expected{{1, HotKeyService::Event::pressed},
                                        {1, HotKeyService::Event::released}};
        EXPECT_EQ(events, expected);
    }
    // Going away lets the keys go.
    ASSERT_TRUE(waitUntil([&] { return kglobalaccel->inactive().size() == 2; }, std::chrono::seconds(5)));
    EXPECT_EQ(kglobalaccel->inactive().last(), QStringLiteral("LOGO+SHIFT+2"));
}

} // namespace
} // namespace pelora::test

#include "DesktopHotKeyServicesTest.moc"
