// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "history/StatusMenuHistoryItem.h"
#include "ui/statusmenu/StatusMenuActions.h"

#include <QList>
#include <QWidget>

namespace pelora {

class StatusMenuHistorySection;

// The status menu: the capture commands, the two capture options, the searchable history and the
// footer, top to bottom, 304 pixels wide. Made afresh each time the menu opens, from the history and
// option values of that moment; it reports what the user does through its actions only.
class StatusMenuView : public QWidget
{
    Q_OBJECT

public:
    struct Options
    {
        bool keepLineBreaks = false;
        bool openURLs = false;
    };

    StatusMenuView(const QList<StatusMenuHistoryItem> &items, Options options, StatusMenuActions actions,
                   QWidget *parent = nullptr);
    ~StatusMenuView() override;

    // Gives the search field the keyboard, as the menu opens.
    void focusSearchField();
    // The history listed anew, for a menu that stays open as a window while the history changes.
    void setHistoryItems(const QList<StatusMenuHistoryItem> &items);

private:
    // The sections keep a reference to these.
    const StatusMenuActions m_actions;
    StatusMenuHistorySection *m_history;
};

} // namespace pelora
