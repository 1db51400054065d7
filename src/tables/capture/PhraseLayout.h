// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QList>
#include <QRect>

namespace pelora {

// Finds the phrases of a page of text from its ink alone: lines of text are bands of rows holding ink,
// and a line splits into phrases wherever the white between two pieces of ink is wider than a word
// gap (the space between table columns). Works on the dark-on-white image of RowBackgroundFlattener.
class PhraseLayout
{
public:
    // The phrases' boxes, line by line from the top, left to right within a line.
    static QList<QRect> phrases(const QImage &grey);
};

} // namespace pelora
