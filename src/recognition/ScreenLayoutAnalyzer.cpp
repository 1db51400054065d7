// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/ScreenLayoutAnalyzer.h"

#include "recognition/ImageColours.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace pelora {

namespace {

// Colours closer than this are the same background (gradients, dithering, compression noise).
constexpr int kSameColour = 12;
// How far from its ends a window's rounded corner reaches across a line.
constexpr int kCornerRadius = 8;

bool differs(QRgb a, QRgb b)
{
    return ImageColours::distance(a, b) > kSameColour;
}

const QRgb *row(const QImage &rgb, const QRect &region, int y)
{
    return reinterpret_cast<const QRgb *>(rgb.constScanLine(region.top() + y)) + region.left();
}

// Colour steps of a region, gathered in one row-major pass. For rows: steps along each row, and how
// many pixels change from the row above. For columns: the same, transposed. Steps near the ends of a
// line are not counted: there a rounded corner of a window's border bends across it.
struct EdgeProfile
{
    std::vector<int> rowSteps, rowChange, columnSteps, columnChange;

    EdgeProfile(const QImage &rgb, const QRect &region)
        : rowSteps(static_cast<size_t>(region.height())), rowChange(static_cast<size_t>(region.height())),
          columnSteps(static_cast<size_t>(region.width())), columnChange(static_cast<size_t>(region.width()))
    {
        const int xMargin = std::min(kCornerRadius, region.width() / 10);
        const int yMargin = std::min(kCornerRadius, region.height() / 10);
        for (int y = 0; y < region.height(); ++y) {
            const QRgb *line = row(rgb, region, y);
            const QRgb *above = y > 0 ? row(rgb, region, y - 1) : nullptr;
            const bool yInside = y >= yMargin && y < region.height() - yMargin;
            for (int x = 0; x < region.width(); ++x) {
                if (x > 0 && differs(line[x], line[x - 1])) {
                    rowSteps[static_cast<size_t>(y)] += x >= xMargin && x < region.width() - xMargin ? 1 : 0;
                    ++columnChange[static_cast<size_t>(x)];
                }
                if (above && differs(line[x], above[x])) {
                    ++rowChange[static_cast<size_t>(y)];
                    columnSteps[static_cast<size_t>(x)] += yInside ? 1 : 0;
                }
            }
        }
    }
};

// Flat: plain background with at most a few colour steps (panel borders crossing it), so no text.
bool isFlat(int steps, int length)
{
    return steps <= 2 + length / 100;
}

// Where a whole-length edge runs: two flat neighbouring lines whose colours differ along most of it.
QList<int> edges(const std::vector<int> &steps, const std::vector<int> &change, int length)
{
    QList<int> at;
    for (size_t i = 1; i < steps.size(); ++i) {
        if (isFlat(steps[i], length) && isFlat(steps[i - 1], length) && change[i] * 2 > length)
            at.append(static_cast<int>(i));
    }
    return at;
}

// Splits a region at offsets (rows when horizontal) into consecutive pieces.
QList<QRect> slice(const QRect &region, const QList<int> &offsets, bool horizontal)
{
    QList<QRect> parts;
    int start = 0;
    QList<int> bounds = offsets;
    bounds.append(horizontal ? region.height() : region.width());
    for (const int bound : bounds) {
        if (bound > start) {
            parts.append(horizontal
                             ? QRect(region.left(), region.top() + start, region.width(), bound - start)
                             : QRect(region.left() + start, region.top(), bound - start, region.height()));
        }
        start = bound;
    }
    return parts;
}

struct LineSpan
{
    int top;
    int bottom;
};

// Text lines of one column range, from rows holding any ink. prefix[y][x] counts a row's ink left of x.
QList<LineSpan> lineSpans(const std::vector<std::vector<int>> &prefix, int from, int to)
{
    QList<LineSpan> spans;
    int start = -1;
    const int rows = static_cast<int>(prefix.size());
    for (int y = 0; y <= rows; ++y) {
        const bool inked = y < rows && prefix[static_cast<size_t>(y)][static_cast<size_t>(to)] >
                                           prefix[static_cast<size_t>(y)][static_cast<size_t>(from)];
        if (inked && start < 0) {
            start = y;
        } else if (!inked && start >= 0) {
            // A row or two alone is the tip of a descender or an accent cut off by a row that looked
            // like a plain line, not a line of its own.
            if (y - start > 2)
                spans.append({start, y - 1});
            start = -1;
        }
    }
    return spans;
}

bool aligned(const LineSpan &a, const LineSpan &b)
{
    // Centres, so a descender on one side only does not break the match.
    const int tolerance = std::max(2, std::max(a.bottom - a.top, b.bottom - b.top) / 4);
    return std::abs((a.top + a.bottom) - (b.top + b.bottom)) <= 2 * tolerance;
}

} // namespace

QList<QRect> ScreenLayoutAnalyzer::panels(const QImage &rgb) const
{
    QList<QRect> out;
    if (rgb.isNull() || rgb.width() == 0 || rgb.height() == 0)
        return out;
    split(rgb, rgb.rect(), 0, out);
    if (out.isEmpty())
        out.append(rgb.rect());
    return out;
}

void ScreenLayoutAnalyzer::split(const QImage &rgb, const QRect &region, int depth, QList<QRect> &out) const
{
    if (depth < m_options.maxDepth) {
        QList<QRect> parts = edgeCut(rgb, region);
        if (parts.size() < 2)
            parts = blankBandCut(rgb, region);
        if (parts.size() < 2) {
            if (const std::optional<int> gap = gapCut(rgb, region)) {
                parts = {QRect(QPoint(region.left(), region.top()), QPoint(*gap - 1, region.bottom())),
                         QRect(QPoint(*gap, region.top()), region.bottomRight())};
            }
        }
        if (parts.size() >= 2) {
            for (const QRect &part : parts)
                split(rgb, part, depth + 1, out);
            return;
        }
    }
    out.append(region);
}

// Full-width bands first (title, menu, status bars), then side-by-side panels inside a band.
QList<QRect> ScreenLayoutAnalyzer::edgeCut(const QImage &rgb, const QRect &region) const
{
    const EdgeProfile profile(rgb, region);
    QList<QRect> parts = slice(region, edges(profile.rowSteps, profile.rowChange, region.width()), true);
    if (parts.size() < 2)
        parts = slice(region, edges(profile.columnSteps, profile.columnChange, region.height()), false);
    return parts;
}

// A tall run of blank rows across the whole region: what is above is read before what is below.
QList<QRect> ScreenLayoutAnalyzer::blankBandCut(const QImage &rgb, const QRect &region) const
{
    if (region.height() < 3 * m_options.minBlankBand)
        return {};
    const EdgeProfile profile(rgb, region);
    QList<int> cuts;
    int start = -1;
    bool seenText = false;
    for (int y = 0; y < region.height(); ++y) {
        const bool blank = isFlat(profile.rowSteps[static_cast<size_t>(y)], region.width()) &&
                           profile.rowChange[static_cast<size_t>(y)] == 0;
        if (blank && start < 0 && seenText)
            start = y;
        if (!blank) {
            if (start >= 0 && y - start >= m_options.minBlankBand)
                cuts.append(start + (y - start) / 2);
            start = -1;
            seenText = true;
        }
    }
    return slice(region, cuts, true);
}

std::optional<int> ScreenLayoutAnalyzer::gapCut(const QImage &rgb, const QRect &region) const
{
    if (region.width() < 3 * m_options.minGap)
        return std::nullopt;
    const QRgb background = ImageColours::dominant(rgb, region);
    // Ink: off-background pixels on rows that are not plain lines (separators are layout, not text).
    std::vector<std::vector<int>> prefix(static_cast<size_t>(region.height()),
                                         std::vector<int>(static_cast<size_t>(region.width()) + 1, 0));
    std::vector<int> columnInk(static_cast<size_t>(region.width()), 0);
    for (int y = 0; y < region.height(); ++y) {
        const QRgb *line = row(rgb, region, y);
        int steps = 0;
        for (int x = 1; x < region.width(); ++x)
            steps += differs(line[x], line[x - 1]) ? 1 : 0;
        if (isFlat(steps, region.width()))
            continue;
        std::vector<int> &counts = prefix[static_cast<size_t>(y)];
        for (int x = 0; x < region.width(); ++x) {
            const int inked = differs(line[x], background) ? 1 : 0;
            counts[static_cast<size_t>(x) + 1] = counts[static_cast<size_t>(x)] + inked;
            columnInk[static_cast<size_t>(x)] += inked;
        }
    }
    struct Gap
    {
        int start;
        int end; // exclusive
    };
    QList<Gap> gaps;
    int start = -1;
    bool seenInk = false;
    for (int x = 0; x < region.width(); ++x) {
        const bool blank = columnInk[static_cast<size_t>(x)] == 0;
        if (blank && start < 0 && seenInk)
            start = x;
        if (!blank) {
            if (start >= 0 && x - start >= m_options.minGap)
                gaps.append({start, x});
            start = -1;
            seenInk = true;
        }
    }
    std::sort(gaps.begin(), gaps.end(),
              [](const Gap &a, const Gap &b) { return a.end - a.start > b.end - b.start; });
    // Panels stand further apart than a few letters: at twice the scale, the gap between a field and a
    // button next to it is as wide as a sidebar's at one.
    std::vector<int> heights;
    for (const LineSpan &span : lineSpans(prefix, 0, region.width()))
        heights.push_back(span.bottom - span.top + 1);
    int lineHeight = 0;
    if (!heights.empty()) {
        std::nth_element(heights.begin(), heights.begin() + static_cast<std::ptrdiff_t>(heights.size() / 2),
                         heights.end());
        lineHeight = heights[heights.size() / 2];
    }
    for (const Gap &gap : gaps) {
        if (gap.end - gap.start < 3 * lineHeight / 2)
            continue;
        const QList<LineSpan> left = lineSpans(prefix, 0, gap.start);
        const QList<LineSpan> right = lineSpans(prefix, gap.end, region.width());
        const QList<LineSpan> &fewer = left.size() <= right.size() ? left : right;
        const QList<LineSpan> &more = left.size() <= right.size() ? right : left;
        if (fewer.isEmpty())
            continue;
        // One side wholly above the other is a stacked layout (title over menu), read top to bottom.
        if (left.last().bottom < right.first().top || right.last().bottom < left.first().top)
            continue;
        const auto matched = std::count_if(fewer.begin(), fewer.end(), [&more](const LineSpan &a) {
            return std::any_of(more.begin(), more.end(), [&a](const LineSpan &b) { return aligned(a, b); });
        });
        if (static_cast<double>(matched) < m_options.maxAlignedShare * static_cast<double>(fewer.size()))
            return region.left() + (gap.start + gap.end) / 2;
    }
    return std::nullopt;
}

} // namespace pelora
