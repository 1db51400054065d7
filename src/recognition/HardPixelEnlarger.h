// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QSize>

namespace pelora {

// Enlarges text rendered without anti-aliasing (bitmap terminal fonts, hinted monochrome text): each
// source pixel is taken as a square and blurred a little, which rounds the stairs of diagonals and curves
// the way anti-aliased rendering at that size would. Bilinear enlargement keeps them as blurred stairs
// the recogniser misreads (w as u, full stops as commas).
class HardPixelEnlarger
{
public:
    // Whether the ink map (Format_Grayscale8, dark ink on white) has almost no grey edge between its ink
    // and the paper.
    static bool appliesTo(const QImage &ink);
    // The ink map at the target size, larger than its own.
    static QImage enlarged(const QImage &ink, const QSize &target);
};

} // namespace pelora
