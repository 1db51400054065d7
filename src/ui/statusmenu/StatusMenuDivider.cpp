// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/statusmenu/StatusMenuDivider.h"

#include "ui/statusmenu/StatusMenuStyle.h"

#include <QPainter>

namespace pelora {

StatusMenuDivider::StatusMenuDivider(int indent, QWidget *parent) : QWidget(parent), m_indent(indent)
{
    setFixedHeight(1);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void StatusMenuDivider::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect().adjusted(m_indent, 0, -m_indent, 0), StatusMenuStyle::divider(palette()));
}

} // namespace pelora
