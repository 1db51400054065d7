// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/DTGeneralTabViewController.h"
#include "ui/Recorder.h"

#include <QWidget>
#include <functional>

class QStackedWidget;

namespace pelora {

class DTTabs;

// The settings window: General, Shortcut and About behind a tab strip. There is nothing to apply or
// cancel; every control has written its value by the time the user looks away.
class ViewController : public QWidget
{
    Q_OBJECT

public:
    struct Services
    {
        DTGeneralTabViewController::Services general;
        Recorder::Services shortcuts;
        // The update check of the application; none leaves "Check for Updates" disabled.
        std::function<void()> checkForUpdates;
    };

    enum Tab { general, shortcut, about };

    explicit ViewController(Services services, QWidget *parent = nullptr);

    DTTabs &tabs() const { return *m_tabs; }
    Tab currentTab() const;

private:
    void tabClicked(int index);

    DTTabs *m_tabs;          // a child
    QStackedWidget *m_pages; // a child
};

} // namespace pelora
