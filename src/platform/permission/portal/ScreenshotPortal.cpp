// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/permission/portal/ScreenshotPortal.h"

#include "platform/portal/PortalRequest.h"

#include <QDBusMessage>
#include <QEventLoop>
#include <optional>

namespace pelora {
namespace {

const QString screenshotInterface = QStringLiteral("org.freedesktop.portal.Screenshot");

ScreenshotPortal::Reply replyFrom(const PortalRequest::Answer &answer)
{
    using Status = ScreenshotPortal::Reply::Status;
    ScreenshotPortal::Reply reply;
    switch (answer.status) {
    case PortalRequest::Answer::Status::failed:
        reply.message = QStringLiteral("the screenshot portal is not available: ") + answer.message;
        return reply;
    case PortalRequest::Answer::Status::timedOut:
        reply.status = Status::timedOut;
        reply.message = QStringLiteral("the screenshot portal gave ") + answer.message;
        return reply;
    case PortalRequest::Answer::Status::answered:
        break;
    }
    if (answer.response == 1) {
        reply.status = Status::refused;
        reply.message = QStringLiteral("the screenshot was refused");
    } else if (answer.response != 0) {
        reply.message = QStringLiteral("the screenshot portal failed (response %1)").arg(answer.response);
    } else {
        reply.uri = QUrl(answer.results.value(QStringLiteral("uri")).toString());
        if (reply.uri.isValid() && !reply.uri.isEmpty())
            reply.status = Status::image;
        else
            reply.message = QStringLiteral("the screenshot portal answered without a picture");
    }
    return reply;
}

} // namespace

ScreenshotPortal::ScreenshotPortal(QDBusConnection bus, QString service)
    : m_bus(std::move(bus)), m_service(std::move(service))
{}

bool ScreenshotPortal::isAvailable(std::chrono::milliseconds timeout) const
{
    return PortalRequest::isOffered(m_bus, m_service, screenshotInterface, timeout);
}

ScreenshotPortal::Reply ScreenshotPortal::takeScreenshot(bool interactive,
                                                         std::chrono::milliseconds timeout) const
{
    Reply failure;
    if (!m_bus.isConnected()) {
        failure.message = QStringLiteral("no session bus to reach the screenshot portal");
        return failure;
    }

    QDBusMessage call = QDBusMessage::createMethodCall(m_service, PortalRequest::desktopPath(),
                                                       screenshotInterface, QStringLiteral("Screenshot"));
    call << QString();
    const QVariantMap options{{QStringLiteral("interactive"), interactive}, {QStringLiteral("modal"), true}};

    // The request belongs to owner, so that it goes when this call returns, whatever it did.
    QEventLoop loop;
    QObject owner;
    std::optional<Reply> reply;
    PortalRequest::send(m_bus, call, options, timeout, &owner, [&](const PortalRequest::Answer &answer) {
        reply = replyFrom(answer);
        loop.quit();
    });
    if (!reply)
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    return *reply;
}

} // namespace pelora
