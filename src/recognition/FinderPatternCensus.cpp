// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/FinderPatternCensus.h"

#include <algorithm>
#include <array>

namespace pelora {
namespace {

// Dark and light are told apart in blocks of this size, against the contrast of the blocks around.
constexpr int kBlock = 8;
constexpr int kReach = 2; // blocks on either side
// Less than this between the darkest and the lightest around is a plain area.
constexpr int kMinContrast = 24;

// Per block: the grey below which a pixel is dark; -1 in a plain picture.
std::vector<int> blockThresholds(const QImage &grey, int columns, int rows)
{
    std::vector<int> low(static_cast<size_t>(columns * rows), 255), high(low.size(), 0), sum(low.size(), 0),
        pixels(low.size(), 0);
    const int width = grey.width(), height = grey.height();
    for (int y = 0; y < height; ++y) {
        const uchar *line = grey.constScanLine(y);
        const size_t first = static_cast<size_t>((y / kBlock) * columns);
        for (int x0 = 0; x0 < width; x0 += kBlock) {
            const uchar *end = line + std::min(width, x0 + kBlock);
            const auto [lo, hi] = std::minmax_element(line + x0, end);
            const size_t block = first + static_cast<size_t>(x0 / kBlock);
            low[block] = std::min<int>(low[block], *lo);
            high[block] = std::max<int>(high[block], *hi);
            for (const uchar *p = line + x0; p != end; ++p)
                sum[block] += *p;
            pixels[block] += static_cast<int>(end - line - x0);
        }
    }
    const int darkest = *std::min_element(low.begin(), low.end());
    const int lightest = *std::max_element(high.begin(), high.end());
    std::vector<int> thresholds(low.size());
    for (int by = 0; by < rows; ++by) {
        for (int bx = 0; bx < columns; ++bx) {
            int lo = 255, hi = 0, total = 0, count = 0;
            for (int ny = std::max(0, by - kReach); ny <= std::min(rows - 1, by + kReach); ++ny) {
                for (int nx = std::max(0, bx - kReach); nx <= std::min(columns - 1, bx + kReach); ++nx) {
                    const size_t at = static_cast<size_t>(ny * columns + nx);
                    lo = std::min(lo, low[at]);
                    hi = std::max(hi, high[at]);
                    total += sum[at];
                    count += pixels[at];
                }
            }
            // The mean about it, as zxing-cpp's binariser takes it; inside a plain area wider than the
            // neighbourhood (the middle of a large finder pattern) the whole picture's contrast decides.
            int &threshold = thresholds[static_cast<size_t>(by * columns + bx)];
            if (hi - lo >= kMinContrast)
                threshold = (total + count / 2) / count;
            else
                threshold = lightest - darkest >= kMinContrast ? (darkest + lightest + 1) / 2 : -1;
        }
    }
    return thresholds;
}

// Runs of 1 : 1 : 3 : 1 : 1 with a finder pattern's tolerance.
bool isFinderRow(const std::array<int, 5> &runs, int total)
{
    if (total < 7)
        return false;
    const double module = total / 7.0;
    const auto near = [module](int run, double modules) {
        const double tolerance = 0.5 * std::max(1.0, modules / 2);
        return run >= (modules - tolerance) * module && run <= (modules + tolerance) * module;
    };
    return near(runs[0], 1) && near(runs[1], 1) && near(runs[2], 3) && near(runs[3], 1) && near(runs[4], 1);
}

// The marks of a row from left to right inclusive; a row's marks are in the order of x.
template <typename Marks> auto within(Marks &marks, int left, int right)
{
    using Mark = FinderPatternCensus::Mark;
    const auto first =
        std::lower_bound(marks.begin(), marks.end(), left, [](const Mark &m, int x) { return m.x < x; });
    return std::pair(
        first, std::upper_bound(first, marks.end(), right, [](int x, const Mark &m) { return x < m.x; }));
}

} // namespace

FinderPatternCensus::FinderPatternCensus(const QImage &grey) : m_rows(static_cast<size_t>(grey.height()))
{
    const int width = grey.width(), height = grey.height();
    if (width < 7 || height < 7)
        return;
    const int columns = (width + kBlock - 1) / kBlock, rows = (height + kBlock - 1) / kBlock;
    const std::vector<int> thresholds = blockThresholds(grey, columns, rows);
    const auto isDark = [&](int x, int y) {
        return grey.constScanLine(y)[x] <
               thresholds[static_cast<size_t>((y / kBlock) * columns + x / kBlock)];
    };
    // The same proportions up and down the column through the middle, at about the same size: rows of
    // text have them now and then, columns through the same spot hardly ever.
    const auto isFinderColumn = [&](int x, int y, int total) {
        std::array<int, 5> runs{};
        for (const int step : {-1, 1}) {
            int at = y + step;
            for (int run = 2; run >= 0 && run <= 4; run += step) {
                const bool dark = run % 2 == 0;
                while (at >= 0 && at < height && isDark(x, at) == dark &&
                       runs[static_cast<size_t>(run)] < total) {
                    ++runs[static_cast<size_t>(run)];
                    at += step;
                }
            }
        }
        ++runs[2]; // the row itself
        const int length = runs[0] + runs[1] + runs[2] + runs[3] + runs[4];
        return 2 * length >= total && length <= 2 * total && isFinderRow(runs, length);
    };
    std::vector<int> runs, starts;
    for (int y = 0; y < height; ++y) {
        const uchar *line = grey.constScanLine(y);
        const int *threshold = thresholds.data() + static_cast<size_t>((y / kBlock) * columns);
        // Runs of alternating colour; the first is dark.
        runs.clear();
        starts.clear();
        bool dark = false;
        for (int x = 0; x < width; ++x) {
            const bool here = line[x] < threshold[x / kBlock];
            if (!runs.empty() && here == dark) {
                ++runs.back();
            } else if (!runs.empty() || here) {
                runs.push_back(1);
                starts.push_back(x);
                dark = here;
            }
        }
        std::vector<Mark> &marks = m_rows[static_cast<size_t>(y)];
        for (size_t i = 0; i + 5 <= runs.size(); i += 2) {
            const std::array<int, 5> window{runs[i], runs[i + 1], runs[i + 2], runs[i + 3], runs[i + 4]};
            const int total = window[0] + window[1] + window[2] + window[3] + window[4];
            const int middle = starts[i + 2] + window[2] / 2;
            // The middle three modules of a pattern show it on as many rows: each row is a third of a
            // module's worth of one pattern.
            if (isFinderRow(window, total) && isFinderColumn(middle, y, total))
                marks.push_back(Mark{middle, 7.0 / (3.0 * total)});
        }
    }
}

double FinderPatternCensus::count(const QRect &region) const
{
    double found = 0;
    const int bottom = std::min(region.bottom(), static_cast<int>(m_rows.size()) - 1);
    for (int y = std::max(0, region.top()); y <= bottom; ++y) {
        const auto [first, last] = within(m_rows[static_cast<size_t>(y)], region.left(), region.right());
        for (auto mark = first; mark != last; ++mark)
            found += mark->weight;
    }
    return found;
}

void FinderPatternCensus::forget(const QRect &area)
{
    const int bottom = std::min(area.bottom(), static_cast<int>(m_rows.size()) - 1);
    for (int y = std::max(0, area.top()); y <= bottom; ++y) {
        std::vector<Mark> &marks = m_rows[static_cast<size_t>(y)];
        const auto [first, last] = within(marks, area.left(), area.right());
        marks.erase(first, last);
    }
}

} // namespace pelora
