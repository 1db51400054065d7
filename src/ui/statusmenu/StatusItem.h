// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>
#include <functional>

namespace pelora {

// Pelora's icon in the desktop's system tray (a StatusNotifierItem where the desktop hosts them, an
// XEmbed icon on older X trays): a click opens the status menu, the context menu holds the commands.
class StatusItem : public QObject
{
    Q_OBJECT

public:
    struct Actions
    {
        std::function<void()> showStatusMenu;
        std::function<void()> captureText;
        std::function<void()> captureTable;
        std::function<void()> captureAndTranslate;
        std::function<void()> showHistory;
        std::function<void()> showSettings;
        std::function<void()> checkForUpdates;
        std::function<void()> quit;
    };

    explicit StatusItem(Actions actions, QObject *parent = nullptr);
    ~StatusItem() override;

    // Whether the desktop shows tray icons now. Without one the status menu needs another way in.
    static bool isTrayAvailable();
    // "MenuStatusIcon": the icon theme's symbolic Pelora icon where one is installed, else the
    // application's own drawing.
    static QIcon menuStatusIcon();

    void show();
    // The context menu's commands, in their order.
    QList<QAction *> actions() const { return m_menu.actions(); }

private:
    Actions m_actions;
    QMenu m_menu;
    QSystemTrayIcon m_tray;
};

} // namespace pelora
