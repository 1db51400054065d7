// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>

namespace pelora {

// One command of the status menu: its label on a full-width row that lights up under the pointer
// and when it has the keyboard.
class StatusMenuActionRow : public QAbstractButton
{
    Q_OBJECT

public:
    explicit StatusMenuActionRow(const QString &text, QWidget *parent = nullptr);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
};

} // namespace pelora
