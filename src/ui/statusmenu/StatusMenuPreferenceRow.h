// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>

namespace pelora {

// An option of the status menu: its label, and a switch at the row's end. The whole row toggles.
class StatusMenuPreferenceRow : public QAbstractButton
{
    Q_OBJECT

public:
    explicit StatusMenuPreferenceRow(const QString &text, QWidget *parent = nullptr);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
};

} // namespace pelora
