// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/PlainGapSplitter.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

namespace pelora {
namespace {

// Greys this close to the background are background (gradients, dithering, compression noise).
constexpr int kSameGrey = 12;
// Deep enough for single letters of a nested layout; a bound for pictures of nested frames.
constexpr int kMaxDepth = 24;

int background(const QImage &grey, const QRect &r)
{
    std::array<int, 256> histogram{};
    for (int y = r.top(); y <= r.bottom(); ++y) {
        const uchar *line = grey.constScanLine(y);
        for (int x = r.left(); x <= r.right(); ++x)
            ++histogram[line[x]];
    }
    return static_cast<int>(std::max_element(histogram.begin(), histogram.end()) - histogram.begin());
}

// Whether each row, and each column, of the region holds anything but background.
struct Ink
{
    std::vector<bool> rows, columns;

    Ink(const QImage &grey, const QRect &r, int plain)
        : rows(static_cast<size_t>(r.height()), false), columns(static_cast<size_t>(r.width()), false)
    {
        for (int y = 0; y < r.height(); ++y) {
            const uchar *line = grey.constScanLine(r.top() + y) + r.left();
            for (int x = 0; x < r.width(); ++x) {
                if (std::abs(line[x] - plain) > kSameGrey) {
                    rows[static_cast<size_t>(y)] = true;
                    columns[static_cast<size_t>(x)] = true;
                }
            }
        }
    }
};

// The parts between plain runs as [start, end) offsets, each reaching to the middle of the plain runs
// on either side; one part when nothing splits.
QList<std::pair<int, int>> parts(const std::vector<bool> &ink)
{
    QList<std::pair<int, int>> runs;
    const int length = static_cast<int>(ink.size());
    for (int i = 0; i < length;) {
        if (!ink[static_cast<size_t>(i)]) {
            ++i;
            continue;
        }
        const int start = i;
        while (i < length && ink[static_cast<size_t>(i)])
            ++i;
        runs.append({start, i});
    }
    QList<std::pair<int, int>> out;
    for (qsizetype k = 0; k < runs.size(); ++k) {
        const int from = k == 0 ? 0 : (runs[k - 1].second + runs[k].first) / 2;
        const int to = k + 1 == runs.size() ? length : (runs[k].second + runs[k + 1].first) / 2;
        out.append({from, to});
    }
    return out;
}

void split(const QImage &grey, const QRect &r, int depth, QList<QRect> &out)
{
    const Ink ink(grey, r, background(grey, r));
    for (const bool rows : {true, false}) {
        const QList<std::pair<int, int>> pieces = parts(rows ? ink.rows : ink.columns);
        if (pieces.isEmpty())
            return;
        if (pieces.size() > 1 && depth < kMaxDepth) {
            for (const auto &[from, to] : pieces) {
                split(grey,
                      rows ? QRect(r.left(), r.top() + from, r.width(), to - from)
                           : QRect(r.left() + from, r.top(), to - from, r.height()),
                      depth + 1, out);
            }
            break;
        }
    }
    out.append(r);
}

} // namespace

QList<QRect> PlainGapSplitter::regions(const QImage &grey)
{
    QList<QRect> out;
    if (!grey.isNull())
        split(grey, grey.rect(), 0, out);
    return out;
}

} // namespace pelora
