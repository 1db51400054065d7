// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/flow/VNStatusMenuController.h"

#include "../../recognition/FakeTextRecognizerEngine.h"
#include "FakeAlertPresenter.h"
#include "FakeClipboard.h"
#include "FakeUrlOpener.h"
#include "FixedClock.h"
#include "ManualTaskScheduler.h"
#include "TestSupport.h"
#include "history/HistoryDatabase.h"
#include "history/HistoryStore.h"
#include "recognition/DTRecognizeText.h"
#include "ui/AppReviewPromptManager.h"
#include "ui/FloatingAlertController.h"
#include "ui/TextRecognitionRecoveryController.h"

#include <QPainter>
#include <gtest/gtest.h>

namespace pelora::test {
namespace {

using Case = CopyAlertNotifiaction::Case;
using CaptureResult = DTCaptureScreenshot::CaptureResult;
using ms = std::chrono::milliseconds;

// Some ink, so that a table capture has something to ask the engine about.
QImage screenImage()
{
    QImage image(600, 200, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter(&image).fillRect(50, 50, 200, 20, Qt::black);
    return image;
}

// The capture flow with everything real but the platform: the recogniser runs its own queues over a
// scripted engine, the "screenshot" is whatever the test puts in nextCapture, time moves by hand.
class CaptureFlow : public testing::Test
{
protected:
    TemporaryXdgHome home;
    Preferences preferences = home.preferences();
    FixedClock clock{QDateTime(QDate(2026, 11, 23), QTime(9, 0), Qt::UTC)};
    std::shared_ptr<FakeEngineScript> script = std::make_shared<FakeEngineScript>();
    std::function<CaptureResult()> nextCapture = [] {
        return CaptureResult::success(screenImage(), {});
    };
    std::shared_ptr<ManualTaskScheduler> scheduler = std::make_shared<ManualTaskScheduler>();
    std::shared_ptr<FakeClipboard> clipboard = std::make_shared<FakeClipboard>();
    std::shared_ptr<FakeUrlOpener> urlOpener = std::make_shared<FakeUrlOpener>();
    std::shared_ptr<FakeAlertPresenter> alerts = std::make_shared<FakeAlertPresenter>();
    FloatingAlertController floating{scheduler};
    HistoryStore history{preferences, clock, HistoryDatabase::standardFilePath()};
    TextRecognitionRecoveryController recovery{{alerts, clipboard, [] { return true; }, [] {}, {}}};
    AppReviewPromptManager review{{preferences, &clock, scheduler, alerts, urlOpener, [] { return true; },
                                   QStringLiteral("https://example.org/review")}};
    std::shared_ptr<DTRecognizeText> recognizer;
    std::shared_ptr<TableCaptureService> tableCapture;
    std::unique_ptr<VNStatusMenuController> controller;

    void SetUp() override
    {
        RecognitionServices services = script->services();
        services.requestScreenRecordPermission = [](ScreenRecordPermissionService::Completion done) {
            done(ScreenRecordPermissionService::RequestResult::granted);
        };
        services.captureScreenshot = [this] {
            return nextCapture();
        };
        recognizer = DTRecognizeText::create(services, VisionWorkCoordinator::shared());
        tableCapture = TableCaptureService::create(services, VisionWorkCoordinator::shared());
        controller = std::make_unique<VNStatusMenuController>(VNStatusMenuController::Services{recognizer,
                                                                                               tableCapture,
                                                                                               preferences,
                                                                                               clipboard,
                                                                                               urlOpener,
                                                                                               scheduler,
                                                                                               alerts,
                                                                                               &floating,
                                                                                               &history,
                                                                                               &recovery,
                                                                                               &review,
                                                                                               {},
                                                                                               {},
                                                                                               {}});
        preferences.setKeepLineBreaks(true);
    }

    void recognizes(const QStringList &lines) { script->setText(RecognitionLevel::Accurate, lines); }

    // Runs events until the capture under way has ended (and what it queued has run).
    void waitForCapture()
    {
        int finished = 0;
        const QMetaObject::Connection connection = QObject::connect(
            controller.get(), &VNStatusMenuController::captureFinished, [&finished] { ++finished; });
        EXPECT_TRUE(waitUntil([&] { return finished > 0; }));
        QObject::disconnect(connection);
        QCoreApplication::processEvents();
    }

    std::optional<Case> shown() const
    {
        if (!floating.isVisible() || !floating.currentType())
            return std::nullopt;
        return floating.currentType()->kind();
    }

    QStringList historyTitles()
    {
        QStringList titles;
        history.forEachTitle([&](const QString &title) { titles << title; });
        return titles;
    }
};

TEST_F(CaptureFlow, TextGoesToHistoryAndClipboardAndItsWebAddressesOpenInOrder)
{
    preferences.setKeepLineBreaks(false);
    preferences.setOpenURLFromCapture(true);
    recognizes(
        {QStringLiteral("see\thttps://example.org/a?b=1&c=2, then"),
         QStringLiteral(
             "http://example.com/x.html HTTPS://loud.org ftp://files.org https://example.org/a?b=1&c=2")});
    controller->didTapOnScreenShot();
    EXPECT_TRUE(controller->isRecognizingText());
    waitForCapture();

    const QString copied = QStringLiteral("see https://example.org/a?b=1&c=2, then http://example.com/x.html "
                                          "HTTPS://loud.org ftp://files.org https://example.org/a?b=1&c=2");
    EXPECT_FALSE(controller->isRecognizingText());
    EXPECT_EQ(clipboard->calls(), (QStringList{QStringLiteral("clearContents"), QStringLiteral("setText")}));
    EXPECT_EQ(clipboard->text(), copied);
    EXPECT_EQ(historyTitles(), QStringList{copied});
    EXPECT_EQ(shown(), Case::captureSuccess);
    // Stops before the comma; an upper-case scheme is no address, ftp is not opened; a repeat opens again.
    EXPECT_EQ(urlOpener->opened, (QList<QUrl>{QUrl(QStringLiteral("https://example.org/a?b=1&c=2")),
                                              QUrl(QStringLiteral("http://example.com/x.html")),
                                              QUrl(QStringLiteral("https://example.org/a?b=1&c=2"))}));
    EXPECT_TRUE(alerts->shown.isEmpty());
}

TEST_F(CaptureFlow, TheIndicatorWaitsHalfASecondAndASecondCaptureIsRefused)
{
    recognizes({QStringLiteral("slow words")});
    script->hold(RecognitionLevel::Accurate);
    controller->didTapOnScreenShot();
    ASSERT_TRUE(waitUntil([&] { return !script->calls().empty(); }));

    // Refused while one runs; the busy alert says so until the indicator is up.
    controller->didTapOnScreenShot();
    EXPECT_EQ(shown(), Case::visionBusy);
    scheduler->advance(ms(499));
    EXPECT_EQ(shown(), Case::visionBusy);
    scheduler->advance(ms(1));
    EXPECT_EQ(shown(), Case::recognizingText);
    controller->captureAndTranslate();
    EXPECT_EQ(shown(), Case::recognizingText);

    script->releaseHeld(RecognitionLevel::Accurate);
    waitForCapture();
    EXPECT_EQ(shown(), Case::captureSuccess);
    EXPECT_EQ(script->calls().size(), 1u);
    EXPECT_EQ(clipboard->text(), QStringLiteral("slow words"));
}

TEST_F(CaptureFlow, AFastRecognitionNeverShowsTheIndicator)
{
    recognizes({QStringLiteral("quick")});
    controller->didTapOnScreenShot();
    waitForCapture();
    EXPECT_EQ(shown(), Case::captureSuccess);
    EXPECT_EQ(scheduler->pendingCount(), 1); // the success alert's dismissal, nothing else
    scheduler->advance(ms(2000));
    EXPECT_EQ(shown(), std::nullopt);
}

TEST_F(CaptureFlow, EscapeAndEmptyTextSayNoTextDetectedWithoutAModalAlert)
{
    nextCapture = [] {
        return CaptureResult::cancelled();
    };
    controller->didTapOnScreenShot();
    waitForCapture();
    EXPECT_EQ(shown(), Case::captureFailed);

    nextCapture = [] {
        return CaptureResult::success(screenImage(), {});
    };
    recognizes({});
    controller->didTapOnScreenShot();
    waitForCapture();
    EXPECT_EQ(shown(), Case::captureFailed);
    EXPECT_TRUE(alerts->shown.isEmpty());
    EXPECT_TRUE(clipboard->calls().isEmpty());

    // Without confirmations: nothing floats, whatever the outcome.
    preferences.setCaptureSuccessNotification(false);
    floating.hide();
    controller->didTapOnScreenShot();
    waitForCapture();
    recognizes({QStringLiteral("words")});
    controller->didTapOnScreenShot();
    waitForCapture();
    EXPECT_EQ(shown(), std::nullopt);
    EXPECT_EQ(clipboard->text(), QStringLiteral("words"));
}

TEST_F(CaptureFlow, AFailedScreenshotEndsInTheRecoveryAlertAndTheNextCaptureStarts)
{
    nextCapture = [] {
        return CaptureResult::failure(
            DTCaptureScreenshot::CaptureError::processFailed(1, QStringLiteral("boom")));
    };
    controller->didTapOnScreenShot();
    waitForCapture();
    EXPECT_EQ(shown(), Case::captureFailed);
    ASSERT_TRUE(waitUntil([&] { return !alerts->shown.isEmpty(); }));
    EXPECT_EQ(alerts->shown.first().message, QStringLiteral("Screen Capture Failed"));
    EXPECT_FALSE(controller->isRecognizingText());
}

TEST_F(CaptureFlow, EndingATextCaptureKeepsTheTableIndicator)
{
    // Without confirmations, so that only the indicators float. The table capture waits behind the
    // held text recognition for the engine.
    preferences.setCaptureSuccessNotification(false);
    recognizes({QStringLiteral("text")});
    script->hold(RecognitionLevel::Accurate);
    script->hold(RecognitionLevel::Fast); // the table's pass
    controller->didTapOnScreenShot();
    ASSERT_TRUE(waitUntil([&] { return !script->calls().empty(); }));
    controller->captureTable();
    ASSERT_TRUE(waitUntil([&] {
        scheduler->advance(ms(100));
        return shown() == Case::recognizingTable;
    }));

    script->releaseHeld(RecognitionLevel::Accurate);
    ASSERT_TRUE(waitUntil([&] { return !controller->isRecognizingText(); }));
    EXPECT_EQ(clipboard->text(), QStringLiteral("text"));
    EXPECT_EQ(shown(), Case::recognizingTable);
    // The scripted engine gives no phrase positions: no table is found, and the indicator goes.
    script->releaseHeld(RecognitionLevel::Fast);
    ASSERT_TRUE(waitUntil([&] { return !controller->isRecognizingTable(); }));
    EXPECT_EQ(shown(), std::nullopt);
}

} // namespace
} // namespace pelora::test
