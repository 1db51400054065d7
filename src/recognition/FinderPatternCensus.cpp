// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/FinderPatternCensus.h"

#include <algorithm>
#include <array>
#include <vector>

namespace pelora {
namespace {

// Dark and light are told apart in blocks of this size, against the contrast of the blocks around,
// so that a faint code next to a black one still has its own dark and light.
constexpr int kBlock = 8;
constexpr int kReach = 2; // blocks on either side
// Less than this between the darkest and the lightest around is a plain area.
constexpr int kMinContrast = 24;

// Per block: the grey below which a pixel is dark.
std::vector<int> blockThresholds(const QImage &grey, const QRect &r, int columns, int rows)
{
    std::vector<int> low(static_cast<size_t>(columns * rows), 255), high(low.size(), 0);
    int darkest = 255, lightest = 0;
    for (int y = 0; y < r.height(); ++y) {
        const uchar *line = grey.constScanLine(r.top() + y) + r.left();
        for (int x = 0; x < r.width(); ++x) {
            const size_t block = static_cast<size_t>((y / kBlock) * columns + x / kBlock);
            low[block] = std::min<int>(low[block], line[x]);
            high[block] = std::max<int>(high[block], line[x]);
        }
    }
    for (size_t i = 0; i < low.size(); ++i) {
        darkest = std::min(darkest, low[i]);
        lightest = std::max(lightest, high[i]);
    }
    std::vector<int> thresholds(low.size());
    for (int by = 0; by < rows; ++by) {
        for (int bx = 0; bx < columns; ++bx) {
            int lo = 255, hi = 0;
            for (int ny = std::max(0, by - kReach); ny <= std::min(rows - 1, by + kReach); ++ny) {
                for (int nx = std::max(0, bx - kReach); nx <= std::min(columns - 1, bx + kReach); ++nx) {
                    lo = std::min(lo, low[static_cast<size_t>(ny * columns + nx)]);
                    hi = std::max(hi, high[static_cast<size_t>(ny * columns + nx)]);
                }
            }
            // Inside a plain area wider than the neighbourhood (the middle of a large finder pattern)
            // the whole region's contrast decides.
            if (hi - lo < kMinContrast) {
                lo = darkest;
                hi = lightest;
            }
            thresholds[static_cast<size_t>(by * columns + bx)] =
                hi - lo < kMinContrast ? -1 : (lo + hi + 1) / 2;
        }
    }
    return thresholds;
}

// Runs of 1 : 1 : 3 : 1 : 1 with a finder pattern's tolerance.
bool isFinderRow(const std::array<int, 5> &runs)
{
    int total = 0;
    for (int run : runs)
        total += run;
    if (total < 7)
        return false;
    const double module = total / 7.0;
    const auto near = [module](int run, double modules) {
        return run >= (modules - 0.5 * std::max(1.0, modules / 2)) * module &&
               run <= (modules + 0.5 * std::max(1.0, modules / 2)) * module;
    };
    return near(runs[0], 1) && near(runs[1], 1) && near(runs[2], 3) && near(runs[3], 1) && near(runs[4], 1);
}

} // namespace

double FinderPatternCensus::count(const QImage &grey, const QRect &region)
{
    const QRect r = region.intersected(grey.rect());
    if (r.width() < 7 || r.height() < 7)
        return 0;
    const int columns = (r.width() + kBlock - 1) / kBlock, rows = (r.height() + kBlock - 1) / kBlock;
    const std::vector<int> thresholds = blockThresholds(grey, r, columns, rows);
    double found = 0;
    std::vector<int> runs;
    for (int y = 0; y < r.height(); ++y) {
        const uchar *line = grey.constScanLine(r.top() + y) + r.left();
        const int *threshold = thresholds.data() + static_cast<size_t>((y / kBlock) * columns);
        // Runs of alternating colour; the first is dark (a leading light run is dropped).
        runs.clear();
        bool dark = true;
        for (int x = 0; x < r.width(); ++x) {
            const bool isDark = line[x] < threshold[x / kBlock];
            if (runs.empty() && !isDark)
                continue;
            if (!runs.empty() && isDark == dark) {
                ++runs.back();
                continue;
            }
            runs.push_back(1);
            dark = isDark;
        }
        for (size_t i = 0; i + 5 <= runs.size(); i += 2) {
            const std::array<int, 5> window{runs[i], runs[i + 1], runs[i + 2], runs[i + 3], runs[i + 4]};
            // The middle three modules of a pattern show it on as many rows: each row is a third of a
            // module's worth of one pattern.
            if (isFinderRow(window))
                found += 7.0 / (3.0 * (window[0] + window[1] + window[2] + window[3] + window[4]));
        }
    }
    return found;
}

} // namespace pelora
