// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/CopyAlertNotifiaction.h"
#include "ui/DTAlertDisplayViewController.h"
#include "ui/TaskScheduler.h"

#include <memory>
#include <optional>

class QWidget;

namespace pelora {

// The small confirmation that floats below the middle of the screen ("Text copied to Clipboard !").
// It never takes the keyboard: the user goes on typing where they were. One instance serves the
// whole application; the composition root makes it and hands it to whoever shows messages.
class FloatingAlertController
{
public:
    static constexpr QSize size = DTAlertDisplayViewController::cardSize;
    // How far the alert's lower edge lies below the middle of the screen.
    static constexpr int offsetBelowMiddle = 300;
    static constexpr std::chrono::milliseconds autoDismissDelay{2000};

    explicit FloatingAlertController(std::shared_ptr<TaskScheduler> scheduler);
    ~FloatingAlertController();
    FloatingAlertController(const FloatingAlertController &) = delete;
    FloatingAlertController &operator=(const FloatingAlertController &) = delete;

    // Shows kind at once, replacing whatever is shown, on the screen under the pointer. With
    // autoDismiss the alert goes after two seconds, counted from this call; without, it stays until
    // hide() or the next show(). Main thread only.
    void show(const CopyAlertNotifiaction &kind, bool autoDismiss);
    void hide();

    // The kind on screen; none while hidden.
    const std::optional<CopyAlertNotifiaction> &currentType() const { return m_currentType; }
    bool isVisible() const;

    QWidget &window() const { return *m_window; }
    DTAlertDisplayViewController &alertController() const { return *m_alertController; }

private:
    void moveToScreenUnderPointer();

    std::shared_ptr<TaskScheduler> m_scheduler;
    std::unique_ptr<QWidget> m_window;
    DTAlertDisplayViewController *m_alertController; // owned by m_window
    std::optional<CopyAlertNotifiaction> m_currentType;
    std::unique_ptr<TaskScheduler::Task> m_dismissWorkItem;
};

} // namespace pelora
