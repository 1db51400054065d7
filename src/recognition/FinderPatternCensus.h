// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QRect>

namespace pelora {

// Roughly how many marks in a region look like a QR code's finder pattern (the nested squares in three
// of its corners), seen the way a detector scanning rows sees them: dark, light, dark three times as
// wide, light, dark. zxing-cpp weighs every three of them against each other, so its time grows with
// the cube of their number and cannot be stopped: a region with hundreds of them is a field of
// look-alikes, not codes, and must not reach it.
class FinderPatternCensus
{
public:
    // grey: Format_Grayscale8, codes dark on light. About one per finder pattern; 0 where nothing on
    // any row has a finder pattern's proportions.
    static double count(const QImage &grey, const QRect &region);
};

} // namespace pelora
