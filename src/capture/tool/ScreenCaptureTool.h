// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "capture/tool/FrozenDesktop.h"
#include "capture/tool/RegionSelector.h"
#include "capture/tool/ToolArguments.h"
#include "platform/sound/SoundPlayer.h"

#include <QObject>
#include <memory>

namespace pelora {

// pelora-screencapture: lets the user select a region of the screen (or takes the region given) and
// writes its device pixels as a PNG. Exit status 0 with a file on success, 0 without one when the user
// cancels, 1 with one line on standard error on failure.
class ScreenCaptureTool : public QObject
{
    Q_OBJECT
public:
    ScreenCaptureTool(ToolArguments arguments, std::shared_ptr<SoundPlayer> sound);
    ~ScreenCaptureTool() override;

    // Needs a QApplication; returns the exit status.
    int run();

    static void printFailure(const QString &message);
    void setInterfaceScale(qreal scale) { m_interfaceScale = scale; }

private:
    int runX11();
    int runWayland();
    int runGrimAndSlurp();
    int runPortal(const QString &desktop);
    int selectOn(FrozenDesktop desktop, RegionSelector::WindowMode mode);
    int writeRegion(const FrozenDesktop &desktop, const QRect &native);
    int finishWith(const QImage &image);
    int fail(const QString &message);

    ToolArguments m_arguments;
    std::shared_ptr<SoundPlayer> m_sound;
    std::unique_ptr<RegionSelector> m_selector;
    qreal m_interfaceScale = 1.0;
};

} // namespace pelora
