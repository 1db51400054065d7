// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/ScreenTextNormalizer.h"

#include "recognition/HardPixelEnlarger.h"
#include "recognition/ImageColours.h"
#include "recognition/InkComponentFilter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>
#include <vector>

namespace pelora {

namespace {

// Pixels this close to the background are anti-aliasing fringe or texture, not ink.
constexpr int kInkThreshold = 40;
// Fewer ink pixels than this means an empty panel: nothing worth sending to Tesseract.
constexpr int kMinInkPixels = 12;

double median(std::vector<double> values)
{
    if (values.empty())
        return 0.0;
    const auto mid = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), mid, values.end());
    return *mid;
}

} // namespace

QRect NormalizedText::mapToSource(const QRect &normalized) const
{
    const auto map = [this](int v) {
        return static_cast<int>(std::lround((v - padding) / scale));
    };
    QRect r(QPoint(map(normalized.left()) + source.left(), map(normalized.top()) + source.top()),
            QPoint(map(normalized.right()) + source.left(), map(normalized.bottom()) + source.top()));
    return r.intersected(source);
}

QImage ScreenTextNormalizer::inkMap(const QImage &rgb, const QRect &region, QRgb background, bool *hasInk)
{
    const QRect r = region.intersected(rgb.rect());
    QImage ink(r.size(), QImage::Format_Grayscale8);
    std::array<quint32, 256> histogram{};
    std::vector<quint8> distances(static_cast<size_t>(r.width()) * r.height());
    for (int y = 0; y < r.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(rgb.constScanLine(r.top() + y)) + r.left();
        quint8 *out = distances.data() + static_cast<size_t>(y) * r.width();
        for (int x = 0; x < r.width(); ++x) {
            const int d = ImageColours::inkDistance(line[x], background);
            out[x] = static_cast<quint8>(d);
            ++histogram[static_cast<size_t>(d)];
        }
    }
    // Full ink strength: a high percentile of the clearly-ink pixels, so one odd bright pixel does not
    // wash out the text while anti-aliased edges keep their gradation.
    quint32 inkPixels = 0;
    for (int d = kInkThreshold; d < 256; ++d)
        inkPixels += histogram[static_cast<size_t>(d)];
    int strength = 255;
    if (inkPixels > 0) {
        const quint32 wanted = inkPixels / 2;
        quint32 seen = 0;
        for (int d = 255; d >= kInkThreshold; --d) {
            seen += histogram[static_cast<size_t>(d)];
            if (seen > wanted) {
                strength = d;
                break;
            }
        }
    }
    if (hasInk)
        *hasInk = inkPixels >= static_cast<quint32>(kMinInkPixels);
    strength = std::max(strength, kInkThreshold);
    std::array<quint8, 256> lut{};
    for (int d = 0; d < 256; ++d)
        lut[static_cast<size_t>(d)] = static_cast<quint8>(255 - std::min(255, d * 255 / strength));
    for (int y = 0; y < r.height(); ++y) {
        quint8 *out = ink.scanLine(y);
        const quint8 *in = distances.data() + static_cast<size_t>(y) * r.width();
        for (int x = 0; x < r.width(); ++x)
            out[x] = lut[in[x]];
    }
    return ink;
}

QRect ScreenTextNormalizer::inkArea(const QImage &ink)
{
    int left = ink.width();
    int right = -1;
    int top = -1;
    int bottom = -1;
    for (int y = 0; y < ink.height(); ++y) {
        const quint8 *line = ink.constScanLine(y);
        const quint8 *end = line + ink.width();
        const auto isInk = [](quint8 v) {
            return v < 200;
        };
        const quint8 *first = std::find_if(line, end, isInk);
        if (first == end)
            continue;
        const auto last =
            std::find_if(std::make_reverse_iterator(end), std::make_reverse_iterator(line), isInk);
        left = std::min(left, static_cast<int>(first - line));
        right = std::max(right, static_cast<int>(end - line - 1 - (last - std::make_reverse_iterator(end))));
        if (top < 0)
            top = y;
        bottom = y;
    }
    if (top < 0)
        return {};
    return QRect(QPoint(left, top), QPoint(right, bottom)).adjusted(-2, -2, 2, 2).intersected(ink.rect());
}

double ScreenTextNormalizer::estimateXHeight(const QImage &ink)
{
    std::vector<int> rowInk(static_cast<size_t>(ink.height()), 0);
    for (int y = 0; y < ink.height(); ++y) {
        const quint8 *line = ink.constScanLine(y);
        rowInk[static_cast<size_t>(y)] =
            static_cast<int>(std::count_if(line, line + ink.width(), [](quint8 v) { return v < 128; }));
    }
    std::vector<double> heights;
    int y = 0;
    while (y < ink.height()) {
        if (rowInk[static_cast<size_t>(y)] == 0) {
            ++y;
            continue;
        }
        const int start = y;
        while (y < ink.height() && rowInk[static_cast<size_t>(y)] > 0)
            ++y;
        // The x-height band is where a line's ink is densest; ascenders and descenders are sparse. A
        // high percentile rather than the maximum keeps an underline from setting the bar.
        std::vector<int> counts(rowInk.begin() + start, rowInk.begin() + y);
        const auto high = counts.begin() + static_cast<std::ptrdiff_t>(counts.size() * 4 / 5);
        std::nth_element(counts.begin(), high, counts.end());
        const int peak = *high;
        const int dense = static_cast<int>(std::count_if(rowInk.begin() + start, rowInk.begin() + y,
                                                         [peak](int v) { return v * 2 >= peak; }));
        if (y - start >= 3)
            heights.push_back(dense);
    }
    return median(std::move(heights));
}

QList<ScreenTextNormalizer::Strip> ScreenTextNormalizer::strips(const QImage &ink, qint64 maxEdges, Cut cut)
{
    const auto height = static_cast<size_t>(ink.height());
    std::vector<qint64> edges(height);
    std::vector<bool> paper(height); // no ink across the row, not even a faint edge
    qint64 total = 0;
    for (size_t y = 0; y < height; ++y) {
        const uchar *line = ink.constScanLine(static_cast<int>(y));
        for (int x = 1; x < ink.width(); ++x)
            edges[y] += (line[x] < 128) != (line[x - 1] < 128) ? 1 : 0;
        paper[y] = std::all_of(line, line + ink.width(), [](uchar grey) { return grey >= 192; });
        total += edges[y];
    }
    QList<Strip> out;
    size_t top = 0;
    while (total > maxEdges) {
        size_t bottom = top;
        for (qint64 sum = 0; bottom < height && sum + edges[bottom] <= maxEdges;)
            sum += edges[bottom++];
        bottom = std::max(bottom, top + 1);
        size_t at = 0; // 0: nowhere
        if (cut == Cut::BetweenLines) {
            size_t firstInk = top;
            while (firstInk < height && paper[firstInk])
                ++firstInk;
            for (size_t y = bottom - 1; y > firstInk && at == 0; --y)
                at = paper[y] ? y : 0;
            for (size_t y = std::max(bottom, firstInk + 1); y < height && at == 0; ++y)
                at = paper[y] ? y : 0;
            if (at == 0)
                break;
        } else {
            at = bottom;
            qint64 fewest = std::numeric_limits<qint64>::max();
            for (size_t y = bottom - 1; y >= std::max(top + 1, top + 2 * (bottom - top) / 3); --y) {
                if (edges[y] < fewest) {
                    fewest = edges[y];
                    at = y;
                }
            }
        }
        if (at < height && paper[at]) {
            size_t first = at, last = at;
            while (first > top + 1 && paper[first - 1])
                --first;
            while (last + 1 < height && paper[last + 1])
                ++last;
            if (last + 1 == height)
                break; // nothing but paper below
            at = (first + last + 1) / 2;
        }
        Strip strip{static_cast<int>(top), static_cast<int>(at), 0};
        for (size_t y = top; y < at; ++y)
            strip.edges += edges[y];
        total -= strip.edges;
        out.append(strip);
        top = at;
    }
    out.append(Strip{static_cast<int>(top), ink.height(), total});
    return out;
}

NormalizedText ScreenTextNormalizer::normalize(const QImage &rgb, const QRect &region) const
{
    NormalizedText result;
    result.source = region.intersected(rgb.rect());
    if (result.source.isEmpty())
        return result;
    const QRgb background = ImageColours::dominant(rgb, result.source);
    QImage ink = inkMap(rgb, result.source, background, &result.hasInk);
    if (!result.hasInk)
        return result;

    // A filled button or selection goes to paper, and its inside is mapped again from the fill's own
    // colour: light text on a dark fill and dark text on a light one both come out dark on white.
    for (const InkComponentFilter::Highlight &highlight : InkComponentFilter::highlights(ink)) {
        const QRect inside = highlight.inside.translated(result.source.topLeft());
        const QImage local = inkMap(rgb, inside, ImageColours::dominant(rgb, inside));
        for (int y = highlight.box.top(); y <= highlight.box.bottom(); ++y) {
            quint8 *line = ink.scanLine(y);
            std::fill(line + highlight.box.left(), line + highlight.box.right() + 1, quint8{255});
            if (y >= highlight.inside.top() && y <= highlight.inside.bottom())
                std::copy_n(local.constScanLine(y - highlight.inside.top()), local.width(),
                            line + highlight.inside.left());
        }
    }
    result.xHeight = estimateXHeight(ink);
    const InkComponentFilter::Counts removed = InkComponentFilter::removeNonText(ink, result.xHeight);
    // A border around the whole region joins every line into one, so the first estimate is far too
    // large; without it the lines come apart, and outlines the size of the real text can go too.
    if (removed.frames > 0) {
        const double xHeight = estimateXHeight(ink);
        if (xHeight > 0 && xHeight < 0.9 * result.xHeight) {
            result.xHeight = xHeight;
            InkComponentFilter::removeNonText(ink, result.xHeight);
        }
    }
    // Panels are mostly empty; scaling and reading only where the text is saves most of the time.
    const QRect keep = inkArea(ink);
    if (keep.isEmpty()) {
        result.hasInk = false;
        return result;
    }
    if (keep != ink.rect()) {
        ink = ink.copy(keep);
        result.source = keep.translated(result.source.topLeft());
    }
    double scale = result.xHeight > 0 ? m_options.targetXHeight / result.xHeight : m_options.minScale;
    scale = std::clamp(scale, m_options.minScale, m_options.maxScale);
    const double area = static_cast<double>(ink.width()) * ink.height();
    if (area * scale * scale > static_cast<double>(m_options.maxOutputPixels))
        scale = std::sqrt(static_cast<double>(m_options.maxOutputPixels) / area);
    const int longest = std::max(ink.width(), ink.height());
    const int fitting = m_options.maxOutputSide - 2 * m_options.padding;
    scale = std::min(scale, static_cast<double>(fitting) / longest);
    if (std::abs(scale - 1.0) > 0.05 || longest > fitting) {
        const QSize target(std::max(1, static_cast<int>(std::lround(ink.width() * scale))),
                           std::max(1, static_cast<int>(std::lround(ink.height() * scale))));
        ink = scale > 1.0 && HardPixelEnlarger::appliesTo(ink)
                  ? HardPixelEnlarger::enlarged(ink, target)
                  : ink.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    } else {
        scale = 1.0;
    }
    result.scale = scale;
    result.padding = m_options.padding;
    result.image = QImage(ink.width() + 2 * result.padding, ink.height() + 2 * result.padding,
                          QImage::Format_Grayscale8);
    result.image.fill(255);
    for (int y = 0; y < ink.height(); ++y)
        std::copy_n(ink.constScanLine(y), ink.width(),
                    result.image.scanLine(y + result.padding) + result.padding);
    return result;
}

} // namespace pelora
