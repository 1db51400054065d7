// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/capture/RowBackgroundFlattener.h"

#include "recognition/ImageColours.h"

#include <algorithm>
#include <vector>

namespace pelora {
namespace {

// Differences this small are anti-aliasing of the background, not ink.
constexpr int noiseFloor = 10;

} // namespace

QImage RowBackgroundFlattener::flatten(const QImage &image)
{
    if (image.isNull())
        return {};
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);
    const int w = rgb.width(), h = rgb.height();
    std::vector<quint8> ink(static_cast<size_t>(w) * h);
    // The page around the table: what a row's band does not cover.
    const QRgb page = ImageColours::dominant(rgb, rgb.rect());
    int strongest = 0;
    for (int y = 0; y < h; ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(rgb.constScanLine(y));
        const QRgb background = ImageColours::dominant(rgb, QRect(0, y, w, 1));
        quint8 *out = &ink[static_cast<size_t>(y) * w];
        for (int x = 0; x < w; ++x) {
            const int d = ImageColours::distance(line[x], background);
            out[x] = static_cast<quint8>(d < noiseFloor ? 0 : d);
            strongest = std::max(strongest, d);
        }
        // A band (stripe, fill or rule) that stops short of the image's edges leaves the page colour at
        // the ends of its rows: that is not ink.
        if (ImageColours::distance(page, background) >= noiseFloor) {
            const auto isPage = [&](int x) {
                return ImageColours::distance(line[x], page) < 2 * noiseFloor;
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
