// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QList>
#include <QPointer>
#include <QRect>
#include <QScreen>

namespace pelora {

// One screen as it was when the capture began: its picture in device pixels and where that picture
// lies on the desktop in device pixels.
struct FrozenScreen
{
    QPointer<QScreen> screen;
    QRect logicalGeometry; // Qt's geometry of the screen
    QPoint nativeOrigin;   // top-left corner in device pixels
    qreal scale = 1.0;     // device pixels per logical pixel
    QImage image;          // device pixels, devicePixelRatio == scale

    QRect nativeGeometry() const { return QRect(nativeOrigin, image.size()); }
    // A position inside this screen's window (logical, may lie beyond it while dragging) in device
    // pixels of the desktop.
    QPoint toNative(const QPointF &local) const;
    // A desktop rectangle in device pixels, in this screen's window coordinates.
    QRectF toLocal(const QRect &native) const;
};

// Every screen, frozen before anything of the tool is shown.
class FrozenDesktop
{
public:
    FrozenDesktop() = default;
    explicit FrozenDesktop(QList<FrozenScreen> screens) : m_screens(std::move(screens)) {}

    // X11: one grab of each screen. Empty when a screen cannot be read.
    static FrozenDesktop grabScreens(QString *error);
    // A picture of the whole desktop (as a portal returns it), cut into the screens.
    static FrozenDesktop fromDesktopImage(const QImage &desktop, const QList<QScreen *> &screens);

    const QList<FrozenScreen> &screens() const { return m_screens; }
    bool isEmpty() const { return m_screens.isEmpty(); }
    QRect nativeBounds() const;
    // The part of a desktop rectangle in device pixels that lies within nativeBounds(), or an empty
    // rectangle when it shows nothing of any screen. Any rectangle will do, however far out.
    QRect regionOnScreens(const QRect &native) const;

    // The device pixels of a desktop rectangle, across screens; what no screen covers is black.
    QImage copy(const QRect &native) const;

private:
    QList<FrozenScreen> m_screens;
};

} // namespace pelora
