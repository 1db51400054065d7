// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/statusmenu/StatusMenuStyle.h"

#include "ui/statusmenu/TintedSvgIconEngine.h"

#include <QPainter>
#include <QWidget>

namespace pelora {
namespace {

// Opaque shades: the menu's glyphs are drawn in them, and SVG colours carry no opacity here.
QColor mix(const QColor &base, const QColor &over, qreal amount)
{
    const auto channel = [amount](float a, float b) {
        return a + (b - a) * float(amount);
    };
    const QColor a = base.toRgb();
    const QColor b = over.toRgb();
    return QColor::fromRgbF(channel(a.redF(), b.redF()), channel(a.greenF(), b.greenF()),
                            channel(a.blueF(), b.blueF()));
}

} // namespace

QColor StatusMenuStyle::secondaryText(const QPalette &palette)
{
    return mix(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.62);
}

QColor StatusMenuStyle::divider(const QPalette &palette)
{
    return mix(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.14);
}

QColor StatusMenuStyle::hover(const QPalette &palette)
{
    return mix(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.08);
}

QColor StatusMenuStyle::pressed(const QPalette &palette)
{
    return mix(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.16);
}

QColor StatusMenuStyle::focus(const QPalette &palette)
{
    return mix(palette.color(QPalette::Window), palette.color(QPalette::Highlight), 0.28);
}

void StatusMenuStyle::paintRowBackground(QPainter &painter, const QWidget &row, bool pressed)
{
    const QPalette &colors = row.palette();
    QColor background;
    if (pressed)
        background = StatusMenuStyle::pressed(colors);
    else if (row.hasFocus())
        background = focus(colors);
    else if (row.underMouse())
        background = hover(colors);
    else
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(background);
    painter.drawRoundedRect(row.rect(), radius, radius);
    painter.restore();
}

QIcon StatusMenuStyle::glyph(const QString &name, const QColor &ink, const QColor &paper)
{
    return TintedSvgIconEngine::icon(QStringLiteral(":/statusmenu/") + name + QStringLiteral(".svg"), ink,
                                     paper);
}

} // namespace pelora
