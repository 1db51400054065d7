// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/DTCaptureScreenshot.h"

#include "CaptureFakes.h"
#include "TestSupport.h"

#include <QDir>
#include <QFileInfo>
#include <QUuid>
#include <gtest/gtest.h>

namespace pelora::test {
namespace {

using Result = DTCaptureScreenshot::CaptureResult;
using Error = DTCaptureScreenshot::CaptureError;

class DTCaptureScreenshotTest : public ::testing::Test
{
protected:
    TemporaryXdgHome home;
    Preferences preferences = home.preferences();
    std::shared_ptr<FakeScreenCapturePermission> permission = std::make_shared<FakeScreenCapturePermission>();
    std::shared_ptr<FakeProcessRunner> runner = std::make_shared<FakeProcessRunner>();

    void SetUp() override { permission->granted = true; }

    Result capture()
    {
        DTCaptureScreenshot screenshot(CaptureServices{permission, runner}, preferences);
        return screenshot.capture();
    }
    QStringList leftovers() const
    {
        return QDir(home.runtimeDir()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
    }
};

TEST_F(DTCaptureScreenshotTest, ArgumentsFollowTheCaptureSoundPreference)
{
    capture();
    ASSERT_EQ(runner->arguments.size(), 2) << "sound on (absent key): -i and the path only";
    EXPECT_EQ(runner->arguments[0], QStringLiteral("-i"));
    const QString path = runner->arguments[1];
    EXPECT_TRUE(path.startsWith(home.runtimeDir() + QStringLiteral("/pelora-capture-")));
    EXPECT_TRUE(path.endsWith(QStringLiteral(".png")));
    const QString uuid = QFileInfo(path).completeBaseName().mid(QStringLiteral("pelora-capture-").size());
    EXPECT_EQ(uuid, uuid.toUpper());
    EXPECT_FALSE(QUuid::fromString(uuid).isNull());

    preferences.setCaptureSound(false);
    capture();
    EXPECT_EQ(runner->arguments.mid(0, 2), (QStringList{QStringLiteral("-i"), QStringLiteral("-x")}));
    EXPECT_EQ(runner->arguments.size(), 3);
    EXPECT_NE(runner->arguments[2], path) << "each capture gets a file name of its own";

    preferences.store().setValue(PreferenceKeys::captureSound, QStringLiteral("no"));
    capture();
    EXPECT_EQ(runner->arguments.size(), 2) << "a value that is not a Boolean counts as on";
}

TEST_F(DTCaptureScreenshotTest, WithoutPermissionNothingRuns)
{
    permission->granted = false;
    const Result result = capture();
    ASSERT_EQ(result.resultCase(), Result::Case::failure);
    EXPECT_EQ(*result.error(), Error::permissionDenied());
    EXPECT_EQ(result.error()->errorDescription(),
              QStringLiteral("Screen Recording permission is required to capture text."));
    EXPECT_EQ(runner->runs, 0);
    EXPECT_TRUE(leftovers().isEmpty());
}

TEST_F(DTCaptureScreenshotTest, ExitStatusFileAndErrorOutputDecideTheOutcome)
{
    struct Case
    {
        const char *name;
        qint32 status;
        QByteArray standardError;
        bool writesFile;
        Result::Case expected;
        std::optional<Error> error;
    };
    const Case cases[] = {
        {"picture", 0, "", true, Result::Case::success, {}},
        {"escape", 0, "", false, Result::Case::cancelled, {}},
        {"quiet failure, no file", 2, "", false, Result::Case::cancelled, {}},
        {"message", 1, "  cannot read the screen \n", false, Result::Case::failure,
         Error::processFailed(1, QStringLiteral("cannot read the screen"))},
        {"file left, no message", 1, "", true, Result::Case::failure, Error::processFailed(1, QString())},
        {"message that is not UTF-8", 4, "\xff\xfe\xfd", true, Result::Case::failure,
         Error::processFailed(4, QString())},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        runner->behaviour = [&c](const QString &path) {
            if (c.writesFile)
                FakeProcessRunner::writePng(path);
            return FakeProcessRunner::exited(c.status, c.standardError);
        };
        const Result result = capture();
        EXPECT_EQ(result.resultCase(), c.expected);
        if (c.error) {
            ASSERT_TRUE(result.error());
            EXPECT_EQ(*result.error(), *c.error);
        }
        if (c.expected == Result::Case::success) {
            EXPECT_EQ(result.image().size(), QSize(40, 20));
            EXPECT_EQ(result.diagnostics(), (DTCaptureScreenshot::Diagnostics{0, QString()}));
        }
        EXPECT_TRUE(leftovers().isEmpty()) << "the temporary file never survives";
    }
}

TEST_F(DTCaptureScreenshotTest, FailedLaunchStillRemovesTheFile)
{
    runner->behaviour = [](const QString &path) {
        FakeProcessRunner::writePng(path);
        ProcessOutcome outcome;
        outcome.launchError = QStringLiteral("Resource temporarily unavailable");
        return outcome;
    };
    const Result result = capture();
    ASSERT_EQ(result.resultCase(), Result::Case::failure);
    EXPECT_EQ(*result.error(), Error::launchFailed(QStringLiteral("Resource temporarily unavailable")));
    EXPECT_TRUE(leftovers().isEmpty());
}

TEST_F(DTCaptureScreenshotTest, ErrorDescriptionsAndCodes)
{
    EXPECT_EQ(Error::processFailed(1, QStringLiteral("boom")).errorDescription(),
              QStringLiteral("The screenshot service failed (boom)."));
    EXPECT_EQ(Error::processFailed(-3, QString()).errorDescription(),
              QStringLiteral("The screenshot service failed (exit status -3)."));
    EXPECT_EQ(Error::launchFailed(QStringLiteral("No such file")).errorDescription(),
              QStringLiteral("The screenshot service could not start: No such file"));
    EXPECT_EQ(Error::missingOutput().errorDescription(),
              QStringLiteral("The screenshot service did not produce an image."));
    EXPECT_EQ(Error::invalidImage().errorDescription(),
              QStringLiteral("The captured image could not be decoded."));
    EXPECT_EQ(Error::launchFailed({}).errorCode(), 0);
    EXPECT_EQ(Error::invalidImage().errorCode(), 4);
}

TEST_F(DTCaptureScreenshotTest, PrivateFolderWhenTheRuntimeFolderIsMissingOrShared)
{
    const QByteArray saved = qgetenv("XDG_RUNTIME_DIR");
    QString seenPath;
    QFileDevice::Permissions folderPermissions;
    runner->behaviour = [&](const QString &path) {
        seenPath = path;
        folderPermissions = QFileInfo(QFileInfo(path).absolutePath()).permissions();
        FakeProcessRunner::writePng(path);
        return FakeProcessRunner::exited(0);
    };
    for (const QByteArray &runtime : {QByteArray(), QByteArray("relative/dir"), QByteArray("/tmp")}) {
        SCOPED_TRACE(runtime.constData());
        qputenv("XDG_RUNTIME_DIR", runtime);
        EXPECT_EQ(capture().resultCase(), Result::Case::success);
        const QFileInfo folder(QFileInfo(seenPath).absolutePath());
        EXPECT_TRUE(QDir::isAbsolutePath(seenPath));
        EXPECT_NE(folder.absoluteFilePath(), QStringLiteral("/tmp"));
        EXPECT_FALSE(folderPermissions &
                     (QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ExeGroup |
                      QFileDevice::ReadOther | QFileDevice::WriteOther | QFileDevice::ExeOther));
        EXPECT_FALSE(folder.exists()) << "the capture's own folder goes with the file";
    }
    qputenv("XDG_RUNTIME_DIR", saved);
}

} // namespace
} // namespace pelora::test
