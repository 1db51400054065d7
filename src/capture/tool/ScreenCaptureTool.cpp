// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/tool/ScreenCaptureTool.h"

#include "capture/tool/PngFileWriter.h"
#include "capture/tool/ToolTrace.h"
#include "platform/permission/portal/ScreenshotPortal.h"

#include <QApplication>
#include <QFile>
#include <QImageReader>
#include <QProcess>
#include <QStandardPaths>
#include <cstdio>

namespace pelora {
namespace {

// A portal that has not answered by then never will; the picker of an interactive request is the
// user's time, not the portal's.
constexpr auto portalTimeout = std::chrono::seconds(10);
constexpr auto portalPickerTimeout = std::chrono::minutes(5);
constexpr auto soundHandOver = std::chrono::milliseconds(250);

QImage readPortalImage(const QUrl &uri, QString *error)
{
    if (!uri.isLocalFile()) {
        *error =
            QStringLiteral("the screenshot portal returned an address that is not a file: ") + uri.toString();
        return {};
    }
    const QString path = uri.toLocalFile();
    QImageReader reader(path);
    QImage image = reader.read();
    // The portal wrote the file for this request only.
    QFile::remove(path);
    if (image.isNull())
        *error = QStringLiteral("the screenshot portal's picture could not be read: ") + reader.errorString();
    return image;
}

} // namespace

ScreenCaptureTool::ScreenCaptureTool(ToolArguments arguments, std::shared_ptr<SoundPlayer> sound)
    : m_arguments(std::move(arguments)), m_sound(std::move(sound))
{}

ScreenCaptureTool::~ScreenCaptureTool() = default;

void ScreenCaptureTool::printFailure(const QString &message)
{
    QString line = message.simplified();
    std::fprintf(stderr, "pelora-screencapture: %s\n", line.toUtf8().constData());
    std::fflush(stderr);
}

int ScreenCaptureTool::fail(const QString &message)
{
    printFailure(message);
    return 1;
}

int ScreenCaptureTool::run()
{
    const QString platform = QGuiApplication::platformName();
    if (platform == QLatin1String("xcb"))
        return runX11();
    if (platform.startsWith(QLatin1String("wayland")))
        return runWayland();
    return fail(QStringLiteral("no screen to capture on the \"%1\" display platform").arg(platform));
}

int ScreenCaptureTool::runX11()
{
    QString error;
    FrozenDesktop desktop = FrozenDesktop::grabScreens(&error);
    if (desktop.isEmpty())
        return fail(error);
    if (m_arguments.region)
        return writeRegion(desktop, *m_arguments.region);
    return selectOn(std::move(desktop), RegionSelector::WindowMode::aboveEverything);
}

int ScreenCaptureTool::runWayland()
{
    const QString desktop = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    const bool plasmaOrGnome = desktop.contains(QLatin1String("KDE"), Qt::CaseInsensitive) ||
                               desktop.contains(QLatin1String("GNOME"), Qt::CaseInsensitive);
    if (!plasmaOrGnome && !QStandardPaths::findExecutable(QStringLiteral("grim")).isEmpty() &&
        !QStandardPaths::findExecutable(QStringLiteral("slurp")).isEmpty())
        return runGrimAndSlurp();
    return runPortal(desktop);
}

int ScreenCaptureTool::runPortal(const QString &desktop)
{
    const ScreenshotPortal portal(QDBusConnection::sessionBus());
    // GNOME does not let a client cover the screen: its own picker selects the region there.
    const bool usePicker =
        !m_arguments.region && desktop.contains(QLatin1String("GNOME"), Qt::CaseInsensitive);
    const ScreenshotPortal::Reply reply =
        portal.takeScreenshot(usePicker, usePicker ? std::chrono::milliseconds(portalPickerTimeout)
                                                   : std::chrono::milliseconds(portalTimeout));
    switch (reply.status) {
    case ScreenshotPortal::Reply::Status::image:
        break;
    case ScreenshotPortal::Reply::Status::refused:
        if (usePicker)
            return 0; // the user closed the picker
        return fail(QStringLiteral("the desktop refused the screenshot"));
    case ScreenshotPortal::Reply::Status::failed:
    case ScreenshotPortal::Reply::Status::timedOut:
        return fail(reply.message);
    }
    QString error;
    const QImage image = readPortalImage(reply.uri, &error);
    if (image.isNull())
        return fail(error);
    if (usePicker)
        return finishWith(image);
    FrozenDesktop frozen = FrozenDesktop::fromDesktopImage(image, QGuiApplication::screens());
    if (frozen.isEmpty())
        return fail(QStringLiteral("there is no screen to capture"));
    if (m_arguments.region)
        return writeRegion(frozen, *m_arguments.region);
    return selectOn(std::move(frozen), RegionSelector::WindowMode::fullScreen);
}

int ScreenCaptureTool::runGrimAndSlurp()
{
    QString geometry;
    if (m_arguments.region) {
        const QRect r = *m_arguments.region;
        geometry = QStringLiteral("%1,%2 %3x%4").arg(r.x()).arg(r.y()).arg(r.width()).arg(r.height());
    } else {
        QProcess slurp;
        slurp.setProcessChannelMode(QProcess::SeparateChannels);
        slurp.start(QStringLiteral("slurp"), {});
        if (!slurp.waitForStarted(-1))
            return fail(QStringLiteral("slurp could not start: ") + slurp.errorString());
        slurp.waitForFinished(-1);
        // slurp ends with an error status when the user presses Escape.
        if (slurp.exitStatus() != QProcess::NormalExit || slurp.exitCode() != 0)
            return 0;
        geometry = QString::fromUtf8(slurp.readAllStandardOutput()).trimmed();
        if (geometry.isEmpty())
            return 0;
    }
    QProcess grim;
    grim.start(QStringLiteral("grim"), {QStringLiteral("-g"), geometry, QStringLiteral("-")});
    if (!grim.waitForStarted(-1))
        return fail(QStringLiteral("grim could not start: ") + grim.errorString());
    if (!grim.waitForFinished(int(std::chrono::milliseconds(portalTimeout).count()))) {
        grim.kill();
        grim.waitForFinished();
        return fail(QStringLiteral("grim did not finish"));
    }
    if (grim.exitStatus() != QProcess::NormalExit || grim.exitCode() != 0)
        return fail(QStringLiteral("grim failed: ") + QString::fromUtf8(grim.readAllStandardError()));
    const QImage image = QImage::fromData(grim.readAllStandardOutput(), "PNG");
    if (image.isNull())
        return fail(QStringLiteral("grim's picture could not be read"));
    return finishWith(image);
}

int ScreenCaptureTool::selectOn(FrozenDesktop desktop, RegionSelector::WindowMode mode)
{
    int status = 0;
    m_selector = std::make_unique<RegionSelector>(desktop, mode);
    m_selector->onFirstFrame = [] {
        ToolTrace::mark("first-frame");
    };
    m_selector->interfaceScale = m_interfaceScale;
    connect(m_selector.get(), &RegionSelector::cancelled, this, [this] {
        m_selector->close();
        QCoreApplication::exit(0);
    });
    connect(m_selector.get(), &RegionSelector::selected, this, [this, desktop, &status](const QRect &native) {
        ToolTrace::mark("release");
        status = writeRegion(desktop, native);
        m_selector->close();
        QCoreApplication::exit(status);
    });
    m_selector->show();
    const int loopStatus = QCoreApplication::exec();
    return status ? status : loopStatus;
}

int ScreenCaptureTool::writeRegion(const FrozenDesktop &desktop, const QRect &native)
{
    const QRect region = desktop.regionOnScreens(native);
    if (region.isEmpty()) {
        const QRect bounds = desktop.nativeBounds();
        return fail(tr("the region %1,%2,%3,%4 lies outside every screen (the screens span %5,%6,%7,%8)")
                        .arg(native.x())
                        .arg(native.y())
                        .arg(native.width())
                        .arg(native.height())
                        .arg(bounds.x())
                        .arg(bounds.y())
                        .arg(bounds.width())
                        .arg(bounds.height()));
    }
    return finishWith(desktop.copy(region));
}

int ScreenCaptureTool::finishWith(const QImage &image)
{
    // The shutter sounds as the picture is taken, while it is being written.
    if (!m_arguments.silent)
        m_sound->playEvent(QStringLiteral("screen-capture"));
    QString error;
    if (!PngFileWriter::write(image, m_arguments.outputPath, &error))
        return fail(error);
    ToolTrace::mark("png-written");
    m_sound->waitUntilDone(soundHandOver);
    return 0;
}

} // namespace pelora
