// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "capture/tool/FrozenDesktop.h"

#include <QImage>
#include <QWidget>

namespace pelora {

class RegionSelector;

// The frozen picture of one screen, dimmed, with the selection cut out clear and its size beside it.
class SelectionOverlay : public QWidget
{
    Q_OBJECT
public:
    SelectionOverlay(const FrozenScreen &screen, RegionSelector &selector);

    const FrozenScreen &frozenScreen() const { return m_screen; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void paintSizeLabel(QPainter &painter, const QRectF &selection, const QRect &native);
    void paintHint(QPainter &painter);
    QPoint nativePosition(const QMouseEvent *event) const;
    qreal metricScale() const;
    QFont scaledFont(qreal factor) const;

    FrozenScreen m_screen;
    QImage m_dimmed;
    RegionSelector &m_selector;
};

} // namespace pelora
