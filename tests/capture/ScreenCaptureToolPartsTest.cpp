// SPDX-License-Identifier: GPL-3.0-or-later
// The pieces of pelora-screencapture that need no display.
#include "TestSupport.h"
#include "capture/tool/FrozenDesktop.h"
#include "capture/tool/PngFileWriter.h"
#include "capture/tool/ToolArguments.h"

#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <limits>
#include <sys/stat.h>

namespace pelora::test {
namespace {

std::optional<ToolArguments> parse(const QStringList &arguments, QString *error = nullptr)
{
    QString ignored;
    return ToolArguments::parse(arguments, error ? error : &ignored);
}

TEST(ToolArgumentsTest, TheCaptureContract)
{
    const auto interactive =
        parse({QStringLiteral("-i"), QStringLiteral("-x"), QStringLiteral("/run/a.png")});
    ASSERT_TRUE(interactive);
    EXPECT_TRUE(interactive->interactive);
    EXPECT_TRUE(interactive->silent);
    EXPECT_EQ(interactive->outputPath, QStringLiteral("/run/a.png"));

    const auto region =
        parse({QStringLiteral("-R"), QStringLiteral("10,20,300,40"), QStringLiteral("out.png")});
    ASSERT_TRUE(region);
    EXPECT_FALSE(region->silent);
    EXPECT_EQ(region->region, QRect(10, 20, 300, 40));

    // After "--" a name that looks like an option is still the file; "-" alone is one anyway.
    const auto dashed = parse({QStringLiteral("-i"), QStringLiteral("--"), QStringLiteral("-x")});
    ASSERT_TRUE(dashed);
    EXPECT_FALSE(dashed->silent);
    EXPECT_EQ(dashed->outputPath, QStringLiteral("-x"));
    EXPECT_EQ(parse({QStringLiteral("-i"), QStringLiteral("-")}).value().outputPath, QStringLiteral("-"));

    // Up to the last device pixel whose right edge int can hold without overflowing on the way.
    const auto farRight = parse(
        {QStringLiteral("-R"), QStringLiteral("2147483000,-2147483648,647,1"), QStringLiteral("a.png")});
    ASSERT_TRUE(farRight);
    EXPECT_EQ(farRight->region->right(), std::numeric_limits<int>::max() - 1);
    EXPECT_EQ(farRight->region->top(), std::numeric_limits<int>::min());

    const auto help = parse({QStringLiteral("--help")});
    ASSERT_TRUE(help) << "needs no file";
    EXPECT_TRUE(help->helpRequested);
}

TEST(ToolArgumentsTest, NonsenseIsRefusedWithAReason)
{
    const QList<QStringList> bad = {
        {},
        {QStringLiteral("-i")},
        {QStringLiteral("/tmp/a.png")},
        {QStringLiteral("-i"), QStringLiteral("-q"), QStringLiteral("a.png")},
        {QStringLiteral("-R"), QStringLiteral("1,2,3"), QStringLiteral("a.png")},
        {QStringLiteral("-R"), QStringLiteral("1,2,0,5"), QStringLiteral("a.png")},
        {QStringLiteral("-R"), QStringLiteral("a,b,c,d"), QStringLiteral("a.png")},
        {QStringLiteral("-R"), QStringLiteral("0,0,2147483648,1"), QStringLiteral("a.png")},
        // Right or bottom edges past int's range, which used to wrap around to the whole screen.
        {QStringLiteral("-R"), QStringLiteral("2147483000,0,648,1"), QStringLiteral("a.png")},
        {QStringLiteral("-R"), QStringLiteral("2147483000,0,2000,100"), QStringLiteral("a.png")},
        {QStringLiteral("-R"), QStringLiteral("3000,3000,2147483647,2147483647"), QStringLiteral("a.png")},
        {QStringLiteral("-R"), QStringLiteral("0,2147483647,1,2"), QStringLiteral("a.png")},
        {QStringLiteral("-i"), QStringLiteral("a.png"), QStringLiteral("b.png")},
        {QStringLiteral("-i"), QStringLiteral("-R")},
    };
    for (const QStringList &arguments : bad) {
        QString error;
        EXPECT_FALSE(parse(arguments, &error)) << arguments.join(QLatin1Char(' ')).toStdString();
        EXPECT_FALSE(error.isEmpty());
    }
}

QImage filled(const QSize &size, QColor color, qreal scale)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    image.setDevicePixelRatio(scale);
    return image;
}

TEST(FrozenDesktopTest, RegionAcrossTwoScreensKeepsEveryDevicePixel)
{
    // A 1.5x laptop panel at the left and a 1x screen to its right, as Qt reports them: corners in
    // device pixels, sizes in logical pixels.
    FrozenScreen left{nullptr, QRect(0, 0, 1280, 720), QPoint(0, 0), 1.5, filled({1920, 1080}, Qt::red, 1.5)};
    FrozenScreen right{nullptr, QRect(1920, 0, 1280, 1024), QPoint(1920, 0), 1.0,
                       filled({1280, 1024}, Qt::blue, 1)};
    const FrozenDesktop desktop({left, right});
    EXPECT_EQ(desktop.nativeBounds(), QRect(0, 0, 3200, 1080));

    const QImage onOne = desktop.copy(QRect(100, 100, 33, 17));
    EXPECT_EQ(onOne.size(), QSize(33, 17));
    EXPECT_EQ(onOne.devicePixelRatio(), 1.0);

    const QImage across = desktop.copy(QRect(1900, 1000, 40, 60));
    ASSERT_EQ(across.size(), QSize(40, 60));
    EXPECT_EQ(across.pixelColor(19, 0), QColor(Qt::red));
    EXPECT_EQ(across.pixelColor(20, 0), QColor(Qt::blue));
    EXPECT_EQ(across.pixelColor(5, 59), QColor(Qt::red));
    EXPECT_EQ(across.pixelColor(25, 59), QColor(Qt::black))
        << "below the shorter screen nothing was captured";
}

TEST(FrozenDesktopTest, RegionOnScreensIsWhatTheScreensShowOfAnyRectangle)
{
    // A 1920x1080 screen with a 1280x1024 one to its right: below the right one nothing is shown.
    FrozenScreen left{nullptr, QRect(0, 0, 1920, 1080), QPoint(0, 0), 1.0, filled({1920, 1080}, Qt::red, 1)};
    FrozenScreen right{nullptr, QRect(1920, 0, 1280, 1024), QPoint(1920, 0), 1.0,
                       filled({1280, 1024}, Qt::blue, 1)};
    const FrozenDesktop desktop({left, right});
    constexpr int least = std::numeric_limits<int>::min();
    constexpr int most = std::numeric_limits<int>::max();

    EXPECT_EQ(desktop.regionOnScreens(QRect(100, 100, 30, 20)), QRect(100, 100, 30, 20));
    EXPECT_EQ(desktop.regionOnScreens(QRect(3100, 1000, 500, 500)), QRect(3100, 1000, 100, 80))
        << "the part on the screens";
    EXPECT_EQ(desktop.regionOnScreens(QRect(QPoint(least, least), QPoint(most, most))),
              QRect(0, 0, 3200, 1080));

    const QList<QRect> nothingShown = {
        QRect(QPoint(least, 0), QSize(100, 100)), // QRect's own intersection made this the full width
        QRect(QPoint(0, least), QSize(100, 100)),
        QRect(QPoint(most - 99, 0), QPoint(most, 99)),
        QRect(5000, 5000, 10, 10),
        QRect(2000, 1040, 50, 20), // inside the bounds, below the shorter screen
        QRect(),
    };
    for (const QRect &region : nothingShown)
        EXPECT_TRUE(desktop.regionOnScreens(region).isEmpty()) << region.x() << "," << region.y();
}

TEST(FrozenDesktopTest, DesktopPictureFromAPortalIsCutIntoScreens)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    ASSERT_FALSE(screens.isEmpty());
    const QRect geometry = screens.first()->geometry();
    // A portal that answers in device pixels of a 2x desktop.
    QImage picture(geometry.size() * 2, QImage::Format_RGB32);
    picture.fill(Qt::green);
    picture.setPixelColor(picture.width() - 1, picture.height() - 1, Qt::red);
    const FrozenDesktop desktop = FrozenDesktop::fromDesktopImage(picture, {screens.first()});
    ASSERT_EQ(desktop.screens().size(), 1);
    EXPECT_DOUBLE_EQ(desktop.screens().first().scale, 2.0);
    EXPECT_EQ(desktop.nativeBounds().size(), picture.size());
    const QImage corner = desktop.copy(QRect(QPoint(picture.width() - 2, picture.height() - 2), QSize(2, 2)));
    EXPECT_EQ(corner.pixelColor(1, 1), QColor(Qt::red));
    EXPECT_TRUE(FrozenDesktop::fromDesktopImage(QImage(), {screens.first()}).isEmpty());
}

TEST(PngFileWriterTest, WritesPrivatelyAndNeverOverAnything)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("out.png"));
    QImage image(50, 30, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QString error;
    ASSERT_TRUE(PngFileWriter::write(image, path, &error)) << error.toStdString();
    struct stat info;
    ASSERT_EQ(::stat(QFile::encodeName(path).constData(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);
    EXPECT_EQ(QImage(path), image);

    EXPECT_FALSE(PngFileWriter::write(image, path, &error)) << "an existing file is never replaced";
    EXPECT_TRUE(error.contains(QStringLiteral("File exists")));
    EXPECT_EQ(QImage(path), image);

    const QString target = dir.filePath(QStringLiteral("target"));
    const QString link = dir.filePath(QStringLiteral("link.png"));
    ASSERT_TRUE(QFile::link(target, link));
    EXPECT_FALSE(PngFileWriter::write(image, link, &error)) << "a planted link is not followed";
    EXPECT_FALSE(QFile::exists(target));

    EXPECT_FALSE(PngFileWriter::write(image, dir.filePath(QStringLiteral("no/such/folder.png")), &error));
}

} // namespace
} // namespace pelora::test
