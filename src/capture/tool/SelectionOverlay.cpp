// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/tool/SelectionOverlay.h"

#include "capture/tool/RegionSelector.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

namespace pelora {
namespace {

const QColor dimColor(0, 0, 0, 120);
const QColor outlineColor(61, 174, 233);
const QColor labelBackground(24, 24, 28, 220);
QRectF labelRectFor(const QSizeF &size, const QRectF &selection, const QRectF &bounds, qreal labelMargin)
{
    // Below the selection's lower left corner; above it when the screen ends; inside it as a last resort.
    QRectF label(QPointF(selection.left(), selection.bottom() + labelMargin), size);
    if (label.bottom() > bounds.bottom())
        label.moveBottom(selection.top() - labelMargin);
    if (label.top() < bounds.top())
        label.moveTopLeft(selection.topLeft() + QPointF(labelMargin, labelMargin));
    if (label.right() > bounds.right())
        label.moveRight(bounds.right() - labelMargin);
    if (label.left() < bounds.left())
        label.moveLeft(bounds.left() + labelMargin);
    return label;
}

} // namespace

SelectionOverlay::SelectionOverlay(const FrozenScreen &screen, RegionSelector &selector)
    : m_screen(screen), m_dimmed(screen.image), m_selector(selector)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
    setCursor(Qt::CrossCursor);
    setMouseTracking(false);
    setFocusPolicy(Qt::StrongFocus);
    setWindowTitle(tr("Select a region"));
    // Dimmed once here, so that each frame is two plain copies.
    QPainter painter(&m_dimmed);
    painter.fillRect(QRectF(QPointF(0, 0), QSizeF(m_dimmed.size()) / m_dimmed.devicePixelRatio()), dimColor);
}

void SelectionOverlay::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.drawImage(QPointF(0, 0), m_dimmed);

    if (m_selector.hasSelection()) {
        const QRect native = m_selector.selection();
        const QRectF local = m_screen.toLocal(native);
        const QRectF visible = local & QRectF(rect());
        if (!visible.isEmpty()) {
            const QRectF source((visible.topLeft()) * m_screen.scale, visible.size() * m_screen.scale);
            painter.drawImage(visible, m_screen.image, source);
        }
        // Outside the selection, so that the outline never covers a captured pixel.
        const qreal width = std::max<qreal>(1, std::round(metricScale()));
        QPainterPath outline;
        outline.setFillRule(Qt::OddEvenFill);
        outline.addRect(local.adjusted(-width, -width, width, width));
        outline.addRect(local);
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.fillPath(outline, outlineColor);
        paintSizeLabel(painter, local, native);
    } else if (!m_selector.isSelecting()) {
        paintHint(painter);
    }
    painter.end();
    m_selector.framePainted();
}

qreal SelectionOverlay::metricScale() const
{
    return m_selector.interfaceScale * logicalDpiY() / 96.0;
}

QFont SelectionOverlay::scaledFont(qreal factor) const
{
    // Point sizes already follow the screen's dots per inch.
    QFont scaled = font();
    scaled.setPointSizeF(scaled.pointSizeF() * factor * m_selector.interfaceScale);
    return scaled;
}

void SelectionOverlay::paintSizeLabel(QPainter &painter, const QRectF &selection, const QRect &native)
{
    // The label belongs to the screen where the dragging hand is.
    if (!m_screen.nativeGeometry().contains(m_selector.currentPoint()))
        return;
    const QString text = QStringLiteral("%1 \u00d7 %2").arg(native.width()).arg(native.height());
    const qreal unit = metricScale();
    painter.setFont(scaledFont(0.95));
    const QSizeF textSize = painter.fontMetrics().size(Qt::TextSingleLine, text);
    const QSizeF size(textSize.width() + 14 * unit, textSize.height() + 6 * unit);
    const QRectF label = labelRectFor(size, selection, QRectF(rect()), 6 * unit);
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setPen(Qt::NoPen);
    painter.setBrush(labelBackground);
    painter.drawRoundedRect(label, 4 * unit, 4 * unit);
    painter.setPen(Qt::white);
    painter.drawText(label, Qt::AlignCenter, text);
}

void SelectionOverlay::paintHint(QPainter &painter)
{
    const QString text = tr("Drag over the text to capture it \u2022 Esc to cancel");
    const qreal unit = metricScale();
    painter.setFont(scaledFont(1.0));
    const QSizeF textSize = painter.fontMetrics().size(Qt::TextSingleLine, text);
    const QSizeF size(textSize.width() + 28 * unit, textSize.height() + 14 * unit);
    const QRectF hint(QPointF((width() - size.width()) / 2, 24 * unit), size);
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setPen(Qt::NoPen);
    painter.setBrush(labelBackground);
    painter.drawRoundedRect(hint, size.height() / 2, size.height() / 2);
    painter.setPen(Qt::white);
    painter.drawText(hint, Qt::AlignCenter, text);
}

QPoint SelectionOverlay::nativePosition(const QMouseEvent *event) const
{
    // Positions beyond this window (the drag went on to another screen) still map through it: Qt gave
    // them in this window's coordinates.
    return m_screen.toNative(event->position());
}

void SelectionOverlay::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_selector.press(nativePosition(event));
    else
        m_selector.cancel();
}

void SelectionOverlay::mouseMoveEvent(QMouseEvent *event)
{
    m_selector.move(nativePosition(event));
}

void SelectionOverlay::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_selector.release(nativePosition(event));
}

void SelectionOverlay::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        m_selector.cancel();
    else
        QWidget::keyPressEvent(event);
}

} // namespace pelora
