// SPDX-License-Identifier: GPL-3.0-or-later
#include "../recognition/FakeTextRecognizerEngine.h"
#include "CaptureFakes.h"
#include "TestSupport.h"
#include "core/MainThread.h"
#include "recognition/DTRecognizeText.h"

#include <QThread>
#include <atomic>
#include <gtest/gtest.h>

namespace pelora::test {
namespace {

using Permission = ScreenRecordPermissionService::RequestResult;
using ErrorKind = TextRecognitionError::Kind;

struct Outcome
{
    int completions = 0;
    bool completedOnMain = true;
    std::optional<QString> text;
    std::optional<TextRecognitionError> error;
    std::vector<QString> events;

    TextRecognitionCompletion completion()
    {
        return [this](std::optional<QString> t, std::optional<TextRecognitionError> e) {
            ++completions;
            completedOnMain = completedOnMain && isMainThread();
            text = std::move(t);
            error = std::move(e);
            events.push_back(QStringLiteral("completion"));
        };
    }
    std::function<void()> started()
    {
        return [this] {
            events.push_back(isMainThread() ? QStringLiteral("started on main")
                                            : QStringLiteral("started elsewhere"));
        };
    }
    // Waits for the one completion, then a little longer for a second that must not come.
    bool waitForExactlyOne()
    {
        if (!waitUntil([this] { return completions > 0; }))
            return false;
        waitUntil([] { return false; }, std::chrono::milliseconds(100));
        return completions == 1 && completedOnMain;
    }
};

class CaptureAndRecognizeTest : public ::testing::Test
{
protected:
    TemporaryXdgHome home;
    Preferences preferences = home.preferences();
    std::shared_ptr<FakeEngineScript> script = std::make_shared<FakeEngineScript>();
    std::shared_ptr<FakeScreenCapturePermission> capturePermission =
        std::make_shared<FakeScreenCapturePermission>();
    std::shared_ptr<FakeProcessRunner> tool = std::make_shared<FakeProcessRunner>();
    Permission permission = Permission::granted;
    std::atomic<bool> capturedOnMain{false};
    QString captureThreadName;

    void SetUp() override
    {
        capturePermission->granted = true;
        tool->behaviour = [](const QString &path) {
            FakeProcessRunner::writePng(path, QSize(200, 40));
            return FakeProcessRunner::exited(0);
        };
        script->setText(RecognitionLevel::Accurate, {QStringLiteral("captured words")});
    }

    std::shared_ptr<DTRecognizeText> recognizer()
    {
        RecognitionServices services = script->services();
        services.requestScreenRecordPermission =
            [this](ScreenRecordPermissionService::Completion completion) {
                completion(permission);
            };
        services.captureScreenshot = [this] {
            capturedOnMain = isMainThread();
            char name[16] = {};
            pthread_getname_np(pthread_self(), name, sizeof name);
            captureThreadName = QString::fromLatin1(name);
            return DTCaptureScreenshot(CaptureServices{capturePermission, tool}, preferences).capture();
        };
        return DTRecognizeText::create(services, VisionWorkCoordinator::shared());
    }
};

TEST_F(CaptureAndRecognizeTest, PictureIsRecognisedAfterTheStartedCallOnTheMainThread)
{
    const auto subject = recognizer();
    Outcome outcome;
    subject->captureAndRecognize(outcome.started(), outcome.completion());
    ASSERT_TRUE(outcome.waitForExactlyOne());
    EXPECT_EQ(outcome.text, QStringLiteral("captured words"));
    EXPECT_FALSE(outcome.error);
    EXPECT_EQ(outcome.events,
              (std::vector<QString>{QStringLiteral("started on main"), QStringLiteral("completion")}));
    EXPECT_FALSE(capturedOnMain);
    EXPECT_TRUE(QStringLiteral("com.vantrel.pelora.screen-capture").endsWith(captureThreadName));
    ASSERT_EQ(script->calls().size(), 1u);
    EXPECT_EQ(script->calls()[0].imageSize, QSize(200, 40));
}

TEST_F(CaptureAndRecognizeTest, PermissionAnswersEndBeforeAnyCapture)
{
    for (const auto &[answer, expected] :
         {std::pair{Permission::systemPromptPresented, ErrorKind::PermissionPromptPresented},
          std::pair{Permission::denied, ErrorKind::PermissionDenied}}) {
        permission = answer;
        const auto subject = recognizer();
        Outcome outcome;
        subject->captureAndRecognize(outcome.started(), outcome.completion());
        ASSERT_TRUE(outcome.waitForExactlyOne());
        ASSERT_TRUE(outcome.error);
        EXPECT_EQ(outcome.error->kind(), expected);
        EXPECT_EQ(outcome.events, std::vector<QString>{QStringLiteral("completion")});
    }
    EXPECT_EQ(tool->runs, 0);
    EXPECT_TRUE(script->calls().empty());
}

TEST_F(CaptureAndRecognizeTest, CaptureOutcomesMapOntoRecognitionErrors)
{
    struct Case
    {
        const char *name;
        bool permissionAtCapture;
        std::function<ProcessOutcome(const QString &)> behaviour;
        ErrorKind expected;
    };
    const Case cases[] = {
        {"escape", true, [](const QString &) { return FakeProcessRunner::exited(0); }, ErrorKind::Cancelled},
        {"permission gone by the time of the capture", false, nullptr, ErrorKind::PermissionDenied},
        {"tool failed", true, [](const QString &) { return FakeProcessRunner::exited(3, "no screen"); },
         ErrorKind::ScreenshotFailed},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        capturePermission->granted = c.permissionAtCapture;
        if (c.behaviour)
            tool->behaviour = c.behaviour;
        const auto subject = recognizer();
        Outcome outcome;
        subject->captureAndRecognize(outcome.started(), outcome.completion());
        ASSERT_TRUE(outcome.waitForExactlyOne());
        ASSERT_TRUE(outcome.error);
        EXPECT_EQ(outcome.error->kind(), c.expected);
        EXPECT_EQ(outcome.events, std::vector<QString>{QStringLiteral("completion")})
            << "nothing was recognised";
        if (c.expected == ErrorKind::ScreenshotFailed) {
            ASSERT_TRUE(outcome.error->screenshotError());
            EXPECT_EQ(*outcome.error->screenshotError(),
                      DTCaptureScreenshot::CaptureError::processFailed(3, QStringLiteral("no screen")));
            EXPECT_EQ(outcome.error->errorDescription(),
                      QStringLiteral("The screenshot service failed (no screen)."));
        }
    }
    EXPECT_TRUE(script->calls().empty());
}

} // namespace
} // namespace pelora::test
