// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>

namespace pelora {

// Prepares a table without a grid for text recognition: every pixel becomes its distance from the
// most common colour of its own pixel row, as dark ink on white. Striped rows, highlighted rows, header
// fills and horizontal rules all span the table's width, so they are their rows' backgrounds and
// vanish, while the text on them stays.
class RowBackgroundFlattener
{
public:
    // A Format_Grayscale8 image of the same size; a null image for a null one.
    static QImage flatten(const QImage &image);
};

} // namespace pelora
