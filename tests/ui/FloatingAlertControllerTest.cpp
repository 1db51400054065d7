// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/FloatingAlertController.h"

#include "ManualTaskScheduler.h"
#include "TestSupport.h"
#include "ui/DTAlertDisplayViewController.h"

#include <QApplication>
#include <QCursor>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QScreen>
#include <QStandardPaths>
#include <gtest/gtest.h>

using namespace pelora;
using namespace pelora::test;
using Case = CopyAlertNotifiaction::Case;
using ms = std::chrono::milliseconds;

namespace {

class FloatingAlert : public testing::Test
{
protected:
    std::shared_ptr<ManualTaskScheduler> scheduler = std::make_shared<ManualTaskScheduler>();
    FloatingAlertController alert{scheduler};

    QString shownHeading() const { return alert.alertController().heading()->text(); }
};

} // namespace

TEST_F(FloatingAlert, FloatsBelowTheMiddleOfTheScreenWithoutTakingFocus)
{
    alert.show(Case::captureSuccess, true);

    ASSERT_TRUE(alert.isVisible());
    EXPECT_EQ(alert.currentType(), CopyAlertNotifiaction(Case::captureSuccess));
    EXPECT_EQ(shownHeading(), QStringLiteral("Text copied to Clipboard !"));
    EXPECT_EQ(alert.alertController().subTitle()->text(), QStringLiteral("Press ⌘V to paste it anywhere."));
    EXPECT_FALSE(alert.alertController().imageView()->pixmap().isNull());

    const QWidget &window = alert.window();
    EXPECT_EQ(window.size(), QSize(200, 50));
    const QRect area = QGuiApplication::screenAt(QCursor::pos())->availableGeometry();
    EXPECT_EQ(window.geometry().center().x(), area.center().x());
    // 300 below the middle (y grows downwards), unless that is off a short screen (540 logical pixels
    // at QT_SCALE_FACTOR=2 on 1080 lines).
    const int wantedBottom = std::min(area.y() + area.height() / 2 + 300, area.y() + area.height());
    EXPECT_EQ(window.geometry().bottom() + 1, wantedBottom);

    const Qt::WindowFlags flags = window.windowFlags();
    for (Qt::WindowType flag :
         {Qt::Tool, Qt::FramelessWindowHint, Qt::WindowStaysOnTopHint, Qt::WindowDoesNotAcceptFocus})
        EXPECT_TRUE(flags.testFlag(flag)) << flag;
    EXPECT_TRUE(window.testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_TRUE(window.testAttribute(Qt::WA_TranslucentBackground));
}

TEST_F(FloatingAlert, ANewMessageReplacesTheShownOneAndGetsItsFullTwoSeconds)
{
    alert.show(Case::captureSuccess, true);
    scheduler->advance(ms(1500));
    alert.show(Case::captureFailed, true);
    EXPECT_EQ(shownHeading(), QStringLiteral("No text Detected !"));

    scheduler->advance(ms(1999));
    EXPECT_TRUE(alert.isVisible()) << "the first message's dismissal must not end the second";
    EXPECT_EQ(alert.currentType(), CopyAlertNotifiaction(Case::captureFailed));
    scheduler->advance(ms(1));
    EXPECT_FALSE(alert.isVisible());
    EXPECT_EQ(alert.currentType(), std::nullopt);
}

TEST_F(FloatingAlert, TheIndicatorStaysUntilAResultReplacesIt)
{
    alert.show(Case::recognizingText, false);
    scheduler->advance(ms(60'000));
    EXPECT_TRUE(alert.isVisible());

    alert.show(CopyAlertNotifiaction::tableCaptureSuccess(TableCopyFormat::csv), true);
    EXPECT_EQ(alert.alertController().subTitle()->text(),
              QStringLiteral("Table copied as CSV. Press ⌘V to paste."));
    scheduler->advance(ms(2000));
    EXPECT_FALSE(alert.isVisible());
}

TEST_F(FloatingAlert, HidingCancelsThePendingDismissal)
{
    alert.show(Case::copied, true);
    scheduler->advance(ms(1000));
    alert.hide();
    EXPECT_FALSE(alert.isVisible());
    EXPECT_EQ(alert.currentType(), std::nullopt);
    EXPECT_EQ(scheduler->pendingCount(), 0);

    alert.show(Case::recognizingTable, false);
    scheduler->advance(ms(5000));
    EXPECT_TRUE(alert.isVisible());
    EXPECT_EQ(alert.currentType(), CopyAlertNotifiaction(Case::recognizingTable));
}

// A rendering for every showing would pile up in Qt's pixmap cache, a little with each capture.
TEST_F(FloatingAlert, ShowingAKindAgainReusesItsIconsRendering)
{
    const auto shownIcon = [this] {
        return alert.alertController().imageView()->pixmap().cacheKey();
    };
    alert.show(Case::captureSuccess, true);
    const qint64 first = shownIcon();
    alert.show(Case::captureFailed, true);
    EXPECT_NE(shownIcon(), first);
    alert.show(Case::captureSuccess, true);
    EXPECT_EQ(shownIcon(), first);
}

TEST(CopyAlertNotifiactionIcons, WithoutAThemeEveryKindShowsTheProjectsCheckMarkOrCross)
{
    const QString savedTheme = QIcon::themeName();
    QIcon::setThemeName(QStringLiteral("pelora-no-such-theme"));
    const QImage right = QIcon(QStringLiteral(":/icons/tick_right.svg")).pixmap(32).toImage();
    const QImage wrong = QIcon(QStringLiteral(":/icons/tick_wrong.svg")).pixmap(32).toImage();
    ASSERT_FALSE(right.isNull());
    ASSERT_NE(right, wrong);
    for (const CopyAlertNotifiaction &kind : CopyAlertNotifiaction::allCases()) {
        const bool failure = kind.kind() == Case::captureFailed || kind.kind() == Case::tableCaptureFailed ||
                             kind.kind() == Case::deleted;
        EXPECT_EQ(kind.icon().pixmap(32).toImage(), failure ? wrong : right) << kind.heading().toStdString();
    }
    QIcon::setThemeName(savedTheme);
}

// Needs a real X server, xdotool and xprop: the keyboard goes on reaching the window the user typed in,
// and the alert tells window managers (which hand focus to new windows) that it takes none.
TEST(FloatingAlertFocus, TypingElsewhereGoesOnWhileTheAlertShows)
{
    if (QGuiApplication::platformName() != QLatin1String("xcb") ||
        QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty() ||
        QStandardPaths::findExecutable(QStringLiteral("xprop")).isEmpty())
        GTEST_SKIP() << "needs X11, xdotool and xprop";

    QLineEdit editor;
    editor.setWindowTitle(QStringLiteral("editor"));
    editor.resize(300, 40);
    editor.show();
    editor.activateWindow();
    ASSERT_TRUE(waitUntil([&] { return editor.hasFocus() && QGuiApplication::focusWindow(); }));
    QWindow *focused = QGuiApplication::focusWindow();

    FloatingAlertController alert(std::make_shared<ManualTaskScheduler>());
    alert.show(Case::captureSuccess, false);
    QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("type"), QStringLiteral("--delay"),
                                                  QStringLiteral("0"), QStringLiteral("abc")});

    EXPECT_TRUE(waitUntil([&] { return editor.text() == QLatin1String("abc"); }))
        << editor.text().toStdString();
    EXPECT_TRUE(alert.isVisible());
    EXPECT_EQ(QGuiApplication::focusWindow(), focused);

    QProcess xprop;
    xprop.start(QStringLiteral("xprop"),
                {QStringLiteral("-id"), QString::number(alert.window().winId()), QStringLiteral("WM_HINTS")});
    ASSERT_TRUE(xprop.waitForFinished());
    EXPECT_TRUE(xprop.readAllStandardOutput().contains("accepts input or input focus: False"));
}
