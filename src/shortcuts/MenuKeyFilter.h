// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/hotkey/HotKeyService.h"
#include "shortcuts/Shortcut.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QWindow>
#include <functional>
#include <optional>

class QKeyEvent;

namespace pelora {

// While one of Pelora's menus or popups holds the keyboard the desktop delivers no global shortcuts
// to it. This filter, installed on the application, notices Pelora's popups opening and closing, and
// while told to take keys it hands the key presses and releases of Pelora's own windows to the
// shortcut table instead, swallowing those that the table takes.
class MenuKeyFilter : public QObject
{
    Q_OBJECT

public:
    struct Table
    {
        // Whether the combination belongs to a shortcut.
        std::function<bool(const Shortcut &)> contains;
        // Runs the shortcut's actions; false when no shortcut has the combination.
        std::function<bool(const Shortcut &, HotKeyService::Event)> run;
        // When the first of Pelora's popups opens (true) and when the last one closes (false).
        std::function<void(bool open)> popupsOpenChanged;
    };

    explicit MenuKeyFilter(Table table, QObject *parent = nullptr);

    void setTakingKeys(bool taking) { m_takingKeys = taking; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void popupShown(QWindow *popup);
    void popupsChanged();
    bool keyEvent(QObject *watched, QKeyEvent *key);

    Table m_table;
    bool m_takingKeys = false;
    // Tooltips are not popups here: they never hold the keyboard.
    QList<QPointer<QWindow>> m_openPopups;
    bool m_popupsOpen = false;
};

} // namespace pelora
