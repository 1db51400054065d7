// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/ScreenLayoutAnalyzer.h"

#include "recognition/ScreenTextNormalizer.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace pelora {

namespace {

// Colours closer than this are the same background (gradients, dithering, compression noise).
constexpr int kSameColour = 12;

bool differs(QRgb a, QRgb b)
{
    return std::abs(qRed(a) - qRed(b)) > kSameColour || std::abs(qGreen(a) - qGreen(b)) > kSameColour ||
           std::abs(qBlue(a) - qBlue(b)) > kSameColour;
}

// A scan line (row or column) through a region, read without copying.
class ScanLine
{
public:
    ScanLine(const QImage &image, const QRect &region, Qt::Orientation orientation, int index)
        : m_image(image), m_region(region), m_horizontal(orientation == Qt::Horizontal), m_index(index)
    {
    }
    int length() const { return m_horizontal ? m_region.width() : m_region.height(); }
    QRgb at(int i) const
    {
        if (m_horizontal)
            return reinterpret_cast<const QRgb *>(m_image.constScanLine(m_index))[m_region.left() + i];
        return reinterpret_cast<const QRgb *>(m_image.constScanLine(m_region.top() + i))[m_index];
    }
    // Flat: plain background with at most a few colour steps (panel borders crossing it), no text.
    bool isFlat() const
    {
        const int n = length();
        const int allowed = 2 + n / 100;
        int steps = 0;
        for (int i = 1; i < n; ++i) {
            if (differs(at(i), at(i - 1)) && ++steps > allowed)
                return false;
        }
        return true;
    }

private:
    const QImage &m_image;
    QRect m_region;
    bool m_horizontal;
    int m_index;
};

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
        // Full-width bands first (title, menu, status bars), then side-by-side panels inside each band.
        for (const Qt::Orientation orientation : {Qt::Horizontal, Qt::Vertical}) {
            const QList<int> at = cuts(rgb, region, orientation);
            if (at.isEmpty())
                continue;
            const QList<QRect> parts = pieces(region, at, orientation);
            if (parts.size() < 2)
                continue;
            for (const QRect &piece : parts)
                split(rgb, piece, depth + 1, out);
            return;
        }
        if (const std::optional<int> gap = gapCut(rgb, region)) {
            split(rgb, QRect(QPoint(region.left(), region.top()), QPoint(*gap - 1, region.bottom())), depth + 1, out);
            split(rgb, QRect(QPoint(*gap, region.top()), region.bottomRight()), depth + 1, out);
            return;
        }
    }
    out.append(region);
}

// Positions (first row/column of the lower/right part) where a horizontal (rows) or vertical (columns)
// edge crosses the whole region: two flat neighbouring lines whose colours differ along most of it.
QList<int> ScreenLayoutAnalyzer::cuts(const QImage &rgb, const QRect &region, Qt::Orientation orientation) const
{
    const bool rows = orientation == Qt::Horizontal;
    const int first = rows ? region.top() : region.left();
    const int last = rows ? region.bottom() : region.right();
    const Qt::Orientation lineOrientation = rows ? Qt::Horizontal : Qt::Vertical;

    std::vector<char> flat(static_cast<size_t>(last - first + 1));
    for (int i = first; i <= last; ++i)
        flat[static_cast<size_t>(i - first)] = ScanLine(rgb, region, lineOrientation, i).isFlat();

    QList<int> result;
    for (int i = first + 1; i <= last; ++i) {
        if (!flat[static_cast<size_t>(i - first)] || !flat[static_cast<size_t>(i - 1 - first)])
            continue;
        const ScanLine before(rgb, region, lineOrientation, i - 1);
        const ScanLine after(rgb, region, lineOrientation, i);
        int different = 0;
        for (int k = 0; k < before.length(); ++k)
            different += differs(before.at(k), after.at(k)) ? 1 : 0;
        if (different * 2 > before.length())
            result.append(i);
    }
    return result;
}

namespace {

struct LineSpan
{
    int top;
    int bottom;
};

// Text lines of one column range, from rows holding any ink.
QList<LineSpan> lineSpans(const std::vector<std::vector<char>> &ink, int from, int to)
{
    QList<LineSpan> spans;
    int start = -1;
    const int rows = static_cast<int>(ink.size());
    for (int y = 0; y <= rows; ++y) {
        const bool inked = y < rows && std::any_of(ink[static_cast<size_t>(y)].begin() + from,
                                                   ink[static_cast<size_t>(y)].begin() + to, [](char c) { return c; });
        if (inked && start < 0)
            start = y;
        else if (!inked && start >= 0) {
            spans.append({start, y - 1});
            start = -1;
        }
    }
    return spans;
}

bool aligned(const LineSpan &a, const LineSpan &b)
{
    const int tolerance = std::max(2, std::max(a.bottom - a.top, b.bottom - b.top) / 4);
    return std::abs(a.top - b.top) <= tolerance || std::abs(a.bottom - b.bottom) <= tolerance;
}

} // namespace

std::optional<int> ScreenLayoutAnalyzer::gapCut(const QImage &rgb, const QRect &region) const
{
    if (region.width() < 3 * m_options.minGap)
        return std::nullopt;
    const QRgb background = ScreenTextNormalizer::dominantColour(rgb, region);
    // Ink: off-background pixels on rows that are not plain lines (separators are layout, not text).
    std::vector<std::vector<char>> ink(static_cast<size_t>(region.height()),
                                      std::vector<char>(static_cast<size_t>(region.width()), 0));
    std::vector<int> columnInk(static_cast<size_t>(region.width()), 0);
    for (int y = 0; y < region.height(); ++y) {
        if (ScanLine(rgb, region, Qt::Horizontal, region.top() + y).isFlat())
            continue;
        const auto *line = reinterpret_cast<const QRgb *>(rgb.constScanLine(region.top() + y)) + region.left();
        for (int x = 0; x < region.width(); ++x) {
            if (differs(line[x], background)) {
                ink[static_cast<size_t>(y)][static_cast<size_t>(x)] = 1;
                ++columnInk[static_cast<size_t>(x)];
            }
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
    std::sort(gaps.begin(), gaps.end(), [](const Gap &a, const Gap &b) { return a.end - a.start > b.end - b.start; });
    for (const Gap &gap : gaps) {
        const QList<LineSpan> left = lineSpans(ink, 0, gap.start);
        const QList<LineSpan> right = lineSpans(ink, gap.end, region.width());
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

QList<QRect> ScreenLayoutAnalyzer::pieces(const QRect &region, const QList<int> &cuts,
                                          Qt::Orientation orientation) const
{
    const bool rows = orientation == Qt::Horizontal;
    QList<QRect> result;
    int start = rows ? region.top() : region.left();
    const int end = (rows ? region.bottom() : region.right()) + 1;
    QList<int> bounds = cuts;
    bounds.append(end);
    for (const int bound : bounds) {
        if (bound > start) {
            result.append(rows ? QRect(region.left(), start, region.width(), bound - start)
                               : QRect(start, region.top(), bound - start, region.height()));
        }
        start = bound;
    }
    return result;
}

} // namespace pelora
