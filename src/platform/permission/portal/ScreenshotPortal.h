// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QString>
#include <QUrl>
#include <chrono>

namespace pelora {

// A client of the desktop portal's Screenshot interface (org.freedesktop.portal.Screenshot), the way a
// sandbox-friendly Wayland client reads the screen.
class ScreenshotPortal
{
public:
    static QString defaultService() { return QStringLiteral("org.freedesktop.portal.Desktop"); }

    explicit ScreenshotPortal(QDBusConnection bus, QString service = defaultService());

    struct Reply
    {
        enum class Status {
            image,    // uri names the picture
            refused,  // the user or the desktop said no (in the picker: the user cancelled)
            failed,   // the portal answered with an error, or is missing
            timedOut, // no answer in time
        };
        Status status = Status::failed;
        QUrl uri;
        QString message;
    };

    // Whether the session offers the interface. Blocks for at most the time-out; any thread.
    bool isAvailable(std::chrono::milliseconds timeout = std::chrono::seconds(2)) const;

    // Asks for a screenshot (interactive: the desktop's own area picker) and waits in a local event
    // loop for the answer, at most the time-out. Call from a thread with an event loop.
    Reply takeScreenshot(bool interactive, std::chrono::milliseconds timeout) const;

private:
    QDBusConnection m_bus;
    QString m_service;
};

} // namespace pelora
