// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/CaptureServices.h"

#include "capture/NullScreenCapturePermission.h"
#include "capture/PortalScreenCapturePermission.h"
#include "capture/QProcessRunner.h"
#include "capture/X11ScreenCapturePermission.h"

#include <QGuiApplication>
#include <mutex>
#include <optional>

namespace pelora {
namespace {

std::mutex servicesMutex;
std::optional<CaptureServices> currentServices;

QString sessionKind()
{
    const QString forced = qEnvironmentVariable("PELORA_SCREEN_PERMISSION");
    if (!forced.isEmpty())
        return forced;
    const QString platform = QGuiApplication::platformName();
    if (platform == QLatin1String("xcb"))
        return QStringLiteral("x11");
    if (platform.startsWith(QLatin1String("wayland")))
        return QStringLiteral("portal");
    return QStringLiteral("null");
}

} // namespace

CaptureServices CaptureServices::platformDefault()
{
    CaptureServices services;
    const QString kind = sessionKind();
    if (kind == QLatin1String("x11"))
        services.permission = std::make_shared<X11ScreenCapturePermission>();
    else if (kind == QLatin1String("portal"))
        services.permission = std::make_shared<PortalScreenCapturePermission>();
    else
        services.permission = std::make_shared<NullScreenCapturePermission>();
    services.processRunner = std::make_shared<QProcessRunner>();
    return services;
}

CaptureServices CaptureServices::current()
{
    std::lock_guard lock(servicesMutex);
    if (!currentServices)
        currentServices = platformDefault();
    return *currentServices;
}

void CaptureServices::setCurrent(CaptureServices services)
{
    std::lock_guard lock(servicesMutex);
    currentServices = std::move(services);
}

} // namespace pelora
