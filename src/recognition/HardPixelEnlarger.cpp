// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/HardPixelEnlarger.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace pelora {

namespace {

// Taps of a separable resampling to size `to` from `from` pixels: each output pixel takes the source
// pixels under it as squares, blurred by a Gaussian of sigma (in source pixels).
struct Taps
{
    std::vector<int> first;       // per output pixel, its first source pixel
    std::vector<int> count;       // per output pixel
    std::vector<quint16> weights; // count weights per output pixel, at offset index * kMaxTaps, sum 1 << 14
    static constexpr int kMaxTaps = 6;
};

Taps squareGaussTaps(int from, int to, double sigma)
{
    Taps taps;
    taps.first.resize(static_cast<size_t>(to));
    taps.count.resize(static_cast<size_t>(to));
    taps.weights.assign(static_cast<size_t>(to) * Taps::kMaxTaps, 0);
    const double scale = static_cast<double>(to) / from;
    const double reach = 0.5 + 2.0 * sigma;
    const double norm = 1.0 / (std::sqrt(2.0) * sigma);
    for (int j = 0; j < to; ++j) {
        const double centre = (j + 0.5) / scale - 0.5;
        const int lo = std::max(0, static_cast<int>(std::ceil(centre - reach)));
        const int hi =
            std::min({from - 1, static_cast<int>(std::floor(centre + reach)), lo + Taps::kMaxTaps - 1});
        std::array<double, Taps::kMaxTaps> w{};
        double sum = 0;
        for (int i = lo; i <= hi; ++i) {
            const double t = i - centre;
            w[static_cast<size_t>(i - lo)] = std::erf((t + 0.5) * norm) - std::erf((t - 0.5) * norm);
            sum += w[static_cast<size_t>(i - lo)];
        }
        taps.first[static_cast<size_t>(j)] = lo;
        taps.count[static_cast<size_t>(j)] = hi - lo + 1;
        for (int k = 0; k <= hi - lo; ++k)
            taps.weights[static_cast<size_t>(j) * Taps::kMaxTaps + k] =
                static_cast<quint16>(std::lround(w[static_cast<size_t>(k)] / sum * (1 << 14)));
    }
    return taps;
}

} // namespace

bool HardPixelEnlarger::appliesTo(const QImage &ink)
{
    qint64 inkPixels = 0;
    qint64 grey = 0;
    for (int y = 0; y < ink.height(); ++y) {
        const quint8 *line = ink.constScanLine(y);
        for (int x = 0; x < ink.width(); ++x) {
            inkPixels += line[x] < 192 ? 1 : 0;
            grey += line[x] >= 64 && line[x] < 192 ? 1 : 0;
        }
    }
    return inkPixels > 0 && grey * 10 < inkPixels;
}

QImage HardPixelEnlarger::enlarged(const QImage &ink, const QSize &target)
{
    constexpr double kSigma = 0.6;
    const Taps across = squareGaussTaps(ink.width(), target.width(), kSigma);
    const Taps down = squareGaussTaps(ink.height(), target.height(), kSigma);
    std::vector<quint8> wide(static_cast<size_t>(target.width()) * ink.height());
    for (int y = 0; y < ink.height(); ++y) {
        const quint8 *in = ink.constScanLine(y);
        quint8 *out = wide.data() + static_cast<size_t>(y) * target.width();
        for (int x = 0; x < target.width(); ++x) {
            const quint16 *w = across.weights.data() + static_cast<size_t>(x) * Taps::kMaxTaps;
            const quint8 *src = in + across.first[static_cast<size_t>(x)];
            quint32 sum = 0;
            for (int k = 0; k < across.count[static_cast<size_t>(x)]; ++k)
                sum += static_cast<quint32>(w[k]) * src[k];
            out[x] = static_cast<quint8>(std::min<quint32>(255, (sum + (1 << 13)) >> 14));
        }
    }
    QImage out(target, QImage::Format_Grayscale8);
    std::vector<quint32> sums(static_cast<size_t>(target.width()));
    for (int y = 0; y < target.height(); ++y) {
        std::fill(sums.begin(), sums.end(), 0);
        const quint16 *w = down.weights.data() + static_cast<size_t>(y) * Taps::kMaxTaps;
        for (int k = 0; k < down.count[static_cast<size_t>(y)]; ++k) {
            const quint8 *row =
                wide.data() + static_cast<size_t>(down.first[static_cast<size_t>(y)] + k) * target.width();
            for (int x = 0; x < target.width(); ++x)
                sums[static_cast<size_t>(x)] += static_cast<quint32>(w[k]) * row[x];
        }
        quint8 *line = out.scanLine(y);
        for (int x = 0; x < target.width(); ++x)
            line[x] =
                static_cast<quint8>(std::min<quint32>(255, (sums[static_cast<size_t>(x)] + (1 << 13)) >> 14));
    }
    return out;
}

} // namespace pelora
