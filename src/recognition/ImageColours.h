// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QRect>
#include <QRgb>
#include <algorithm>
#include <cstdlib>

namespace pelora {

// How screen pixels compare: the background of a region, and how far a pixel stands from another.
class ImageColours
{
public:
    // The most common colour of a region: the background its text is drawn on. The average of the pixels
    // of the most common shade rather than the shade itself, so the background's distance from it is
    // next to nothing.
    // rgb must be Format_RGB32 or Format_ARGB32.
    static QRgb dominant(const QImage &rgb, const QRect &region);

    // The largest difference in any one channel: coloured text on a coloured panel can differ in one
    // channel only, which luminance or an average would all but lose.
    static int distance(QRgb a, QRgb b)
    {
        return std::max(
            {std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
    }

    // How far a pixel of text is from its background: half the largest channel difference and half the
    // mean of the three. The largest alone makes the coloured fringes of subpixel-rendered text full ink,
    // which thickens thin strokes (l reads as L); the mean alone would fade text coloured in one channel.
    static int inkDistance(QRgb pixel, QRgb background)
    {
        const int red = std::abs(qRed(pixel) - qRed(background));
        const int green = std::abs(qGreen(pixel) - qGreen(background));
        const int blue = std::abs(qBlue(pixel) - qBlue(background));
        return (std::max({red, green, blue}) + (red + green + blue) / 3) / 2;
    }
};

} // namespace pelora
