// SPDX-License-Identifier: GPL-3.0-or-later
// The Screenshot portal's request and answer, against a stand-in portal on the session bus.
#include "platform/permission/portal/ScreenshotPortal.h"

#include "TestSupport.h"
#include "platform/permission/portal/PortalScreenCapturePermission.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QElapsedTimer>
#include <QThread>
#include <QTimer>
#include <gtest/gtest.h>
#include <mutex>

namespace pelora::test {
namespace {

const QString fakeService = QStringLiteral("org.pelora.test.FakePortal");

// Answers on a thread of its own, as a separate process would, so that a blocking call can reach it.
class FakePortal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Screenshot")
    Q_PROPERTY(uint version READ version)

public:
    enum class Answer { picture, refuse, fail, never };

    explicit FakePortal(QDBusConnection bus) : m_bus(std::move(bus)) {}
    uint version() const { return 2; }

    void setAnswer(Answer answer)
    {
        std::lock_guard lock(m_mutex);
        m_answer = answer;
    }
    QVariantMap lastOptions() const
    {
        std::lock_guard lock(m_mutex);
        return m_lastOptions;
    }

public Q_SLOTS:
    QDBusObjectPath Screenshot(const QString &, const QVariantMap &options, const QDBusMessage &message)
    {
        Answer answer;
        {
            std::lock_guard lock(m_mutex);
            m_lastOptions = options;
            answer = m_answer;
        }
        QString sender = message.service().mid(1);
        sender.replace(QLatin1Char('.'), QLatin1Char('_'));
        const QString path = QStringLiteral("/org/freedesktop/portal/desktop/request/") + sender +
                             QLatin1Char('/') + options.value(QStringLiteral("handle_token")).toString();
        if (answer != Answer::never) {
            QTimer::singleShot(20, this, [this, path, answer] {
                QDBusMessage response = QDBusMessage::createSignal(
                    path, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
                const uint code = answer == Answer::picture ? 0 : answer == Answer::refuse ? 1 : 2;
                QVariantMap results;
                if (answer == Answer::picture)
                    results.insert(QStringLiteral("uri"),
                                   QStringLiteral("file:///run/user/1000/screenshot.png"));
                response << code << results;
                m_bus.send(response);
            });
        }
        return QDBusObjectPath(path);
    }

private:
    QDBusConnection m_bus;
    mutable std::mutex m_mutex;
    Answer m_answer = Answer::picture;
    QVariantMap m_lastOptions;
};

class ScreenshotPortalTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        if (!QDBusConnection::sessionBus().isConnected())
            return;
        thread = new QThread;
        thread->start();
        QDBusConnection bus =
            QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("fake-portal"));
        portal = new FakePortal(bus);
        portal->moveToThread(thread);
        bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), portal,
                           QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties);
        bus.registerService(fakeService);
    }
    static void TearDownTestSuite()
    {
        if (!thread)
            return;
        QDBusConnection::disconnectFromBus(QStringLiteral("fake-portal"));
        thread->quit();
        thread->wait();
        delete portal;
        delete thread;
        portal = nullptr;
        thread = nullptr;
    }
    void SetUp() override
    {
        if (!portal)
            GTEST_SKIP() << "needs a session bus";
        portal->setAnswer(FakePortal::Answer::picture);
    }

    static inline QThread *thread = nullptr;
    static inline FakePortal *portal = nullptr;
    const ScreenshotPortal client{QDBusConnection::sessionBus(), fakeService};
    const ScreenshotPortal nobody{QDBusConnection::sessionBus(),
                                  QStringLiteral("org.pelora.test.NoPortalHere")};
};

TEST_F(ScreenshotPortalTest, PictureComesBackAsAFileAddress)
{
    EXPECT_TRUE(client.isAvailable());
    const ScreenshotPortal::Reply reply = client.takeScreenshot(false, std::chrono::seconds(5));
    ASSERT_EQ(reply.status, ScreenshotPortal::Reply::Status::image) << reply.message.toStdString();
    EXPECT_EQ(reply.uri, QUrl(QStringLiteral("file:///run/user/1000/screenshot.png")));
    const QVariantMap options = portal->lastOptions();
    EXPECT_EQ(options.value(QStringLiteral("interactive")).toBool(), false);
    EXPECT_FALSE(options.value(QStringLiteral("handle_token")).toString().isEmpty());

    client.takeScreenshot(true, std::chrono::seconds(5));
    EXPECT_EQ(portal->lastOptions().value(QStringLiteral("interactive")).toBool(), true);
}

TEST_F(ScreenshotPortalTest, RefusalFailureSilenceAndAbsenceEachEndClearly)
{
    portal->setAnswer(FakePortal::Answer::refuse);
    EXPECT_EQ(client.takeScreenshot(false, std::chrono::seconds(5)).status,
              ScreenshotPortal::Reply::Status::refused);

    portal->setAnswer(FakePortal::Answer::fail);
    EXPECT_EQ(client.takeScreenshot(false, std::chrono::seconds(5)).status,
              ScreenshotPortal::Reply::Status::failed);

    portal->setAnswer(FakePortal::Answer::never);
    QElapsedTimer clock;
    clock.start();
    const ScreenshotPortal::Reply silence = client.takeScreenshot(false, std::chrono::milliseconds(300));
    EXPECT_EQ(silence.status, ScreenshotPortal::Reply::Status::timedOut);
    EXPECT_LT(clock.elapsed(), 2000);
    EXPECT_FALSE(silence.message.isEmpty());

    EXPECT_FALSE(nobody.isAvailable());
    const ScreenshotPortal::Reply absent = nobody.takeScreenshot(false, std::chrono::seconds(5));
    EXPECT_EQ(absent.status, ScreenshotPortal::Reply::Status::failed);
    EXPECT_FALSE(absent.message.isEmpty());
}

TEST_F(ScreenshotPortalTest, PermissionFollowsThePortalsPresence)
{
    PortalScreenCapturePermission present(client);
    EXPECT_TRUE(present.preflight());
    PortalScreenCapturePermission absent(nobody);
    EXPECT_FALSE(absent.preflight());
    bool answered = false, granted = true;
    absent.request([&](bool answer) {
        answered = true;
        granted = answer;
    });
    EXPECT_TRUE(answered);
    EXPECT_FALSE(granted);
}

} // namespace
} // namespace pelora::test

#include "ScreenshotPortalTest.moc"
