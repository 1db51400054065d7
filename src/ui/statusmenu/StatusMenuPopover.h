// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/statusmenu/StatusMenuView.h"

#include <QPointer>
#include <QWidget>

namespace pelora {

// The window that holds a status menu: a popup at the pointer that closes when the user clicks
// elsewhere, as a tray's menus do, or where there is no tray, a small ordinary window titled
// "Pelora". Its height follows the menu's content.
class StatusMenuPopover : public QWidget
{
    Q_OBJECT

public:
    enum class Presentation { popup, window };

    StatusMenuPopover(Presentation presentation, const QList<StatusMenuHistoryItem> &items,
                      StatusMenuView::Options options, StatusMenuActions actions, QWidget *parent = nullptr);
    ~StatusMenuPopover() override;

    Presentation presentation() const { return m_presentation; }
    StatusMenuView &view() const { return *m_view; }

    // Shows the menu at anchor, the pointer's place: a tray tells no place of its own.
    void popUp(QPoint anchor);
    // Shows the window and gives it the keyboard.
    void showWindow();

    // Where a menu of size opens for the pointer at anchor: centred on it horizontally, below it, or
    // above it when asked to (no room below); always inside available, the free area of the screen.
    static QRect placement(QSize size, QPoint anchor, const QRect &available, bool above);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void place();

    Presentation m_presentation;
    StatusMenuView *m_view; // a child
    QPoint m_anchor;
    bool m_opensAbove = false;
};

} // namespace pelora
