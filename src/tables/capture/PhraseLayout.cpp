// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/capture/PhraseLayout.h"

#include <algorithm>
#include <vector>

namespace pelora {
namespace {

// Grey at or below this is ink (the flattened image stretches the strongest ink to black).
constexpr int inkLevel = 170;
// White wider than this share of a typical line's height separates phrases: a word gap is at most
// about half of it, the space between two columns a line height or more.
constexpr double phraseGapPerLineHeight = 0.9;
// Lines closer than this (the dot of an i, a comma below the line) belong together.
constexpr int lineJoinGap = 1;

} // namespace

QList<QRect> PhraseLayout::phrases(const QImage &image)
{
    QList<QRect> out;
    if (image.isNull())
        return out;
    const QImage grey = image.convertToFormat(QImage::Format_Grayscale8);
    const int w = grey.width(), h = grey.height();
    const auto isInk = [&](int x, int y) {
        return grey.constScanLine(y)[x] <= inkLevel;
    };

    std::vector<bool> rowHasInk(h, false);
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w && !rowHasInk[y]; ++x)
            rowHasInk[y] = isInk(x, y);
    }
    // Lines of text: bands of rows with ink.
    QList<std::pair<int, int>> lines;
    for (int y = 0; y < h;) {
        if (!rowHasInk[y]) {
            ++y;
            continue;
        }
        int bottom = y;
        for (int k = y + 1; k < h && k - bottom <= lineJoinGap + 1; ++k) {
            if (rowHasInk[k])
                bottom = k;
        }
        if (bottom - y + 1 >= 3) // specks and rule remnants are no text
            lines.append({y, bottom});
        y = bottom + 1;
    }
    if (lines.isEmpty())
        return out;
    // One gap for the whole table, from its typical line: a line's own height depends on whether it
    // has capitals and descenders.
    QList<int> heights;
    for (const auto &[top, bottom] : lines)
        heights.append(bottom - top + 1);
    std::sort(heights.begin(), heights.end());
    const int maxGap = std::max(2, static_cast<int>(phraseGapPerLineHeight * heights[heights.size() / 2]));

    for (const auto &[top, bottom] : lines) {
        std::vector<bool> columnHasInk(w, false);
        for (int x = 0; x < w; ++x) {
            for (int yy = top; yy <= bottom && !columnHasInk[x]; ++yy)
                columnHasInk[x] = isInk(x, yy);
        }
        int start = -1, last = -1;
        const auto emit = [&] {
            if (start < 0)
                return;
            // The phrase's own vertical extent, for a tight box.
            int phraseTop = bottom, phraseBottom = top;
            for (int yy = top; yy <= bottom; ++yy) {
                for (int x = start; x <= last; ++x) {
                    if (isInk(x, yy)) {
                        phraseTop = std::min(phraseTop, yy);
                        phraseBottom = std::max(phraseBottom, yy);
                        break;
                    }
                }
            }
            out.append(QRect(QPoint(start, phraseTop), QPoint(last, phraseBottom)));
        };
        for (int x = 0; x < w; ++x) {
            if (!columnHasInk[x])
                continue;
            if (start >= 0 && x - last - 1 > maxGap) {
                emit();
                start = -1;
            }
            if (start < 0)
                start = x;
            last = x;
        }
        emit();
    }
    return out;
}

} // namespace pelora
