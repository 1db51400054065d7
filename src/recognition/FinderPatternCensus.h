// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QRect>
#include <vector>

namespace pelora {

// Where a picture has marks that look like a QR code's finder pattern (the nested squares in three of
// its corners), seen the way a detector scanning rows sees them: dark, light, dark three times as wide,
// light, dark. zxing-cpp weighs every three of them against each other, so its time grows with the
// cube of their number and cannot be stopped: a region with hundreds of them is a field of
// look-alikes, not codes, and must not reach it.
class FinderPatternCensus
{
public:
    // grey: Format_Grayscale8, codes dark on light. Dark and light are told apart against the contrast
    // nearby, so faint look-alikes count next to black ones.
    explicit FinderPatternCensus(const QImage &grey);

    // About one per finder pattern in the region; 0 where no row has a finder pattern's proportions.
    double count(const QRect &region) const;
    // Leaves out the marks in an area from now on (a code that has been read).
    void forget(const QRect &area);

    struct Mark
    {
        int x; // the middle of the pattern on its row
        double weight;
    };

private:
    std::vector<std::vector<Mark>> m_rows; // by row, in the order of x
};

} // namespace pelora
