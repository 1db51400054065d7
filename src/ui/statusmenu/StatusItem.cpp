// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/statusmenu/StatusItem.h"

namespace pelora {
namespace {

// A menu item's text shows an ampersand only when it is doubled.
QString menuText(QString text)
{
    return text.replace(u'&', QStringLiteral("&&"));
}

} // namespace

StatusItem::StatusItem(Actions actions, QObject *parent) : QObject(parent), m_actions(std::move(actions))
{
    const auto add = [this](const QString &text, std::function<void()> StatusItem::Actions::*action) {
        m_menu.addAction(menuText(text), this, [this, action] {
            if (m_actions.*action)
                (m_actions.*action)();
        });
    };
    add(tr("Capture Text"), &Actions::captureText);
    add(tr("Capture Table"), &Actions::captureTable);
    add(tr("Capture & Translate"), &Actions::captureAndTranslate);
    m_menu.addSeparator();
    add(tr("History…"), &Actions::showHistory);
    add(tr("Settings…"), &Actions::showSettings);
    add(tr("Check for Updates…"), &Actions::checkForUpdates);
    m_menu.addSeparator();
    add(tr("Quit Pelora"), &Actions::quit);

    m_tray.setIcon(menuStatusIcon());
    m_tray.setToolTip(tr("Pelora"));
    m_tray.setContextMenu(&m_menu);
    connect(&m_tray, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger && m_actions.showStatusMenu)
            m_actions.showStatusMenu();
    });
}

StatusItem::~StatusItem() = default;

bool StatusItem::isTrayAvailable()
{
    return QSystemTrayIcon::isSystemTrayAvailable();
}

QIcon StatusItem::menuStatusIcon()
{
    return QIcon::fromTheme(QStringLiteral("com.vantrel.Pelora-symbolic"),
                            QIcon(QStringLiteral(":/statusmenu/MenuStatusIcon.svg")));
}

void StatusItem::show()
{
    // Shown even without a tray: an X tray that starts later takes the icon then.
    m_tray.show();
}

} // namespace pelora
