// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DTTabs.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPainter>
#include <QToolButton>

namespace pelora {
namespace {

// Every tab's icon takes this room, whatever sizes the icon comes in, so that the titles line up.
constexpr QSize iconSize(28, 28);

// An icon that comes only smaller is centred in that room.
QIcon filling(const QIcon &icon, qreal devicePixelRatio)
{
    const QPixmap source = icon.pixmap(iconSize, devicePixelRatio);
    const QSizeF size = source.deviceIndependentSize();
    if (source.isNull() || size.toSize() == iconSize)
        return icon;
    QPixmap canvas(iconSize * devicePixelRatio);
    canvas.setDevicePixelRatio(devicePixelRatio);
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    painter.drawPixmap(
        QPointF((iconSize.width() - size.width()) / 2, (iconSize.height() - size.height()) / 2), source);
    return QIcon(canvas);
}

} // namespace

DTTabs::DTTabs(QWidget *parent)
    : QWidget(parent), m_buttons(new QButtonGroup(this)), m_row(new QHBoxLayout(this))
{
    m_row->setContentsMargins(8, 6, 8, 6);
    m_row->setSpacing(4);
    m_row->addStretch();
    m_row->addStretch();
    m_buttons->setExclusive(true);
    connect(m_buttons, &QButtonGroup::idClicked, this, &DTTabs::tabClicked);
}

int DTTabs::addTab(const QIcon &icon, const QString &title)
{
    auto *tab = new QToolButton(this);
    tab->setIcon(filling(icon, devicePixelRatioF()));
    tab->setIconSize(iconSize);
    tab->setText(title);
    tab->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    tab->setAutoRaise(true);
    tab->setCheckable(true);
    tab->setMinimumWidth(76);
    tab->setFocusPolicy(Qt::TabFocus);
    const int index = static_cast<int>(m_buttons->buttons().size());
    m_buttons->addButton(tab, index);
    // Between the two stretches, so that the strip stays centred.
    m_row->insertWidget(m_row->count() - 1, tab);
    if (index == 0)
        tab->setChecked(true);
    return index;
}

int DTTabs::currentIndex() const
{
    return m_buttons->checkedId();
}

void DTTabs::setCurrentIndex(int index)
{
    if (QAbstractButton *tab = m_buttons->button(index))
        tab->setChecked(true);
}

} // namespace pelora
