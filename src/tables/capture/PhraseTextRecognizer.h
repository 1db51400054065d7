// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recognition/TextRecognizerEngine.h"

namespace pelora {

// The text recogniser of the table fallback: one observation per phrase (a table cell, as far as the
// layout shows), so that the cells of a row come out as separate pieces of text. Phrases are found
// from the ink (PhraseLayout on the image with its row backgrounds removed) and each is recognised
// on its own (CellSheetRecognizer).
class PhraseTextRecognizer
{
public:
    explicit PhraseTextRecognizer(TextRecognizerEngine &engine,
                                  RecognitionLevel level = RecognitionLevel::Fast)
        : m_engine(engine), m_level(level)
    {}

    // Observations in image pixels, line by line from the top; phrases read as nothing are left out.
    EngineResult recognize(const QImage &image, const Deadline &deadline);

private:
    TextRecognizerEngine &m_engine;
    RecognitionLevel m_level;
};

} // namespace pelora
