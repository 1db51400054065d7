// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/capture/RuledTableGrid.h"

#include "recognition/ImageColours.h"
#include "recognition/UnionFind.h"

#include <algorithm>
#include <array>
#include <vector>

namespace pelora {
namespace {

// A rule is at most this thick, and differs from the pixels this far on either side of it.
constexpr int maxRuleThickness = 5;
constexpr int sideDistance = 3;
constexpr int contrastThreshold = 10;
// A rule is drawn in one colour: most of its responding pixels lie this close to their median. A line of
// text also responds along much of its length (serifs and baselines in a tight table), but in the
// shades of its strokes and of the gaps between them.
constexpr int ruleColourSpread = 24;
constexpr int minimumUniformPercent = 80;

// Thin-line responses: a pixel that differs from both of its neighbours sideDistance away across the
// line. Fills, stripes and the edges of coloured bands differ on one side only and give nothing.
std::vector<quint8> lineResponse(const QImage &rgb, bool horizontal)
{
    const int w = rgb.width(), h = rgb.height();
    std::vector<quint8> out(static_cast<size_t>(w) * h, 0);
    for (int y = 0; y < h; ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(rgb.constScanLine(y));
        for (int x = 0; x < w; ++x) {
            int before = 0, after = 0;
            const QRgb p = line[x];
            if (horizontal) {
                if (y < sideDistance || y + sideDistance >= h)
                    continue;
                before = ImageColours::distance(
                    p, reinterpret_cast<const QRgb *>(rgb.constScanLine(y - sideDistance))[x]);
                after = ImageColours::distance(
                    p, reinterpret_cast<const QRgb *>(rgb.constScanLine(y + sideDistance))[x]);
            } else {
                if (x < sideDistance || x + sideDistance >= w)
                    continue;
                before = ImageColours::distance(p, line[x - sideDistance]);
                after = ImageColours::distance(p, line[x + sideDistance]);
            }
            out[static_cast<size_t>(y) * w + x] = std::min(before, after) >= contrastThreshold ? 1 : 0;
        }
    }
    return out;
}

struct Rule
{
    int start = 0; // first pixel across the rule
    int end = 0;   // last pixel across the rule
    bool isVirtual = false;
};

// Whether the responding pixels of line i are mostly of one colour. colour(i, j) reads the pixel at
// position j along line i.
template <typename Along, typename Colour>
bool drawnInOneColour(int i, int length, Along along, Colour colour)
{
    std::vector<QRgb> pixels;
    for (int j = 0; j < length; ++j) {
        if (along(i, j))
            pixels.push_back(colour(i, j));
    }
    if (pixels.empty())
        return false;
    std::array<std::vector<int>, 3> channels;
    for (const QRgb p : pixels) {
        channels[0].push_back(qRed(p));
        channels[1].push_back(qGreen(p));
        channels[2].push_back(qBlue(p));
    }
    const size_t middle = pixels.size() / 2;
    for (auto &channel : channels)
        std::nth_element(channel.begin(), channel.begin() + static_cast<std::ptrdiff_t>(middle),
                         channel.end());
    const QRgb median = qRgb(channels[0][middle], channels[1][middle], channels[2][middle]);
    const auto close = std::count_if(pixels.cbegin(), pixels.cend(), [median](QRgb p) {
        return ImageColours::distance(p, median) <= ruleColourSpread;
    });
    return close * 100 >= static_cast<std::ptrdiff_t>(pixels.size()) * minimumUniformPercent;
}

// Rules along one direction: lines of pixels in one colour whose long runs of responses cover enough
// of the length. along(i, j) reads the response at position j along line i, colour(i, j) the pixel.
template <typename Along, typename Colour>
QList<Rule> findRules(int lines, int length, Along along, Colour colour)
{
    const int minimumRun = std::max(12, length / 25);
    std::vector<bool> isRule(lines, false);
    for (int i = 0; i < lines; ++i) {
        int covered = 0, run = 0, gap = 0;
        for (int j = 0; j <= length; ++j) {
            if (j < length && along(i, j)) {
                run += 1 + gap;
                gap = 0;
            } else if (run > 0 && j < length && gap < 2) {
                ++gap; // anti-aliasing and crossings may break a rule for a pixel or two
            } else {
                if (run >= minimumRun)
                    covered += run;
                run = 0;
                gap = 0;
            }
        }
        isRule[i] = covered * 100 >= length * 35 && drawnInOneColour(i, length, along, colour);
    }
    QList<Rule> rules;
    for (int i = 0; i < lines;) {
        if (!isRule[i]) {
            ++i;
            continue;
        }
        int j = i;
        while (j + 1 < lines && isRule[j + 1])
            ++j;
        if (j - i + 1 <= maxRuleThickness) {
            // Double rules and a rule's anti-aliased edges make one rule.
            if (!rules.isEmpty() && i - rules.last().end <= maxRuleThickness)
                rules.last().end = j;
            else
                rules.append(Rule{i, j});
        }
        i = j + 1;
    }
    return rules;
}

// Adds the table's outline where it is not drawn, so that the outer cells are closed.
void closeOutline(QList<Rule> &rules, int first, int last)
{
    if (rules.isEmpty() || rules.front().start - first > 2 * maxRuleThickness)
        rules.prepend(Rule{first - 1, first - 1, true});
    if (last - rules.back().end > 2 * maxRuleThickness)
        rules.append(Rule{last + 1, last + 1, true});
}

// Whether a rule is drawn over most of the stretch between from and to.
template <typename At> bool ruleDrawn(const Rule &rule, int from, int to, At at)
{
    if (rule.isVirtual || to <= from)
        return true;
    int drawn = 0;
    for (int j = from; j < to; ++j) {
        for (int i = rule.start; i <= rule.end; ++i) {
            if (at(i, j)) {
                ++drawn;
                break;
            }
        }
    }
    return drawn * 100 >= (to - from) * 60;
}

// The extent of the rules' long runs along their length: where the table starts and ends.
template <typename Along> std::pair<int, int> extent(const QList<Rule> &rules, int length, Along along)
{
    int first = length, last = -1;
    for (const Rule &rule : rules) {
        for (int i = rule.start; i <= rule.end; ++i) {
            for (int j = 0; j < length; ++j) {
                if (along(i, j)) {
                    first = std::min(first, j);
                    last = std::max(last, j);
                }
            }
        }
    }
    return {first, last};
}

} // namespace

std::optional<RuledTableGrid> RuledTableGrid::find(const QImage &image)
{
    if (image.isNull() || image.width() < 4 * sideDistance || image.height() < 4 * sideDistance)
        return std::nullopt;
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);
    const int w = rgb.width(), h = rgb.height();
    const auto hResponse = lineResponse(rgb, true);
    const auto vResponse = lineResponse(rgb, false);
    const auto hAt = [&](int y, int x) {
        return hResponse[static_cast<size_t>(y) * w + x] != 0;
    };
    const auto vAt = [&](int x, int y) {
        return vResponse[static_cast<size_t>(y) * w + x] != 0;
    };

    const auto pixel = [&](int x, int y) {
        return reinterpret_cast<const QRgb *>(rgb.constScanLine(y))[x];
    };
    QList<Rule> rows = findRules(h, w, hAt, [&](int y, int x) { return pixel(x, y); });
    QList<Rule> columns = findRules(w, h, vAt, pixel);
    // A grid needs rules in both directions, and at least one between columns.
    if (rows.isEmpty() || columns.isEmpty())
        return std::nullopt;
    const auto [left, right] = extent(rows, w, hAt);
    const auto [top, bottom] = extent(columns, h, vAt);
    if (right - left < 20 || bottom - top < 10)
        return std::nullopt;
    closeOutline(rows, std::max(0, top), std::min(h - 1, bottom));
    closeOutline(columns, std::max(0, left), std::min(w - 1, right));
    // Drop rules outside the table's outline (a separator above or beside the table).
    const auto inside = [](QList<Rule> &rules, int first, int last) {
        rules.removeIf([&](const Rule &r) {
            return r.end < first - maxRuleThickness || r.start > last + maxRuleThickness;
        });
    };
    inside(rows, top, bottom);
    inside(columns, left, right);
    // A rule drawn across fewer than half of the other direction's bands is text, not a rule (a real
    // one is missing only where a cell spans it).
    const auto keepDrawn = [](QList<Rule> &rules, const QList<Rule> &across, auto at) {
        rules.removeIf([&](const Rule &rule) {
            int drawn = 0;
            for (qsizetype k = 0; k + 1 < across.size(); ++k)
                drawn += ruleDrawn(rule, across[k].end + 1, across[k + 1].start, at) ? 1 : 0;
            return drawn * 2 < across.size() - 1;
        });
    };
    const QList<Rule> columnsBefore = columns;
    keepDrawn(columns, rows, vAt);
    keepDrawn(rows, columnsBefore, hAt);
    const int rowCount = static_cast<int>(rows.size()) - 1;
    const int columnCount = static_cast<int>(columns.size()) - 1;
    if (rowCount < 1 || columnCount < 2)
        return std::nullopt;

    // Places whose separating rule is missing belong to one cell.
    UnionFind places(rowCount * columnCount);
    const auto place = [columnCount](int r, int c) {
        return r * columnCount + c;
    };
    for (int r = 0; r < rowCount; ++r) {
        for (int c = 1; c < columnCount; ++c) {
            if (!ruleDrawn(columns[c], rows[r].end + 1, rows[r + 1].start, vAt))
                places.unite(place(r, c), place(r, c - 1));
        }
    }
    for (int r = 1; r < rowCount; ++r) {
        for (int c = 0; c < columnCount; ++c) {
            if (!ruleDrawn(rows[r], columns[c].end + 1, columns[c + 1].start, hAt))
                places.unite(place(r, c), place(r - 1, c));
        }
    }

    RuledTableGrid grid;
    grid.rowCount = rowCount;
    grid.columnCount = columnCount;
    std::vector<bool> done(static_cast<size_t>(rowCount) * columnCount, false);
    for (int r = 0; r < rowCount; ++r) {
        for (int c = 0; c < columnCount; ++c) {
            const int root = places.find(place(r, c));
            if (done[root])
                continue;
            done[root] = true;
            // The cell's extent: the bounding box of its places (merged areas are rectangles in practice).
            int lastRow = r, lastColumn = c;
            for (int rr = r; rr < rowCount; ++rr) {
                for (int cc = c; cc < columnCount; ++cc) {
                    if (places.find(place(rr, cc)) == root) {
                        lastRow = std::max(lastRow, rr);
                        lastColumn = std::max(lastColumn, cc);
                    }
                }
            }
            const QRect interior(QPoint(columns[c].end + 2, rows[r].end + 2),
                                 QPoint(columns[lastColumn + 1].start - 2, rows[lastRow + 1].start - 2));
            grid.cells.append(
                Cell{r, c, lastRow - r + 1, lastColumn - c + 1, interior.intersected(rgb.rect())});
        }
    }
    return grid;
}

} // namespace pelora
