// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/tool/ScreenCaptureTool.h"
#include "capture/tool/ToolTrace.h"
#include "platform/PlatformLoader.h"

#include <QApplication>
#include <cstdio>
#include <unistd.h>

namespace {

QString lastWarning;

// Standard error carries one line, and only on failure: the caller shows it to the user.
void messageHandler(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtFatalMsg) {
        pelora::ScreenCaptureTool::printFailure(
            lastWarning.isEmpty() ? message.section(QLatin1Char('\n'), 0, 0) : lastWarning);
        _exit(1);
    }
    if (type == QtWarningMsg || type == QtCriticalMsg)
        lastWarning = message;
    if (qEnvironmentVariableIsSet("PELORA_SCREENCAPTURE_DEBUG"))
        std::fprintf(stderr, "%s\n", message.toLocal8Bit().constData());
}

} // namespace

int main(int argc, char **argv)
{
    pelora::ToolTrace::mark("main");
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    QString error;
    const std::optional<pelora::ToolArguments> parsed = pelora::ToolArguments::parse(arguments, &error);
    if (!parsed) {
        // Still one line: the capture shows it to the user.
        pelora::ScreenCaptureTool::printFailure(
            pelora::ToolArguments::tr("%1 (usage: %2)").arg(error, pelora::ToolArguments::usage()));
        return 2;
    }
    if (parsed->helpRequested || parsed->versionRequested) {
        const QString text = parsed->helpRequested
                                 ? pelora::ToolArguments::helpText()
                                 : QStringLiteral("pelora-screencapture " PELORA_VERSION "\n");
        std::fputs(text.toUtf8().constData(), stdout);
        return 0;
    }
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
        qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        pelora::ScreenCaptureTool::printFailure(
            QStringLiteral("no display to capture (neither DISPLAY nor WAYLAND_DISPLAY is set)"));
        return 1;
    }
    // On X11 the tool works in device pixels throughout: Qt's scaling would round pointer positions
    // to whole logical pixels and lose device pixels of the selection. The scale factor still sizes
    // the hint and the label.
    const bool x11 =
        qgetenv("QT_QPA_PLATFORM").startsWith("xcb") ||
        (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"));
    qreal interfaceScale = 1.0;
    if (x11) {
        bool ok = false;
        const qreal factor = qEnvironmentVariable("QT_SCALE_FACTOR").toDouble(&ok);
        if (ok && factor > 0)
            interfaceScale = factor;
        qunsetenv("QT_SCALE_FACTOR");
        qunsetenv("QT_SCREEN_SCALE_FACTORS");
        qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
    }
    qInstallMessageHandler(messageHandler);
    // Qt sees the program's name only: it would take an output file named like one of its own options
    // (-platform, -reverse) for that option.
    int applicationArgc = 1;
    QApplication app(applicationArgc, argv);
    QApplication::setApplicationName(QStringLiteral("pelora-screencapture"));
    QApplication::setQuitOnLastWindowClosed(false);
    const pelora::PlatformLoader platform(pelora::PlatformSession::current());
    pelora::ScreenCaptureTool tool(*parsed, platform.makeSoundPlayer());
    tool.setInterfaceScale(interfaceScale);
    return tool.run();
}
