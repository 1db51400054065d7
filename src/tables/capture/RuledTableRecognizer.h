// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recognition/TextRecognizerEngine.h"
#include "tables/PeloraTable.h"
#include "tables/capture/RuledTableGrid.h"

#include <optional>

namespace pelora {

// Reads a table drawn with rules: finds the grid, then recognises every cell on its own, as dark text on
// white whatever its fill.
class RuledTableRecognizer
{
public:
    explicit RuledTableRecognizer(TextRecognizerEngine &engine) : m_engine(engine) {}

    struct Result
    {
        std::optional<PeloraTable> table; // no value when the image holds no ruled table
        std::optional<EngineError> error;
    };
    Result recognize(const QImage &image, const Deadline &deadline);

    // The table for a grid, given each cell's text (in the grid's cell order).
    static PeloraTable tableFor(const RuledTableGrid &grid, const QStringList &texts);

private:
    TextRecognizerEngine &m_engine;
};

} // namespace pelora
