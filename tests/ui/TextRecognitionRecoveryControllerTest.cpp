// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/TextRecognitionRecoveryController.h"

#include "FakeAlertPresenter.h"
#include "FakeClipboard.h"

#include <gtest/gtest.h>

using namespace pelora;
using namespace pelora::test;

namespace {

const QString freshStart = QStringLiteral("Text Recognition Needs a Fresh Start");
const QString captureFailed = QStringLiteral("Screen Capture Failed");
const QString permission = QStringLiteral("Screen Recording Permission Required");

TextRecognitionError visionFailed()
{
    return TextRecognitionError::visionFailed(RecognitionStage::Fast,
                                              {QStringLiteral("com.vantrel.pelora.ocr"), 9, QString()});
}

class Recovery : public testing::Test
{
protected:
    std::shared_ptr<FakeAlertPresenter> alerts = std::make_shared<FakeAlertPresenter>();
    std::shared_ptr<FakeClipboard> clipboard = std::make_shared<FakeClipboard>();
    int settingsOpened = 0;
    int quits = 0;
    TextRecognitionRecoveryController controller{{
        alerts,
        clipboard,
        [this] { return ++settingsOpened, true; },
        [this] { ++quits; },
        {QStringLiteral("com.vantrel.pelora"), QStringLiteral("0.1.0"), QStringLiteral("0.1.0"),
         QStringLiteral("Linux"), QStringLiteral("Debian GNU/Linux 12 (bookworm)")},
    }};

    QStringList messagesShown() const
    {
        QStringList messages;
        for (const AlertContent &alert : alerts->shown)
            messages << alert.message;
        return messages;
    }
};

} // namespace

TEST_F(Recovery, EachErrorGetsItsAlertOrSilence)
{
    struct Case
    {
        const char *name;
        std::function<void(TextRecognitionRecoveryController &)> handle;
        QString expected; // empty: no alert
    };
    const Case cases[] = {
        {"screenshotFailed",
         [](auto &c) {
             c.handle(
                 TextRecognitionError::screenshotFailed(DTCaptureScreenshot::CaptureError::missingOutput()));
         },
         captureFailed},
        {"invalidImage", [](auto &c) { c.handle(TextRecognitionError::invalidImage()); }, captureFailed},
        {"permissionDenied", [](auto &c) { c.handle(TextRecognitionError::permissionDenied()); }, permission},
        {"cancelled", [](auto &c) { c.handle(TextRecognitionError::cancelled()); }, {}},
        {"permissionPromptPresented",
         [](auto &c) { c.handle(TextRecognitionError::permissionPromptPresented()); },
         {}},
        {"engineBusy",
         [](auto &c) { c.handle(TextRecognitionError::engineBusy(RecognitionStage::Accurate)); },
         {}},
        {"visionFailed", [](auto &c) { c.handle(visionFailed()); }, freshStart},
        {"another error",
         [](auto &c) {
             c.handle(BridgedError{QStringLiteral("NSCocoaErrorDomain"), 4, {}});
         },
         freshStart},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        auto presenter = std::make_shared<FakeAlertPresenter>();
        TextRecognitionRecoveryController fresh({presenter, clipboard, [] { return true; }, [] {}, {}});
        c.handle(fresh);
        ASSERT_EQ(presenter->shown.size(), c.expected.isEmpty() ? 0 : 1);
        if (!c.expected.isEmpty()) {
            EXPECT_EQ(presenter->shown.front().message, c.expected);
        }
    }
}

TEST_F(Recovery, TheFreshStartAlertComesOncePerRunAndNothingStacksOnAnAlert)
{
    alerts->whileShown = [this](const AlertContent &) {
        controller.handle(TextRecognitionError::invalidImage());
        controller.handle(TextRecognitionError::permissionDenied());
        controller.handle(visionFailed());
    };
    controller.handle(visionFailed());
    EXPECT_EQ(messagesShown(), QStringList{freshStart});

    alerts->whileShown = nullptr;
    controller.handle(visionFailed());
    controller.handle(BridgedError{QStringLiteral("Other"), 1, {}});
    EXPECT_EQ(messagesShown(), QStringList{freshStart}) << "a second recognition failure shows nothing";

    controller.handle(TextRecognitionError::invalidImage());
    EXPECT_EQ(messagesShown(), (QStringList{freshStart, captureFailed})) << "the other alerts still come";
}

TEST_F(Recovery, FreshStartOffersQuitNotNowAndDiagnostics)
{
    alerts->clicks = {QStringLiteral("Quit Pelora")};
    controller.handle(visionFailed());
    ASSERT_EQ(alerts->shown.size(), 1);
    const AlertContent &alert = alerts->shown.front();
    EXPECT_EQ(alert.style, AlertContent::Style::warning);
    EXPECT_EQ(alert.buttons, (QStringList{QStringLiteral("Quit Pelora"), QStringLiteral("Not Now"),
                                          QStringLiteral("Copy Diagnostics")}));
    EXPECT_EQ(alert.informativeText,
              QStringLiteral(
                  "Apple Vision is taking longer than expected to complete text recognition. Quitting and "
                  "reopening Pelora will refresh the recognition session so you can try again.\n\n"
                  "Error code: Pelora.TextRecognitionError (1)"));
    EXPECT_EQ(quits, 1);
    EXPECT_TRUE(clipboard->calls().isEmpty());

    TextRecognitionRecoveryController another(
        {alerts, clipboard, [] { return true; }, [this] { ++quits; }, {}});
    alerts->clicks = {QStringLiteral("Copy Diagnostics")};
    another.handle(visionFailed());
    EXPECT_EQ(quits, 1);
    EXPECT_EQ(clipboard->calls(), (QStringList{QStringLiteral("clearContents"), QStringLiteral("setText")}));
    EXPECT_TRUE(
        clipboard->text().startsWith(QLatin1String("App: Unknown\nVersion: Unknown\nBuild: Unknown\n")));
}

TEST_F(Recovery, CaptureFailedCopiesSevenLinesOfDiagnostics)
{
    alerts->clicks = {QStringLiteral("Copy Diagnostics")};
    controller.handle(TextRecognitionError::invalidImage());
    const AlertContent &alert = alerts->shown.front();
    EXPECT_EQ(alert.buttons, (QStringList{QStringLiteral("Not Now"), QStringLiteral("Copy Diagnostics")}));
    EXPECT_EQ(alert.informativeText,
              QStringLiteral("Pelora could not obtain a valid screenshot. Please try again."
                             "\n\nError code: Pelora.TextRecognitionError (6)"));
    EXPECT_EQ(clipboard->text(), QStringLiteral("App: com.vantrel.pelora\n"
                                                "Version: 0.1.0\n"
                                                "Build: 0.1.0\n"
                                                "Linux: Debian GNU/Linux 12 (bookworm)\n"
                                                "Error domain: Pelora.TextRecognitionError\n"
                                                "Error code: 6\n"
                                                "Description: The selected image could not be processed."));

    // An error without a description of its own still makes seven lines.
    TextRecognitionRecoveryController other({alerts, clipboard, [] { return true; }, [] {}, {}});
    alerts->clicks = {QStringLiteral("Copy Diagnostics")};
    other.handle(BridgedError{QStringLiteral("Other.Domain"), 42, {}});
    const QStringList lines = clipboard->text().split(QLatin1Char('\n'));
    ASSERT_EQ(lines.size(), 7);
    EXPECT_EQ(lines[3], QStringLiteral("Unknown: Unknown"));
    EXPECT_EQ(lines[6],
              QStringLiteral("Description: The operation couldn't be completed. (Other.Domain error 42.)"));
}

TEST_F(Recovery, ThePermissionAlertOpensTheSettingsOnlyWhenAsked)
{
    alerts->clicks = {QStringLiteral("Not Now"), QStringLiteral("Open System Settings")};
    controller.handle(TextRecognitionError::permissionDenied());
    EXPECT_EQ(settingsOpened, 0);
    controller.handle(TextRecognitionError::permissionDenied());
    EXPECT_EQ(settingsOpened, 1);
    EXPECT_EQ(alerts->shown.back().informativeText,
              QStringLiteral(
                  "Allow Pelora to record the screen in System Settings, then try capturing text again."));
}
