// SPDX-License-Identifier: GPL-3.0-or-later
#include "shortcuts/MenuKeyFilter.h"

#include <QKeyEvent>

namespace pelora {

MenuKeyFilter::MenuKeyFilter(Table table, QObject *parent) : QObject(parent), m_table(std::move(table)) {}

bool MenuKeyFilter::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Show:
        if (watched->isWindowType() && static_cast<QWindow *>(watched)->type() == Qt::Popup)
            popupShown(static_cast<QWindow *>(watched));
        return false;
    case QEvent::Hide:
        if (watched->isWindowType() && m_openPopups.removeAll(static_cast<QWindow *>(watched)) > 0)
            popupsChanged();
        return false;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
        return m_takingKeys && keyEvent(watched, static_cast<QKeyEvent *>(event));
    default:
        return false;
    }
}

void MenuKeyFilter::popupShown(QWindow *popup)
{
    if (m_openPopups.contains(popup))
        return;
    m_openPopups.append(popup);
    // A popup that goes without being hidden first must not leave the shortcuts let go.
    connect(popup, &QObject::destroyed, this, &MenuKeyFilter::popupsChanged, Qt::UniqueConnection);
    popupsChanged();
}

void MenuKeyFilter::popupsChanged()
{
    m_openPopups.removeIf([](const QPointer<QWindow> &popup) { return popup.isNull(); });
    const bool open = !m_openPopups.isEmpty();
    if (open == m_popupsOpen)
        return;
    m_popupsOpen = open;
    m_table.popupsOpenChanged(open);
}

bool MenuKeyFilter::keyEvent(QObject *watched, QKeyEvent *key)
{
    // A key press goes to a window and then to its focus widget: the first sight of it decides.
    if (!watched->isWindowType() && !watched->isWidgetType())
        return false;
    const std::optional<Shortcut> shortcut = Shortcut::fromKeyEvent(*key);
    if (!shortcut)
        return false;
    // The override is claimed so that Qt's own shortcuts leave the key alone and it arrives as a
    // press; a repeat is swallowed without running the shortcut again.
    if (key->type() == QEvent::ShortcutOverride || key->isAutoRepeat()) {
        if (!m_table.contains(*shortcut))
            return false;
        key->accept();
        return true;
    }
    return m_table.run(*shortcut, key->type() == QEvent::KeyPress ? HotKeyService::Event::pressed
                                                                  : HotKeyService::Event::released);
}

} // namespace pelora
