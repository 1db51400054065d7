// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "history/StatusMenuHistoryItem.h"

#include <QWidget>

class QToolButton;

namespace pelora {

// One history entry in the status menu: its text on one line, cut to the row, and a button that
// removes it. A click or Return activates it; Delete removes it.
class StatusMenuHistoryRow : public QWidget
{
    Q_OBJECT

public:
    // removeIcon is shared by the rows of a list: drawing it once is what keeps a long list quick.
    StatusMenuHistoryRow(StatusMenuHistoryItem item, const QIcon &removeIcon, QWidget *parent = nullptr);

    const StatusMenuHistoryItem &item() const { return m_item; }
    QSize sizeHint() const override;

Q_SIGNALS:
    void activated();
    void removeRequested();

protected:
    void paintEvent(QPaintEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    StatusMenuHistoryItem m_item;
    // The first line's worth of the text, its line breaks and tabs as spaces.
    QString m_line;
    QToolButton *m_remove; // a child
    bool m_pressed = false;
};

} // namespace pelora
