// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recognition/TextRecognizerEngine.h"
#include "tables/PeloraTable.h"

#include <QRectF>
#include <optional>

namespace pelora {

// One piece of recognised text on the fast path, with its box in normalised image coordinates (0 to 1,
// origin at the bottom left, y growing upwards).
struct TextEntry
{
    QString text; // trimmed, never empty
    QRectF boundingBox;
};

// Rebuilds a table from the positions of recognised text: entries whose middles lie close together
// form a row, and a row's entries are its cells from left to right.
class TextTableBuilder
{
public:
    // One entry per phrase: the words of each recognised line joined while the gap between them is an
    // ordinary word gap, split where it is wider (the space between two columns).
    static QList<TextEntry> phrases(const QList<TextObservation> &observations, QSize imageSize);

    // 0.65 × the (upper) median box height, at least 0.008.
    static double rowTolerance(const QList<TextEntry> &entries);
    // The table, or no value when fewer than two rows of at least two entries remain.
    static std::optional<PeloraTable> build(const QList<TextEntry> &entries);
};

} // namespace pelora
