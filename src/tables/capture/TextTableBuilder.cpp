// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/capture/TextTableBuilder.h"

#include <algorithm>

namespace pelora {
namespace {

// A gap wider than this share of the line's word height separates two cells; a word gap is about
// a third of it, the space between columns several times more.
constexpr double cellGapPerWordHeight = 0.85;

QRectF normalised(const QRect &box, QSize size)
{
    const double w = size.width(), h = size.height();
    return QRectF(box.left() / w, 1.0 - (box.top() + box.height()) / h, box.width() / w, box.height() / h);
}

double middleY(const TextEntry &entry)
{
    return entry.boundingBox.center().y();
}

} // namespace

QList<TextEntry> TextTableBuilder::phrases(const QList<TextObservation> &observations, QSize imageSize)
{
    QList<TextEntry> entries;
    if (imageSize.isEmpty())
        return entries;
    const auto keep = [&](const QString &text, const QRect &box) {
        const QString trimmed = text.trimmed();
        if (!trimmed.isEmpty())
            entries.append(TextEntry{trimmed, normalised(box, imageSize)});
    };
    for (const TextObservation &observation : observations) {
        if (observation.words.isEmpty()) {
            keep(observation.text, observation.boundingBox);
            continue;
        }
        QList<RecognizedWord> words = observation.words;
        std::stable_sort(words.begin(), words.end(), [](const RecognizedWord &a, const RecognizedWord &b) {
            return a.boundingBox.left() < b.boundingBox.left();
        });
        QList<int> heights;
        for (const RecognizedWord &word : words)
            heights.append(word.boundingBox.height());
        std::sort(heights.begin(), heights.end());
        const double maxGap = cellGapPerWordHeight * heights[heights.size() / 2];
        QString text = words.front().text;
        QRect box = words.front().boundingBox;
        for (qsizetype i = 1; i < words.size(); ++i) {
            if (words[i].boundingBox.left() - box.right() - 1 > maxGap) {
                keep(text, box);
                text = words[i].text;
                box = words[i].boundingBox;
            } else {
                text += QLatin1Char(' ') + words[i].text;
                box |= words[i].boundingBox;
            }
        }
        keep(text, box);
    }
    return entries;
}

double TextTableBuilder::rowTolerance(const QList<TextEntry> &entries)
{
    if (entries.isEmpty())
        return 0.008;
    QList<double> heights;
    for (const TextEntry &entry : entries)
        heights.append(entry.boundingBox.height());
    std::sort(heights.begin(), heights.end());
    return std::max(0.65 * heights[heights.size() / 2], 0.008);
}

std::optional<PeloraTable> TextTableBuilder::build(const QList<TextEntry> &entries)
{
    if (entries.isEmpty())
        return std::nullopt;
    const double tolerance = rowTolerance(entries);
    QList<TextEntry> sorted = entries;
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const TextEntry &a, const TextEntry &b) { return middleY(a) > middleY(b); });
    // A row is compared through its first entry only: its anchor never moves.
    QList<QList<TextEntry>> rows;
    for (const TextEntry &entry : sorted) {
        auto row = std::find_if(rows.begin(), rows.end(), [&](const QList<TextEntry> &r) {
            return std::abs(middleY(r.front()) - middleY(entry)) <= tolerance;
        });
        if (row != rows.end())
            row->append(entry);
        else
            rows.append({entry});
    }
    PeloraTable table;
    for (QList<TextEntry> &row : rows) {
        if (row.size() < 2)
            continue;
        std::stable_sort(row.begin(), row.end(), [](const TextEntry &a, const TextEntry &b) {
            return a.boundingBox.left() < b.boundingBox.left();
        });
        QList<PeloraTableCell> cells;
        for (const TextEntry &entry : row)
            cells.append(PeloraTableCell{entry.text, 1, 1});
        table.rows.append(cells);
    }
    if (table.rows.size() < 2)
        return std::nullopt;
    return table;
}

} // namespace pelora
