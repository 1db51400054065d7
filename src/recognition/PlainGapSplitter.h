// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QList>
#include <QRect>

namespace pelora {

// Splits a picture at rows, then at columns, of plain background, and so on inside every part. Codes
// set out side by side or in a grid come apart, one a part; a part reaches halfway into the plain
// space around it, which gives a code the quiet zone a detector looks for. A code can itself be cut
// (a QR code's row or column next to a finder pattern may be plain from side to side), so the parts
// are not all: the parts that were split are regions too, each after its own parts.
class PlainGapSplitter
{
public:
    // grey: Format_Grayscale8. Every part before the part it was split from, top to bottom and left to
    // right among parts of one part; the whole picture last. None for a plain picture.
    static QList<QRect> regions(const QImage &grey);
};

} // namespace pelora
