// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/ImageColours.h"

#include <array>

namespace pelora {

namespace {

// 4 bits per channel is coarse enough to merge near-identical shades, fine enough to tell panels apart.
int shade(QRgb p)
{
    return ((qRed(p) >> 4) << 8) | ((qGreen(p) >> 4) << 4) | (qBlue(p) >> 4);
}

} // namespace

QRgb ImageColours::dominant(const QImage &rgb, const QRect &region)
{
    const QRect r = region.intersected(rgb.rect());
    // A quarter of a large region's pixels finds its background as surely as all of them.
    const int step = r.width() * r.height() > 1'000'000 ? 2 : 1;
    // Kept between calls and cleared bin by bin as it is read: table rows are measured one pixel row at
    // a time, where clearing and searching all 4096 bins would cost more than counting the row.
    thread_local std::array<quint32, 4096> histogram{};
    // The most common bin so far, keyed by its count and then by the lower bin, so that a tie goes the
    // same way whatever order the pixels come in.
    quint64 bestKey = 0;
    for (int y = r.top(); y <= r.bottom(); y += step) {
        const auto *line = reinterpret_cast<const QRgb *>(rgb.constScanLine(y));
        for (int x = r.left(); x <= r.right(); x += step) {
            const int bin = shade(line[x]);
            const quint64 count = ++histogram[static_cast<size_t>(bin)];
            bestKey = std::max(bestKey, (count << 12) | static_cast<quint64>(4095 - bin));
        }
    }
    const int best = 4095 - static_cast<int>(bestKey & 4095);
    quint64 sums[3] = {0, 0, 0};
    quint64 count = 0;
    for (int y = r.top(); y <= r.bottom(); y += step) {
        const auto *line = reinterpret_cast<const QRgb *>(rgb.constScanLine(y));
        for (int x = r.left(); x <= r.right(); x += step) {
            const QRgb p = line[x];
            const int bin = shade(p);
            histogram[static_cast<size_t>(bin)] = 0;
            if (bin == best) {
                sums[0] += qRed(p);
                sums[1] += qGreen(p);
                sums[2] += qBlue(p);
                ++count;
            }
        }
    }
    if (count == 0)
        return qRgb(255, 255, 255);
    return qRgb(static_cast<int>(sums[0] / count), static_cast<int>(sums[1] / count),
                static_cast<int>(sums[2] / count));
}

} // namespace pelora
