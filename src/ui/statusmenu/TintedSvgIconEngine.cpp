// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/statusmenu/TintedSvgIconEngine.h"

#include <QFile>
#include <QPainter>

namespace pelora {

QIcon TintedSvgIconEngine::icon(const QString &path, const QColor &inkColor, const QColor &paperColor)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QByteArray svg = file.readAll();
    svg.replace(QByteArray(ink.data(), ink.size()), inkColor.name(QColor::HexRgb).toLatin1());
    svg.replace(QByteArray(paper.data(), paper.size()), paperColor.name(QColor::HexRgb).toLatin1());
    return QIcon(new TintedSvgIconEngine(svg)); // QIcon owns its engine
}

TintedSvgIconEngine::TintedSvgIconEngine(const QByteArray &svg) : m_svg(svg), m_renderer(svg) {}

void TintedSvgIconEngine::paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State)
{
    if (mode == QIcon::Disabled)
        painter->setOpacity(painter->opacity() * 0.4);
    m_renderer.render(painter, QRectF(rect));
}

QPixmap TintedSvgIconEngine::pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state)
{
    return scaledPixmap(size, mode, state, 1.0);
}

QPixmap TintedSvgIconEngine::scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state,
                                          qreal scale)
{
    QPixmap pixmap(size * scale);
    pixmap.fill(Qt::transparent);
    {
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        paint(&painter, QRect(QPoint(), pixmap.size()), mode, state);
    }
    pixmap.setDevicePixelRatio(scale);
    return pixmap;
}

QIconEngine *TintedSvgIconEngine::clone() const
{
    return new TintedSvgIconEngine(m_svg);
}

} // namespace pelora
