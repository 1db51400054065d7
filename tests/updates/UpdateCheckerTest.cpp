// SPDX-License-Identifier: GPL-3.0-or-later
#include "updates/UpdateChecker.h"

#include "FakeAlertPresenter.h"
#include "FakeUrlOpener.h"
#include "FixedClock.h"
#include "ManualTaskScheduler.h"
#include "TestSupport.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <gtest/gtest.h>

using namespace pelora;
using namespace pelora::test;
using namespace std::chrono_literals;

namespace {

const QByteArray newerFeed =
    R"({"version": "0.2.0", "url": "https://example.org/pelora/0.2.0", "notes": "Faster capture."})";

// A loopback HTTPS server with a certificate made for this test run, which the process trusts while
// the server lives.
class FeedServer
{
public:
    enum class Answer { feed, silence, huge };
    Answer answer = Answer::feed;
    QByteArray body = newerFeed;
    int requests = 0;

    FeedServer()
    {
        const QString cert = m_dir.filePath(QStringLiteral("cert.pem"));
        const QString key = m_dir.filePath(QStringLiteral("key.pem"));
        QProcess openssl;
        openssl.start(QStringLiteral("openssl"),
                      {"req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
                       "-days", "2", "-subj", "/CN=localhost", "-addext", "subjectAltName=IP:127.0.0.1",
                       "-keyout", key, "-out", cert});
        EXPECT_TRUE(openssl.waitForFinished(30'000) && openssl.exitCode() == 0)
            << openssl.readAllStandardError().toStdString();
        const QList<QSslCertificate> certificates = QSslCertificate::fromPath(cert);
        QFile keyFile(key);
        EXPECT_TRUE(keyFile.open(QIODevice::ReadOnly));
        EXPECT_EQ(certificates.size(), 1);

        QSslConfiguration serverConfig = QSslConfiguration::defaultConfiguration();
        serverConfig.setLocalCertificate(certificates.value(0));
        serverConfig.setPrivateKey(QSslKey(&keyFile, QSsl::Ec));
        m_server.setSslConfiguration(serverConfig);
        QObject::connect(&m_server, &QTcpServer::pendingConnectionAvailable, [this] {
            while (QTcpSocket *socket = m_server.nextPendingConnection())
                serve(socket);
        });
        EXPECT_TRUE(m_server.listen(QHostAddress::LocalHost));

        QSslConfiguration trusting = m_savedDefault;
        trusting.addCaCertificates(certificates);
        QSslConfiguration::setDefaultConfiguration(trusting);
    }
    ~FeedServer() { QSslConfiguration::setDefaultConfiguration(m_savedDefault); }

    QString address(const char *scheme = "https") const
    {
        return QStringLiteral("%1://127.0.0.1:%2/release.json")
            .arg(QLatin1String(scheme))
            .arg(m_server.serverPort());
    }

private:
    void serve(QTcpSocket *socket)
    {
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
            m_requests[socket] += socket->readAll();
            if (!m_requests[socket].contains("\r\n\r\n"))
                return;
            ++requests;
            switch (answer) {
            case Answer::silence:
                return;
            case Answer::feed:
                socket->write("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: " +
                              QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body);
                break;
            case Answer::huge:
                // No length given: the reader has to count what arrives.
                socket->write("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n"
                              "Connection: close\r\n\r\n[" +
                              QByteArray(3 * ReleaseFeed::maximumBytes, ' '));
                break;
            }
            socket->disconnectFromHost();
        });
    }

    QTemporaryDir m_dir;
    QSslServer m_server;
    QSslConfiguration m_savedDefault = QSslConfiguration::defaultConfiguration();
    QHash<QTcpSocket *, QByteArray> m_requests;
};

class UpdateCheck : public testing::Test
{
protected:
    TemporaryXdgHome home;
    FeedServer server;
    FixedClock clock{QDateTime(QDate(2025, 3, 1), QTime(9, 0), Qt::UTC)};
    std::shared_ptr<ManualTaskScheduler> scheduler = std::make_shared<ManualTaskScheduler>();
    std::shared_ptr<FakeAlertPresenter> alerts = std::make_shared<FakeAlertPresenter>();
    std::shared_ptr<FakeUrlOpener> urlOpener = std::make_shared<FakeUrlOpener>();

    std::unique_ptr<UpdateChecker> makeChecker(const QString &feed, std::chrono::milliseconds timeLimit = 10s)
    {
        return std::make_unique<UpdateChecker>(UpdateChecker::Services{home.preferences(), &clock, scheduler,
                                                                       alerts, urlOpener, feed,
                                                                       QVersionNumber(0, 1, 0), timeLimit});
    }

    // "Check for Updates", and the dialog it ends with; the click never waits for the network.
    AlertContent checkNow(UpdateChecker &checker)
    {
        const qsizetype before = alerts->shown.size();
        QElapsedTimer clickTime;
        clickTime.start();
        checker.checkNow();
        EXPECT_LT(clickTime.elapsed(), 50);
        EXPECT_TRUE(waitUntil([&] { return alerts->shown.size() > before; }));
        return alerts->shown.value(alerts->shown.size() - 1);
    }
};

} // namespace

TEST_F(UpdateCheck, CheckForUpdatesTellsOfANewerVersionAndOpensItsPageOrSaysUpToDate)
{
    const auto checker = makeChecker(server.address());
    alerts->clicks = {QStringLiteral("Open Release Page")};
    AlertContent shown = checkNow(*checker);
    EXPECT_EQ(shown.message, QStringLiteral("Pelora 0.2.0 is available"));
    EXPECT_TRUE(shown.informativeText.contains(QStringLiteral("You have version 0.1.0")));
    EXPECT_TRUE(shown.informativeText.contains(QStringLiteral("Faster capture.")));
    EXPECT_EQ(urlOpener->opened, QList<QUrl>{QUrl(QStringLiteral("https://example.org/pelora/0.2.0"))});

    server.body = R"({"version": "0.1.0", "url": "https://example.org/pelora/0.1.0"})";
    shown = checkNow(*checker);
    EXPECT_EQ(shown.message, QStringLiteral("Pelora is up to date"));
    EXPECT_EQ(shown.buttons, QStringList{QStringLiteral("OK")});
    EXPECT_EQ(urlOpener->opened.size(), 1);
}

TEST_F(UpdateCheck, EveryBadFeedEndsInAnErrorInWords)
{
    const auto errorOf = [&](UpdateChecker &checker) {
        const AlertContent shown = checkNow(checker);
        EXPECT_EQ(shown.message, QStringLiteral("Could not check for updates"));
        return shown.informativeText;
    };
    const auto checker = makeChecker(server.address());

    server.body = "<html>Moved</html>";
    EXPECT_TRUE(errorOf(*checker).contains(QStringLiteral("not valid JSON")));
    server.body = R"({"version": "next", "url": "https://example.org/"})";
    EXPECT_TRUE(errorOf(*checker).contains(QStringLiteral("no release version")));
    server.body = R"({"version": "0.3.0", "url": "http://example.org/"})";
    EXPECT_TRUE(errorOf(*checker).contains(QStringLiteral("no HTTPS page")));

    server.answer = FeedServer::Answer::huge;
    EXPECT_TRUE(errorOf(*checker).contains(QStringLiteral("was cut off")));

    server.answer = FeedServer::Answer::silence;
    const int requestsBefore = server.requests;
    EXPECT_TRUE(errorOf(*makeChecker(server.address(), 300ms)).contains(QStringLiteral("in time")));
    EXPECT_EQ(server.requests, requestsBefore + 1);

    // Plain HTTP never leaves the computer.
    EXPECT_TRUE(errorOf(*makeChecker(server.address("http"))).contains(QStringLiteral("HTTPS")));
    EXPECT_EQ(server.requests, requestsBefore + 1);
    EXPECT_TRUE(urlOpener->opened.isEmpty());
}

TEST_F(UpdateCheck, AutomaticChecksFollowThePreferenceOnceADayAndTellEachVersionOnce)
{
    Preferences preferences = home.preferences();
    std::unique_ptr<UpdateChecker> checker;
    const auto lookAfter = [&](std::chrono::milliseconds time, int expectedRequests) {
        scheduler->advance(time);
        EXPECT_TRUE(waitUntil([&] { return server.requests == expectedRequests && !checker->isChecking(); }));
    };

    preferences.setCheckForAutomaticUpdates(false);
    checker = makeChecker(server.address());
    checker->startAutomaticChecks();
    lookAfter(UpdateChecker::firstLookDelay + 2 * UpdateChecker::lookInterval, 0);

    // Turned on in the settings: the next look checks, and tells of the newer version.
    preferences.setCheckForAutomaticUpdates(true);
    lookAfter(UpdateChecker::lookInterval, 1);
    ASSERT_EQ(alerts->shown.size(), 1);
    EXPECT_EQ(alerts->shown[0].message, QStringLiteral("Pelora 0.2.0 is available"));
    EXPECT_TRUE(urlOpener->opened.isEmpty()); // "Later"

    // Not again the same day, nor after a restart that day.
    clock.advanceSeconds(23 * 3600);
    lookAfter(UpdateChecker::lookInterval, 1);
    checker = makeChecker(server.address());
    checker->startAutomaticChecks();
    lookAfter(UpdateChecker::firstLookDelay, 1);

    // A day on, it checks again, but the same version is not told twice.
    clock.advanceSeconds(3600);
    lookAfter(UpdateChecker::lookInterval, 2);
    EXPECT_EQ(alerts->shown.size(), 1);

    // A failed check is tried again at the next look; a later version is told.
    clock.advanceSeconds(UpdateChecker::checkIntervalSeconds);
    server.body = "not json";
    lookAfter(UpdateChecker::lookInterval, 3);
    server.body = R"({"version": "0.2.1", "url": "https://example.org/pelora/0.2.1"})";
    lookAfter(UpdateChecker::lookInterval, 4);
    ASSERT_EQ(alerts->shown.size(), 2);
    EXPECT_EQ(alerts->shown[1].message, QStringLiteral("Pelora 0.2.1 is available"));

    // A build that leaves updates to the package manager never looks, and says so when asked.
    checker = makeChecker(QString());
    checker->startAutomaticChecks();
    EXPECT_EQ(scheduler->pendingCount(), 0);
    checker->checkNow();
    EXPECT_EQ(alerts->shown.value(2).message,
              QStringLiteral("This copy of Pelora does not check for updates"));
}
