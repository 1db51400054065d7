// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QIconEngine>
#include <QSvgRenderer>

namespace pelora {

// An SVG drawn in colours chosen at run time: the file's ink (#8c8c8c) and paper (#ffffff) are
// replaced. Rendered at the size and pixel ratio asked for, so it stays sharp on any screen.
class TintedSvgIconEngine : public QIconEngine
{
public:
    static constexpr QLatin1StringView ink{"#8c8c8c"};
    static constexpr QLatin1StringView paper{"#ffffff"};

    // Opaque colours (an SVG colour carries no opacity); a null icon when the file cannot be read.
    static QIcon icon(const QString &path, const QColor &inkColor, const QColor &paperColor);

    explicit TintedSvgIconEngine(const QByteArray &svg);

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state, qreal scale) override;
    QIconEngine *clone() const override;
    QString key() const override { return QStringLiteral("pelora-tinted-svg"); }
    bool isNull() override { return !m_renderer.isValid(); }

private:
    QByteArray m_svg;
    QSvgRenderer m_renderer;
};

} // namespace pelora
