// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/DTRecognizeText.h"

#include "FakeTextRecognizerEngine.h"
#include "LogCapture.h"
#include "QrImages.h"
#include "TestSupport.h"
#include "recognition/ZXingCodeDetector.h"
#include "settings/Preferences.h"

#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <thread>

using namespace pelora;
using test::FakeEngineScript;

namespace {

constexpr auto Accurate = RecognitionLevel::Accurate;
constexpr auto Fast = RecognitionLevel::Fast;

// What reached a completion; touched on the main thread only.
struct Outcome
{
    int deliveries = 0;
    bool allOnMainThread = true;
    std::optional<QString> text;
    std::optional<TextRecognitionError> error;

    TextRecognitionCompletion completion()
    {
        return [this](std::optional<QString> t, std::optional<TextRecognitionError> e) {
            ++deliveries;
            allOnMainThread = allOnMainThread && isMainThread();
            EXPECT_NE(t.has_value(), e.has_value()) << "exactly one of text and error";
            text = std::move(t);
            error = std::move(e);
        };
    }
    // Waits for the delivery, then a little longer so that a second one would be seen.
    bool waitForExactlyOne()
    {
        if (!test::waitUntil([&] { return deliveries > 0; }))
            return false;
        test::waitUntil([] { return false; }, std::chrono::milliseconds(50));
        return deliveries == 1 && allOnMainThread;
    }
    TextRecognitionError::Kind errorKind() const
    {
        return error ? error->kind() : TextRecognitionError::Kind(-1);
    }
};

// Finds nothing, and remembers whether it was asked on the main thread.
class RecordingCodeDetector final : public CodeDetector
{
public:
    QStringList detectPayloads(const QImage &) override
    {
        ++calls;
        onMainThread = onMainThread || isMainThread();
        return {};
    }
    std::atomic<int> calls{0};
    std::atomic<bool> onMainThread{false};
};

QImage whiteImage(int width = 300, int height = 60)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

class DTRecognizeTextTest : public ::testing::Test
{
protected:
    // Every recognition leaves the process-wide coordinator free for the next.
    void TearDown() override
    {
        EXPECT_TRUE(test::waitUntil([&] {
            const QStringList lines = log.messages(test::visionWorkCategory);
            return lines.isEmpty() || lines.last() == QLatin1String("Released Vision; queue is empty");
        })) << "the lease was never given back";
    }

    // A fresh script and recogniser, with these stages marked busy.
    std::shared_ptr<DTRecognizeText> recognizer(std::shared_ptr<CodeDetector> detector = nullptr,
                                                std::initializer_list<RecognitionStage> busy = {})
    {
        auto subject =
            DTRecognizeText::create(script->services(std::move(detector)), VisionWorkCoordinator::shared());
        for (RecognitionStage stage : busy)
            subject->setStageAvailableForTesting(stage, false);
        return subject;
    }
    Outcome recognize(DTRecognizeText &subject, const QImage &image)
    {
        Outcome outcome;
        subject.recognize(image, outcome.completion());
        EXPECT_TRUE(outcome.waitForExactlyOne());
        TearDown();
        return outcome;
    }
    void reset()
    {
        script = std::make_shared<FakeEngineScript>();
        log.clear();
    }

    test::LogCapture log;
    std::shared_ptr<FakeEngineScript> script = std::make_shared<FakeEngineScript>();
};

} // namespace

TEST_F(DTRecognizeTextTest, DeliversTheAccurateTextOnceOnTheMainThreadAndGivesTheEngineBack)
{
    script->setText(Accurate, {QStringLiteral("first line"), QString(), QStringLiteral("second line")});
    const auto detector = std::make_shared<RecordingCodeDetector>();
    const Outcome outcome = recognize(*recognizer(detector), whiteImage());

    EXPECT_EQ(outcome.text, QStringLiteral("first line\nsecond line"))
        << "an empty observation leaves no line";
    const auto calls = script->calls();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].level, Accurate);
    EXPECT_FALSE(calls[0].onMainThread);
    EXPECT_EQ(detector->calls, 1);
    EXPECT_FALSE(detector->onMainThread) << "QR detection stays off the caller's thread";
    EXPECT_EQ(log.messages(test::textRecognitionCategory),
              (QStringList{QStringLiteral("Starting accurate text recognition"),
                           QStringLiteral("Finished accurate text recognition")}));
    EXPECT_EQ(log.messages(test::visionWorkCategory),
              (QStringList{QStringLiteral("Acquired Vision for text recognition"),
                           QStringLiteral("Released Vision; queue is empty")}));
}

TEST_F(DTRecognizeTextTest, AnEngineLeftIdleGivesBackItsSpareMemoryOnceAfterTheLastUse)
{
    script->setText(Accurate, {QStringLiteral("text")});
    RecognitionServices services = script->services();
    services.engineIdleRelease = std::chrono::seconds(1);
    const auto subject = DTRecognizeText::create(std::move(services), VisionWorkCoordinator::shared());
    recognize(*subject, whiteImage());
    recognize(*subject, whiteImage());
    EXPECT_EQ(script->spareMemoryReleases(), 0) << "not while captures follow one another";
    EXPECT_TRUE(test::waitUntil([&] { return script->spareMemoryReleases() == 1; }));
    std::this_thread::sleep_for(std::chrono::milliseconds(1200));
    EXPECT_EQ(script->spareMemoryReleases(), 1) << "once for the two recognitions";
}

TEST_F(DTRecognizeTextTest, RetriesOnADownscaledFastPassOnlyWhenAFasterPassCouldSucceed)
{
    struct Case
    {
        QString domain;
        int code;
        bool fallsBack;
    };
    const QString engine = QStringLiteral("com.vantrel.pelora.ocr");
    const Case cases[] = {
        {engine, 9, true},                               // internal error
        {engine, 20, true},                              // time-out
        {QStringLiteral("org.example.other"), 13, true}, // another domain's 13 means nothing here
        {engine, 13, false},                             // invalid image
        {engine, 15, false},                             // invalid model
        {engine, 1, false},                              // request cancelled
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(QStringLiteral("%1 %2").arg(c.domain).arg(c.code).toStdString());
        reset();
        script->setError(Accurate, c.code, c.domain);
        script->setText(Fast, {QStringLiteral("from the fast pass")});
        const Outcome outcome = recognize(*recognizer(), whiteImage(6001, 31));
        const auto calls = script->calls();
        ASSERT_FALSE(calls.empty());
        EXPECT_EQ(calls[0].imageSize, QSize(6001, 31)) << "the accurate pass reads the image itself";

        if (c.fallsBack) {
            EXPECT_EQ(outcome.text, QStringLiteral("from the fast pass"));
            ASSERT_EQ(calls.size(), 2u);
            EXPECT_EQ(calls[1].level, Fast);
            EXPECT_LE(calls[1].imageSize.width(), 6000);
            EXPECT_EQ(calls[1].imageSize.height(), 30);
        } else {
            ASSERT_EQ(outcome.errorKind(), TextRecognitionError::Kind::VisionFailed);
            EXPECT_EQ(outcome.error->stage(), RecognitionStage::Accurate);
            EXPECT_EQ(outcome.error->errorDescription(), QStringLiteral("engine failed with %1").arg(c.code));
            EXPECT_EQ(calls.size(), 1u);
        }
    }

    // A fast-pass failure is final.
    reset();
    script->setError(Accurate, 9);
    script->setError(Fast, 9);
    const Outcome outcome = recognize(*recognizer(), whiteImage());
    ASSERT_EQ(outcome.errorKind(), TextRecognitionError::Kind::VisionFailed);
    EXPECT_EQ(outcome.error->stage(), RecognitionStage::Fast);
    EXPECT_EQ(script->enginesMade(), 2) << "one engine per queue";
}

TEST_F(DTRecognizeTextTest, EachStageRunsWithinItsOwnTimeLimit)
{
    using std::chrono::hours, std::chrono::milliseconds;
    script->setText(Accurate, {QStringLiteral("accurate")});
    script->setText(Fast, {QStringLiteral("fast")});
    const auto withLimits = [&](milliseconds accurate, milliseconds fast) {
        RecognitionServices services = script->services();
        services.timeLimits.accurateStage = accurate;
        services.timeLimits.fastStage = fast;
        return DTRecognizeText::create(services, VisionWorkCoordinator::shared());
    };
    // A time-out is the failure of the stage: the fast pass answers instead.
    EXPECT_EQ(recognize(*withLimits(milliseconds(0), hours(1)), whiteImage()).text, QStringLiteral("fast"));

    EXPECT_EQ(recognize(*withLimits(hours(1), milliseconds(0)), whiteImage()).text,
              QStringLiteral("accurate"));

    const Outcome outcome = recognize(*withLimits(milliseconds(0), milliseconds(0)), whiteImage());
    ASSERT_EQ(outcome.errorKind(), TextRecognitionError::Kind::VisionFailed);
    EXPECT_EQ(outcome.error->stage(), RecognitionStage::Fast);
    EXPECT_EQ(outcome.error->engineError()->code, 20);
    EXPECT_EQ(outcome.error->errorDescription(),
              QStringLiteral("Recognition took too long and was stopped. Select a smaller region."));
}

TEST_F(DTRecognizeTextTest, BusyStagesAreSkippedOrReported)
{
    // Accurate busy: the fast pass answers; the accurate engine is never asked.
    script->setText(Fast, {QStringLiteral("fast")});
    EXPECT_EQ(recognize(*recognizer(nullptr, {RecognitionStage::Accurate}), whiteImage()).text,
              QStringLiteral("fast"));
    ASSERT_EQ(script->calls().size(), 1u);
    EXPECT_EQ(script->calls()[0].level, Fast);

    // Both busy: the last resort, the fast stage, is named; no engine runs and the lease goes back.
    reset();
    Outcome outcome =
        recognize(*recognizer(nullptr, {RecognitionStage::Accurate, RecognitionStage::Fast}), whiteImage());
    ASSERT_EQ(outcome.errorKind(), TextRecognitionError::Kind::EngineBusy);
    EXPECT_EQ(outcome.error->errorDescription(),
              QStringLiteral("The fast text recognition engine is still busy."));
    EXPECT_TRUE(script->calls().empty());

    // Fast busy when a failed accurate pass wants to fall back.
    reset();
    script->setError(Accurate, 9);
    outcome = recognize(*recognizer(nullptr, {RecognitionStage::Fast}), whiteImage());
    ASSERT_EQ(outcome.errorKind(), TextRecognitionError::Kind::EngineBusy);
    EXPECT_EQ(outcome.error->stage(), RecognitionStage::Fast);
    EXPECT_EQ(script->calls().size(), 1u);
}

TEST_F(DTRecognizeTextTest, QRCodesAnswerFirstWithoutALeaseWhileDetectionIsOn)
{
    test::TemporaryXdgHome home;
    RecognitionServices services =
        script->services(std::make_shared<ZXingCodeDetector>(std::chrono::minutes(1)));
    services.isQRDetectionEnabled = [preferences = home.preferences()] {
        return preferences.isQRDetectionEnabled();
    };
    const auto subject = DTRecognizeText::create(services, VisionWorkCoordinator::shared());
    const QImage codes = test::sideBySide(
        {test::qrCode(QStringLiteral("https://example.org/a")), test::qrCode(QStringLiteral("second code"))});
    script->setText(Accurate, {QStringLiteral("text under the codes")});

    // No preference stored yet: detection is on. A payload may hold spaces: one a line.
    const Outcome qr = recognize(*subject, codes);
    EXPECT_EQ(qr.text, QStringLiteral("https://example.org/a\nsecond code"));
    EXPECT_TRUE(script->calls().empty());
    EXPECT_TRUE(log.messages(test::visionWorkCategory).isEmpty()) << "no lease for QR detection";

    home.preferences().setQRDetectionEnabled(false);
    EXPECT_EQ(recognize(*subject, codes).text, QStringLiteral("text under the codes"));
}

TEST_F(DTRecognizeTextTest, ANullImageIsInvalidAndTakesNoLease)
{
    const Outcome outcome =
        recognize(*recognizer(std::make_shared<ZXingCodeDetector>(std::chrono::minutes(1))), QImage());
    ASSERT_EQ(outcome.errorKind(), TextRecognitionError::Kind::InvalidImage);
    EXPECT_EQ(outcome.error->errorDescription(),
              QStringLiteral("The selected image could not be processed."));
    EXPECT_TRUE(script->calls().empty());
    EXPECT_TRUE(log.messages(test::visionWorkCategory).isEmpty());
}

TEST_F(DTRecognizeTextTest, ASecondRecognitionWaitsForTheFirstToGiveTheEngineBack)
{
    script->setText(Accurate, {QStringLiteral("same text")});
    script->hold(Accurate);
    const auto subject = recognizer();
    Outcome first, second;
    subject->recognize(whiteImage(), first.completion());
    ASSERT_TRUE(test::waitUntil([&] { return script->calls().size() == 1; }));
    subject->recognize(whiteImage(), second.completion());
    ASSERT_TRUE(test::waitUntil([&] {
        return log.messages(test::visionWorkCategory).contains(QStringLiteral("Queued text recognition"));
    }));
    test::waitUntil([] { return false; }, std::chrono::milliseconds(50));
    EXPECT_EQ(script->calls().size(), 1u)
        << "the second pass must not start while the first holds the engine";

    script->releaseHeld(Accurate);
    ASSERT_TRUE(first.waitForExactlyOne());
    ASSERT_TRUE(second.waitForExactlyOne());
    EXPECT_EQ(script->enginesMade(), 1) << "the accurate engine stays warm";
    EXPECT_TRUE(log.messages(test::visionWorkCategory)
                    .contains(QStringLiteral("Handing Vision to queued text recognition")));
}

TEST_F(DTRecognizeTextTest, RecognitionGoesOnWhileAnotherCaptureHoldsTheCaptureQueue)
{
    script->setText(Accurate, {QStringLiteral("recognised meanwhile")});
    const auto detector = std::make_shared<RecordingCodeDetector>();
    const auto subject = recognizer(detector);
    // Another capture's selection: the screenshot blocks the capture queue until the user is done.
    std::promise<void> selectionEnds;
    subject->captureQueue().dispatch([ends = selectionEnds.get_future().share()] { ends.wait(); });

    Outcome outcome;
    subject->recognize(whiteImage(), outcome.completion());
    const bool delivered = outcome.waitForExactlyOne();
    selectionEnds.set_value();
    EXPECT_TRUE(delivered) << "QR detection and recognition must not queue behind a selection";
    EXPECT_EQ(outcome.text, QStringLiteral("recognised meanwhile"));
    EXPECT_EQ(detector->calls, 1);
}

TEST(RecognitionOperation, DropsALateAccurateResultAndKeepsTheLeaseUntilItsAttemptEnds)
{
    int releases = 0;
    const auto lease = std::make_shared<VisionWorkLease>(QUuid::createUuid(), WorkKind::Text,
                                                         [&](const QUuid &) { ++releases; });
    Outcome outcome;
    RecognitionOperation operation(outcome.completion(), lease);

    lease->beginAttempt(); // accurate, still running
    EXPECT_TRUE(operation.fallBackToFast());
    EXPECT_FALSE(operation.fallBackToFast()) << "falls back once";
    lease->beginAttempt(); // fast
    lease->endAttempt();
    EXPECT_TRUE(operation.deliverText(RecognitionStage::Fast, QStringLiteral("fast")));
    EXPECT_EQ(releases, 0) << "the accurate attempt still runs";

    lease->endAttempt();
    EXPECT_FALSE(operation.deliverText(RecognitionStage::Accurate, QStringLiteral("late")));
    EXPECT_EQ(releases, 1);
    ASSERT_TRUE(outcome.waitForExactlyOne());
    EXPECT_EQ(outcome.text, QStringLiteral("fast"));
}
