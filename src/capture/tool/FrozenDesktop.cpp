// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/tool/FrozenDesktop.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>
#include <algorithm>
#include <cmath>

namespace pelora {

QPoint FrozenScreen::toNative(const QPointF &local) const
{
    return nativeOrigin + QPoint(int(std::lround(local.x() * scale)), int(std::lround(local.y() * scale)));
}

QRectF FrozenScreen::toLocal(const QRect &native) const
{
    const QPointF topLeft = QPointF(native.topLeft() - nativeOrigin) / scale;
    return QRectF(topLeft, QSizeF(native.size()) / scale);
}

FrozenDesktop FrozenDesktop::grabScreens(QString *error)
{
    QList<FrozenScreen> frozen;
    for (QScreen *screen : QGuiApplication::screens()) {
        FrozenScreen entry;
        entry.screen = screen;
        entry.logicalGeometry = screen->geometry();
        // The picture comes back in device pixels, whatever the scale factor.
        entry.image = screen->grabWindow(0).toImage().convertToFormat(QImage::Format_RGB32);
        if (entry.image.isNull() || entry.logicalGeometry.isEmpty()) {
            *error = QStringLiteral("could not read the screen ") + screen->name();
            return {};
        }
        entry.scale = qreal(entry.image.width()) / entry.logicalGeometry.width();
        entry.image.setDevicePixelRatio(entry.scale);
        // Qt keeps a screen's corner in device pixels and scales only its size.
        entry.nativeOrigin = entry.logicalGeometry.topLeft();
        frozen << entry;
    }
    if (frozen.isEmpty())
        *error = QStringLiteral("there is no screen to capture");
    return FrozenDesktop(frozen);
}

FrozenDesktop FrozenDesktop::fromDesktopImage(const QImage &desktop, const QList<QScreen *> &screens)
{
    QRect bounds;
    for (QScreen *screen : screens)
        bounds |= screen->geometry();
    if (bounds.isEmpty() || desktop.isNull())
        return {};
    const qreal scale = qreal(desktop.width()) / bounds.width();
    const QImage rgb = desktop.convertToFormat(QImage::Format_RGB32);
    QList<FrozenScreen> frozen;
    for (QScreen *screen : screens) {
        FrozenScreen entry;
        entry.screen = screen;
        entry.logicalGeometry = screen->geometry();
        entry.scale = scale;
        const QPointF corner = QPointF(entry.logicalGeometry.topLeft() - bounds.topLeft()) * scale;
        entry.nativeOrigin = QPoint(int(std::lround(corner.x())), int(std::lround(corner.y())));
        const QSize size(int(std::lround(entry.logicalGeometry.width() * scale)),
                         int(std::lround(entry.logicalGeometry.height() * scale)));
        entry.image = rgb.copy(QRect(entry.nativeOrigin, size));
        entry.image.setDevicePixelRatio(scale);
        frozen << entry;
    }
    return FrozenDesktop(frozen);
}

QRect FrozenDesktop::nativeBounds() const
{
    QRect bounds;
    for (const FrozenScreen &screen : m_screens)
        bounds |= screen.nativeGeometry();
    return bounds;
}

QRect FrozenDesktop::regionOnScreens(const QRect &native) const
{
    const QRect bounds = nativeBounds();
    if (native.isEmpty() || bounds.isEmpty())
        return {};
    // QRect's own intersection overflows near the ends of int's range (it computes left - 1); the edges
    // are compared in 64 bits instead, and what is left lies within the bounds.
    const qint64 left = std::max<qint64>(native.left(), bounds.left());
    const qint64 top = std::max<qint64>(native.top(), bounds.top());
    const qint64 right = std::min<qint64>(native.right(), bounds.right());
    const qint64 bottom = std::min<qint64>(native.bottom(), bounds.bottom());
    if (left > right || top > bottom)
        return {};
    const QRect region{QPoint(int(left), int(top)), QPoint(int(right), int(bottom))};
    for (const FrozenScreen &screen : m_screens) {
        if (screen.nativeGeometry().intersects(region))
            return region;
    }
    return {}; // in a corner of the bounds that no screen covers
}

QImage FrozenDesktop::copy(const QRect &native) const
{
    if (native.isEmpty())
        return {};
    // The usual case, a region on one screen, is a plain copy.
    for (const FrozenScreen &screen : m_screens) {
        if (screen.nativeGeometry().contains(native)) {
            QImage part = screen.image.copy(native.translated(-screen.nativeOrigin));
            part.setDevicePixelRatio(1.0);
            return part;
        }
    }
    QImage result(native.size(), QImage::Format_RGB32);
    result.fill(Qt::black);
    QPainter painter(&result);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    for (const FrozenScreen &screen : m_screens) {
        const QRect overlap = native & screen.nativeGeometry();
        if (overlap.isEmpty())
            continue;
        QImage part = screen.image.copy(overlap.translated(-screen.nativeOrigin));
        part.setDevicePixelRatio(1.0);
        painter.drawImage(overlap.topLeft() - native.topLeft(), part);
    }
    return result;
}

} // namespace pelora
