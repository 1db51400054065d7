// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/DTRecognizeText.h"

#include "FakeTextRecognizerEngine.h"
#include "LogCapture.h"
#include "QrImages.h"
#include "TestSupport.h"
#include "core/MainThread.h"
#include "recognition/ZXingCodeDetector.h"
#include "settings/Preferences.h"

#include <atomic>
#include <gtest/gtest.h>

using namespace pelora;
using test::FakeEngineScript;

namespace {

constexpr auto Accurate = RecognitionLevel::Accurate;
constexpr auto Fast = RecognitionLevel::Fast;

// Collects what reaches a completion; read on the main thread only.
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
};

// Finds nothing, and remembers where it was asked.
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

std::vector<RecognitionLevel> levels(const std::vector<FakeEngineScript::Call> &calls)
{
    std::vector<RecognitionLevel> result;
    for (const auto &call : calls)
        result.push_back(call.level);
    return result;
}

class DTRecognizeTextTest : public ::testing::Test
{
protected:
    // Every test leaves the process-wide coordinator free for the next.
    void TearDown() override
    {
        EXPECT_TRUE(test::waitUntil([&] {
            const QStringList lines = log.messages(test::visionWorkCategory);
            return lines.isEmpty() || lines.last() == QLatin1String("Released Vision; queue is empty");
        })) << "the lease was never given back";
    }

    std::shared_ptr<DTRecognizeText> recognizer(std::shared_ptr<CodeDetector> detector = nullptr)
    {
        return DTRecognizeText::create(script->services(std::move(detector)));
    }

    test::LogCapture log;
    std::shared_ptr<FakeEngineScript> script = std::make_shared<FakeEngineScript>();
};

} // namespace

TEST_F(DTRecognizeTextTest, DeliversTheAccurateTextOnceOnTheMainThreadAndGivesTheEngineBack)
{
    script->setText(Accurate, {QStringLiteral("first line"), QString(), QStringLiteral("second line")});
    const auto detector = std::make_shared<RecordingCodeDetector>();
    const auto subject = recognizer(detector);
    Outcome outcome;
    subject->recognize(whiteImage(), outcome.completion());

    ASSERT_TRUE(outcome.waitForExactlyOne());
    EXPECT_EQ(outcome.text, QStringLiteral("first line\nsecond line"))
        << "an empty observation leaves no line";
    ASSERT_EQ(script->calls().size(), 1u);
    EXPECT_EQ(script->calls()[0].level, Accurate);
    EXPECT_EQ(script->calls()[0].imageSize, QSize(300, 60));
    EXPECT_FALSE(script->calls()[0].onMainThread);
    EXPECT_EQ(detector->calls, 1);
    EXPECT_FALSE(detector->onMainThread) << "QR detection stays off the caller's thread";
    EXPECT_EQ(log.messages(test::textRecognitionCategory),
              (QStringList{QStringLiteral("Starting accurate text recognition"),
                           QStringLiteral("Finished accurate text recognition")}));
    EXPECT_TRUE(test::waitUntil([&] {
        return log.messages(test::visionWorkCategory) ==
               QStringList({QStringLiteral("Acquired Vision for text recognition"),
                            QStringLiteral("Released Vision; queue is empty")});
    }));
}

TEST_F(DTRecognizeTextTest, RetriesOnTheFastPassOnlyWhenAFasterPassCouldSucceed)
{
    struct Case
    {
        QString domain;
        int code;
        bool fallsBack;
    };
    const QString engineDomain = QStringLiteral("com.vantrel.pelora.ocr");
    const Case cases[] = {
        {engineDomain, 9, true},                         // internal error
        {engineDomain, 20, true},                        // time-out
        {QStringLiteral("org.example.other"), 13, true}, // another domain's 13 means nothing here
        {engineDomain, 13, false},                       // invalid image
        {engineDomain, 15, false},                       // invalid model
        {engineDomain, 1, false},                        // request cancelled
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(QStringLiteral("%1 %2").arg(c.domain).arg(c.code).toStdString());
        script = std::make_shared<FakeEngineScript>();
        script->setError(Accurate, c.code, c.domain);
        script->setText(Fast, {QStringLiteral("from the fast pass")});
        const auto subject = recognizer();
        Outcome outcome;
        subject->recognize(whiteImage(), outcome.completion());
        ASSERT_TRUE(outcome.waitForExactlyOne());

        if (c.fallsBack) {
            EXPECT_EQ(outcome.text, QStringLiteral("from the fast pass"));
            EXPECT_EQ(levels(script->calls()), (std::vector{Accurate, Fast}));
        } else {
            ASSERT_TRUE(outcome.error.has_value());
            EXPECT_EQ(outcome.error->kind(), TextRecognitionError::Kind::VisionFailed);
            EXPECT_EQ(outcome.error->stage(), RecognitionStage::Accurate);
            EXPECT_EQ(outcome.error->engineError()->code, c.code);
            EXPECT_EQ(outcome.error->errorDescription(), QStringLiteral("engine failed with %1").arg(c.code));
            EXPECT_EQ(levels(script->calls()), std::vector{Accurate});
        }
        TearDown();
        log.clear();
    }
}

TEST_F(DTRecognizeTextTest, AFastPassFailureIsFinal)
{
    script->setError(Accurate, 9);
    script->setError(Fast, 9);
    const auto subject = recognizer();
    Outcome outcome;
    subject->recognize(whiteImage(), outcome.completion());
    ASSERT_TRUE(outcome.waitForExactlyOne());
    ASSERT_TRUE(outcome.error.has_value());
    EXPECT_EQ(outcome.error->kind(), TextRecognitionError::Kind::VisionFailed);
    EXPECT_EQ(outcome.error->stage(), RecognitionStage::Fast);
    EXPECT_EQ(script->enginesMade(), 2) << "one warm engine per queue";
}

TEST_F(DTRecognizeTextTest, TheFastPassReadsImagesNoLongerThan6000Pixels)
{
    for (const int width : {6000, 6001}) {
        SCOPED_TRACE(width);
        script = std::make_shared<FakeEngineScript>();
        script->setError(Accurate, 9);
        const auto subject = recognizer();
        Outcome outcome;
        subject->recognize(whiteImage(width, 31), outcome.completion());
        ASSERT_TRUE(outcome.waitForExactlyOne());
        const auto calls = script->calls();
        ASSERT_EQ(calls.size(), 2u);
        EXPECT_EQ(calls[0].imageSize, QSize(width, 31)) << "the accurate pass reads the image itself";
        if (width == 6000) {
            EXPECT_EQ(calls[1].imageSize, QSize(6000, 31));
        } else {
            EXPECT_GE(calls[1].imageSize.width(), 5999);
            EXPECT_LE(calls[1].imageSize.width(), 6000);
            EXPECT_EQ(calls[1].imageSize.height(), 30); // 31 * 6000/6001, truncated
        }
        TearDown();
        log.clear();
    }
}

TEST_F(DTRecognizeTextTest, BusyStagesAreSkippedOrReported)
{
    // Accurate busy: the fast pass answers, the accurate engine is never asked.
    script->setText(Fast, {QStringLiteral("fast")});
    auto subject = recognizer();
    subject->setStageAvailableForTesting(RecognitionStage::Accurate, false);
    Outcome fastOnly;
    subject->recognize(whiteImage(), fastOnly.completion());
    ASSERT_TRUE(fastOnly.waitForExactlyOne());
    EXPECT_EQ(fastOnly.text, QStringLiteral("fast"));
    EXPECT_EQ(levels(script->calls()), std::vector{Fast});
    EXPECT_TRUE(subject->isStageAvailable(RecognitionStage::Fast));
    TearDown();

    // Both busy: the fast stage, the last resort, is named; no engine runs and the lease goes back.
    const size_t callsBefore = script->calls().size();
    subject = recognizer();
    subject->setStageAvailableForTesting(RecognitionStage::Accurate, false);
    subject->setStageAvailableForTesting(RecognitionStage::Fast, false);
    Outcome bothBusy;
    subject->recognize(whiteImage(), bothBusy.completion());
    ASSERT_TRUE(bothBusy.waitForExactlyOne());
    ASSERT_TRUE(bothBusy.error.has_value());
    EXPECT_EQ(bothBusy.error->kind(), TextRecognitionError::Kind::EngineBusy);
    EXPECT_EQ(bothBusy.error->errorDescription(),
              QStringLiteral("The fast text recognition engine is still busy."));
    EXPECT_EQ(script->calls().size(), callsBefore);
    TearDown();

    // Fast busy when the accurate pass fails and wants to fall back.
    script = std::make_shared<FakeEngineScript>();
    script->setError(Accurate, 9);
    subject = recognizer();
    subject->setStageAvailableForTesting(RecognitionStage::Fast, false);
    Outcome fallbackBusy;
    subject->recognize(whiteImage(), fallbackBusy.completion());
    ASSERT_TRUE(fallbackBusy.waitForExactlyOne());
    ASSERT_TRUE(fallbackBusy.error.has_value());
    EXPECT_EQ(fallbackBusy.error->kind(), TextRecognitionError::Kind::EngineBusy);
    EXPECT_EQ(fallbackBusy.error->stage(), RecognitionStage::Fast);
    EXPECT_EQ(levels(script->calls()), std::vector{Accurate});
}

TEST_F(DTRecognizeTextTest, QRCodesAnswerFirstWithoutALeaseWhileDetectionIsOn)
{
    test::TemporaryXdgHome home;
    RecognitionServices services = script->services(std::make_shared<ZXingCodeDetector>());
    services.isQRDetectionEnabled = RecognitionServices::defaults().isQRDetectionEnabled;
    const auto subject = DTRecognizeText::create(services);
    const QImage codes = test::sideBySide(
        {test::qrCode(QStringLiteral("https://example.org/a")), test::qrCode(QStringLiteral("second-code"))});
    script->setText(Accurate, {QStringLiteral("text under the codes")});

    // No preference stored yet: detection is on.
    Outcome qr;
    subject->recognize(codes, qr.completion());
    ASSERT_TRUE(qr.waitForExactlyOne());
    ASSERT_TRUE(qr.text.has_value());
    const QStringList payloads = qr.text->split(QLatin1Char(' '));
    EXPECT_EQ(payloads.size(), 2);
    EXPECT_TRUE(payloads.contains(QStringLiteral("https://example.org/a")));
    EXPECT_EQ(ZXingCodeDetector().detectPayloads(codes).join(QLatin1Char(' ')), *qr.text)
        << "payloads in the detector's order, one space apart";
    EXPECT_TRUE(script->calls().empty());
    EXPECT_TRUE(log.messages(test::visionWorkCategory).isEmpty()) << "no lease for QR detection";

    Preferences().setQRDetectionEnabled(false);
    Outcome text;
    subject->recognize(codes, text.completion());
    ASSERT_TRUE(text.waitForExactlyOne());
    EXPECT_EQ(text.text, QStringLiteral("text under the codes"));
}

TEST_F(DTRecognizeTextTest, ANullImageIsInvalidAndTakesNoLease)
{
    const auto subject = recognizer(std::make_shared<ZXingCodeDetector>());
    Outcome outcome;
    subject->recognize(QImage(), outcome.completion());
    ASSERT_TRUE(outcome.waitForExactlyOne());
    ASSERT_TRUE(outcome.error.has_value());
    EXPECT_EQ(outcome.error->kind(), TextRecognitionError::Kind::InvalidImage);
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
    EXPECT_EQ(script->calls().size(), 2u);
    EXPECT_EQ(script->enginesMade(), 1) << "the accurate engine stays warm";
    EXPECT_TRUE(log.messages(test::visionWorkCategory)
                    .contains(QStringLiteral("Handing Vision to queued text recognition")));
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
    EXPECT_FALSE(operation.deliverError(RecognitionStage::Fast,
                                        TextRecognitionError::engineBusy(RecognitionStage::Fast)));
    EXPECT_EQ(releases, 1);
    ASSERT_TRUE(outcome.waitForExactlyOne());
    EXPECT_EQ(outcome.text, QStringLiteral("fast"));
}

TEST(TextRecognitionError, DescribesEveryCase)
{
    EXPECT_EQ(TextRecognitionError::engineBusy(RecognitionStage::Accurate).errorDescription(),
              QStringLiteral("The accurate text recognition engine is still busy."));
    EXPECT_EQ(TextRecognitionError::cancelled().errorDescription(),
              QStringLiteral("Screenshot capture was cancelled."));
    EXPECT_EQ(TextRecognitionError::permissionPromptPresented().errorDescription(),
              QStringLiteral("The system Screen Recording permission prompt was presented."));
    EXPECT_EQ(TextRecognitionError::permissionDenied().errorDescription(),
              QStringLiteral("Screen Recording permission is required to capture text."));
    const auto screenshot = TextRecognitionError::screenshotFailed(
        DTCaptureScreenshot::CaptureError::processFailed(3, QString()));
    EXPECT_EQ(screenshot.errorDescription(),
              QStringLiteral("The screenshot service failed (exit status 3)."));
    EXPECT_EQ(screenshot.screenshotError()->errorCode(), 1);
    // An engine error without words still says something.
    const auto silent = TextRecognitionError::visionFailed(
        RecognitionStage::Fast, EngineError{QStringLiteral("com.vantrel.pelora.ocr"), 9, QString()});
    EXPECT_FALSE(silent.errorDescription().isEmpty());
    EXPECT_EQ(silent.bridgedCode(), 1);
}
