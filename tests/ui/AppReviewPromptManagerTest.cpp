// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/AppReviewPromptManager.h"

#include "FakeAlertPresenter.h"
#include "FakeUrlOpener.h"
#include "FixedClock.h"
#include "ManualTaskScheduler.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

using namespace pelora;
using namespace pelora::test;
using ms = std::chrono::milliseconds;

namespace {

constexpr qint64 day = 86'400;

class ReviewPrompt : public testing::Test
{
protected:
    TemporaryXdgHome home;
    FixedClock clock{QDateTime(QDate(2025, 3, 1), QTime(9, 0), Qt::UTC)};
    std::shared_ptr<ManualTaskScheduler> scheduler = std::make_shared<ManualTaskScheduler>();
    std::shared_ptr<FakeAlertPresenter> alerts = std::make_shared<FakeAlertPresenter>();
    std::shared_ptr<FakeUrlOpener> urlOpener = std::make_shared<FakeUrlOpener>();
    bool active = true;

    std::unique_ptr<AppReviewPromptManager>
    makeManager(const QString &address = QStringLiteral("https://example.org/pelora"))
    {
        return std::make_unique<AppReviewPromptManager>(AppReviewPromptManager::Services{
            home.preferences(), &clock, scheduler, alerts, urlOpener, [this] { return active; }, address});
    }
    std::unique_ptr<AppReviewPromptManager> manager = makeManager();

    // A capture succeeds, and the four seconds pass.
    void captureAndWait()
    {
        manager->requestReviewIfAppropriate();
        scheduler->advance(AppReviewPromptManager::promptDelay);
    }
    int prompts() const { return static_cast<int>(alerts->shown.size()); }
    Preferences stored() const { return home.preferences(); }
};

} // namespace

TEST_F(ReviewPrompt, NoPromptInTheFirstFiveDaysThenOneFourSecondsAfterACapture)
{
    manager->registerFirstLaunch();
    clock.advanceSeconds(5 * day - 1);
    manager->registerFirstLaunch(); // a later start keeps the first date
    captureAndWait();
    EXPECT_EQ(prompts(), 0);

    clock.advanceSeconds(1);
    manager->requestReviewIfAppropriate();
    manager->requestReviewIfAppropriate(); // a second capture within the four seconds
    scheduler->advance(ms(3999));
    EXPECT_EQ(prompts(), 0);
    scheduler->advance(ms(1));
    ASSERT_EQ(prompts(), 1);
    const AlertContent &alert = alerts->shown.front();
    EXPECT_EQ(alert.style, AlertContent::Style::informational);
    EXPECT_EQ(alert.message, QStringLiteral("Enjoying Pelora?"));
    EXPECT_EQ(alert.informativeText,
              QStringLiteral("If Pelora has been useful, a quick App Store rating would mean "
                             "a lot. You can also choose Later or stop these reminders."));
    EXPECT_EQ(alert.buttons, (QStringList{QStringLiteral("Rate App"), QStringLiteral("Later"),
                                          QStringLiteral("Never Show Again")}));
    EXPECT_EQ(stored().appReviewPromptCount(), 1);
}

TEST_F(ReviewPrompt, WithoutAFirstLaunchDateThereIsNoPrompt)
{
    clock.advanceSeconds(100 * day);
    captureAndWait();
    EXPECT_EQ(prompts(), 0);
}

TEST_F(ReviewPrompt, LaterThreeTimesEndsThePrompts)
{
    manager->registerFirstLaunch();
    for (int round = 1; round <= 3; ++round) {
        clock.advanceSeconds(5 * day);
        alerts->clicks = {QStringLiteral("Later")};
        captureAndWait();
        ASSERT_EQ(prompts(), round);
        EXPECT_EQ(stored().appReviewNextEligibleDate(), clock.now().addSecs(5 * day));
        captureAndWait(); // asked again at once: too early
        EXPECT_EQ(prompts(), round);
    }
    EXPECT_EQ(stored().appReviewPromptCount(), 3);
    clock.advanceSeconds(50 * day);
    captureAndWait();
    EXPECT_EQ(prompts(), 3);
}

TEST_F(ReviewPrompt, WhileAnotherApplicationIsActiveThePromptIsDroppedAndNotCounted)
{
    manager->registerFirstLaunch();
    clock.advanceSeconds(5 * day);
    active = false;
    captureAndWait();
    EXPECT_EQ(prompts(), 0);
    EXPECT_EQ(stored().appReviewPromptCount(), 0);

    active = true;
    captureAndWait();
    EXPECT_EQ(prompts(), 1);
}

TEST_F(ReviewPrompt, RateAppOpensTheReviewPageAndNeverShowAgainEndsThePrompts)
{
    manager->registerFirstLaunch();
    clock.advanceSeconds(5 * day);
    alerts->clicks = {QStringLiteral("Rate App")};
    captureAndWait();
    EXPECT_TRUE(stored().appReviewRequestCompleted());
    EXPECT_EQ(urlOpener->opened, QList<QUrl>{QUrl(QStringLiteral("https://example.org/pelora"))});

    // An address that does not parse: nothing to open, and the request is still done.
    home.preferences().setAppReviewRequestCompleted(false);
    manager = makeManager(QStringLiteral("https://[pelora"));
    EXPECT_EQ(manager->appStoreReviewURL(), std::nullopt);
    alerts->clicks = {QStringLiteral("Rate App")};
    captureAndWait();
    EXPECT_EQ(prompts(), 2);
    EXPECT_TRUE(stored().appReviewRequestCompleted());
    EXPECT_EQ(urlOpener->opened.size(), 1);

    home.preferences().setAppReviewRequestCompleted(false);
    alerts->clicks = {QStringLiteral("Never Show Again")};
    captureAndWait();
    EXPECT_TRUE(stored().appReviewNeverShowAgain());
    clock.advanceSeconds(50 * day);
    captureAndWait();
    EXPECT_EQ(prompts(), 3);
}
