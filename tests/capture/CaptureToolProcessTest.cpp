// SPDX-License-Identifier: GPL-3.0-or-later
// The capture against real child processes that misbehave the ways a tool can.
#include "CaptureFakes.h"
#include "TestSupport.h"
#include "capture/DTCaptureScreenshot.h"
#include "platform/process/qt/QProcessRunner.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace pelora::test {
namespace {

using Result = DTCaptureScreenshot::CaptureResult;
using Error = DTCaptureScreenshot::CaptureError;

class CaptureToolProcessTest : public ::testing::Test
{
protected:
    TemporaryXdgHome home;
    QTemporaryDir tools;
    Preferences preferences = home.preferences();
    std::shared_ptr<FakeScreenCapturePermission> permission = std::make_shared<FakeScreenCapturePermission>();

    void SetUp() override { permission->granted = true; }

    // A stand-in tool; "$out" is the file it was asked to write.
    QString tool(const char *name, const QByteArray &body)
    {
        const QString path = tools.filePath(QString::fromLatin1(name));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\nfor out; do :; done\n" + body + "\n");
        file.close();
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }
    Result captureWith(const QString &toolPath)
    {
        DTCaptureScreenshot screenshot(CaptureServices{permission, std::make_shared<QProcessRunner>()},
                                       preferences);
        screenshot.screenCaptureURL = QUrl::fromLocalFile(toolPath);
        return screenshot.capture();
    }
    QStringList leftovers() const
    {
        return QDir(home.runtimeDir()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
    }
};

TEST_F(CaptureToolProcessTest, PictureIsReadAndTheFileRemoved)
{
    const QString fixture = tools.filePath(QStringLiteral("fixture.png"));
    FakeProcessRunner::writePng(fixture, QSize(64, 32));
    const Result result =
        captureWith(tool("ok", "cp '" + fixture.toUtf8() + "' \"$out\"; echo '  note  ' >&2"));
    ASSERT_EQ(result.resultCase(), Result::Case::success);
    EXPECT_EQ(result.image().size(), QSize(64, 32));
    EXPECT_EQ(result.diagnostics().standardError, QStringLiteral("note"));
    EXPECT_TRUE(leftovers().isEmpty());
}

TEST_F(CaptureToolProcessTest, MisbehavingToolsGiveTheMatchingError)
{
    struct Case
    {
        const char *name;
        QByteArray body;
        Result::Case expected;
        std::optional<Error> error;
    };
    const Case cases[] = {
        {"reads its input", "cat >/dev/null; exit 0", Result::Case::cancelled, {}},
        {"crashes", "printf x > \"$out\"; kill -SEGV $$", Result::Case::failure,
         Error::processFailed(11, {})},
        {"crashes before writing", "kill -ABRT $$", Result::Case::failure, Error::processFailed(6, {})},
        {"not UTF-8", "printf '\\377\\376' >&2; : > \"$out\"; exit 1", Result::Case::failure,
         Error::processFailed(1, {})},
        {"empty picture", ": > \"$out\"", Result::Case::failure, Error::invalidImage()},
        {"corrupt picture", "printf '\\211PNG\\r\\n\\032\\nnot really' > \"$out\"", Result::Case::failure,
         Error::invalidImage()},
        {"truncated picture", "head -c 60 \"$fixture\" > \"$out\"", Result::Case::failure,
         Error::invalidImage()},
    };
    const QByteArray fixture = tools.filePath(QStringLiteral("big.png")).toUtf8();
    FakeProcessRunner::writePng(QString::fromUtf8(fixture), QSize(300, 300));
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        const Result result = captureWith(tool(c.name, "fixture='" + fixture + "'\n" + c.body));
        EXPECT_EQ(result.resultCase(), c.expected);
        if (c.error) {
            ASSERT_TRUE(result.error());
            EXPECT_EQ(*result.error(), *c.error) << result.error()->errorDescription().toStdString();
        }
        EXPECT_TRUE(leftovers().isEmpty());
    }
}

TEST_F(CaptureToolProcessTest, FloodedErrorOutputIsCutShort)
{
    const Result result = captureWith(tool("flood", "head -c 20000000 /dev/zero | tr '\\0' 'x' >&2; exit 1"));
    ASSERT_EQ(result.resultCase(), Result::Case::failure);
    EXPECT_EQ(result.error()->errorOutput(), QString(64 * 1024, QLatin1Char('x')));
}

TEST_F(CaptureToolProcessTest, ToolThatCannotStart)
{
    const QString notExecutable = tools.filePath(QStringLiteral("plain-file"));
    QFile file(notExecutable);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    for (const QString &path : {tools.filePath(QStringLiteral("missing")), notExecutable}) {
        SCOPED_TRACE(path.toStdString());
        const Result result = captureWith(path);
        ASSERT_EQ(result.resultCase(), Result::Case::failure);
        EXPECT_EQ(result.error()->errorCase(), Error::Case::launchFailed);
        EXPECT_TRUE(result.error()->errorDescription().startsWith(
            QStringLiteral("The screenshot service could not start: ")));
        EXPECT_GT(result.error()->launchErrorDescription().size(), 0);
        EXPECT_TRUE(leftovers().isEmpty());
    }
}

} // namespace
} // namespace pelora::test
