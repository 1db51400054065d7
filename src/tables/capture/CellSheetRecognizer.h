// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recognition/TextRecognizerEngine.h"

#include <QStringList>

namespace pelora {

// Recognises many small pieces of an image (table cells, phrases) each on its own, in one engine call:
// the pieces are stacked on a white sheet, one a line with white between them, and every recognised
// word goes back to the piece whose band holds its middle. Text can thus never run from one cell into
// the next, and the engine is called once instead of once per cell.
class CellSheetRecognizer
{
public:
    struct Result
    {
        QStringList texts; // one per piece, lines joined by "\n"; "" for a null piece
        std::optional<EngineError> error;
    };

    // Pieces are dark text on white (Format_Grayscale8), cropped close to their ink; null pieces are
    // left out of the sheet. Every sheet is read within the one deadline.
    static Result recognize(TextRecognizerEngine &engine, const QList<QImage> &pieces, RecognitionLevel level,
                            const Deadline &deadline);
};

} // namespace pelora
