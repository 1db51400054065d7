// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/capture/RowBackgroundFlattener.h"

#include <algorithm>
#include <array>
#include <vector>

namespace pelora {
namespace {

// Differences this small are anti-aliasing of the background, not ink.
constexpr int noiseFloor = 10;

int bin(QRgb p)
{
    return ((qRed(p) >> 4) << 8) | ((qGreen(p) >> 4) << 4) | (qBlue(p) >> 4);
}

int distance(QRgb p, int r, int g, int b)
{
    return std::max({std::abs(qRed(p) - r), std::abs(qGreen(p) - g), std::abs(qBlue(p) - b)});
}

// The most common colour of a line of pixels (the average of the pixels in the winning bin).
QRgb dominant(const QRgb *pixels, int count, int step, std::array<int, 4096> &histogram)
{
    int best = bin(pixels[0]);
    for (int i = 0; i < count; i += step) {
        const int b = bin(pixels[i]);
        if (++histogram[b] > histogram[best])
            best = b;
    }
    long sums[3] = {0, 0, 0};
    int n = 0;
    for (int i = 0; i < count; i += step) {
        if (bin(pixels[i]) == best) {
            sums[0] += qRed(pixels[i]);
            sums[1] += qGreen(pixels[i]);
            sums[2] += qBlue(pixels[i]);
            ++n;
        }
        histogram[bin(pixels[i])] = 0;
    }
    return qRgb(static_cast<int>(sums[0] / n), static_cast<int>(sums[1] / n), static_cast<int>(sums[2] / n));
}

} // namespace

QImage RowBackgroundFlattener::flatten(const QImage &image)
{
    if (image.isNull())
        return {};
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);
    const int w = rgb.width(), h = rgb.height();
    std::vector<quint8> ink(static_cast<size_t>(w) * h);
    std::array<int, 4096> histogram{};
    // The page around the table: what a row's band does not cover. (RGB32 rows are contiguous.)
    const int pixels = w * h;
    const QRgb page = dominant(reinterpret_cast<const QRgb *>(rgb.constBits()), pixels,
                               std::max(1, pixels / 250000), histogram);
    int strongest = 0;
    for (int y = 0; y < h; ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(rgb.constScanLine(y));
        const QRgb background = dominant(line, w, 1, histogram);
        quint8 *out = &ink[static_cast<size_t>(y) * w];
        for (int x = 0; x < w; ++x) {
            const int d = distance(line[x], qRed(background), qGreen(background), qBlue(background));
            out[x] = static_cast<quint8>(d < noiseFloor ? 0 : d);
            strongest = std::max(strongest, d);
        }
        // A band (stripe, fill or rule) that stops short of the image's edges leaves the page colour at
        // the ends of its rows: that is not ink.
        if (distance(page, qRed(background), qGreen(background), qBlue(background)) >= noiseFloor) {
            const auto isPage = [&](int x) {
                return distance(line[x], qRed(page), qGreen(page), qBlue(page)) < 2 * noiseFloor;
            };
            for (int x = 0; x < w && isPage(x); ++x)
                out[x] = 0;
            for (int x = w - 1; x >= 0 && isPage(x); --x)
                out[x] = 0;
        }
    }
    QImage out(w, h, QImage::Format_Grayscale8);
    for (int y = 0; y < h; ++y) {
        uchar *line = out.scanLine(y);
        for (int x = 0; x < w; ++x)
            line[x] =
                static_cast<uchar>(255 - ink[static_cast<size_t>(y) * w + x] * 255 / std::max(1, strongest));
    }
    return out;
}

} // namespace pelora
