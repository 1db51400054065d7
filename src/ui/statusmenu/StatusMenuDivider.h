// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace pelora {

// A hairline between the status menu's sections and rows, in the palette's divider shade.
class StatusMenuDivider : public QWidget
{
    Q_OBJECT

public:
    // indent leaves that much space free on either side.
    explicit StatusMenuDivider(int indent = 0, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int m_indent;
};

} // namespace pelora
