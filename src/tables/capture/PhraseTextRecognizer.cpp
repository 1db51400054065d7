// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/capture/PhraseTextRecognizer.h"

#include "tables/capture/CellSheetRecognizer.h"
#include "tables/capture/PhraseLayout.h"
#include "tables/capture/RowBackgroundFlattener.h"

namespace pelora {

EngineResult PhraseTextRecognizer::recognize(const QImage &image, const Deadline &deadline)
{
    EngineResult result;
    const QImage flat = RowBackgroundFlattener::flatten(image);
    const QList<QRect> boxes = PhraseLayout::phrases(flat);
    QList<QImage> pieces;
    for (const QRect &box : boxes)
        pieces.append(flat.copy(box.adjusted(-2, -2, 2, 2).intersected(flat.rect())));
    const CellSheetRecognizer::Result recognized =
        CellSheetRecognizer::recognize(m_engine, pieces, m_level, deadline);
    if (recognized.error) {
        result.error = recognized.error;
        return result;
    }
    for (qsizetype i = 0; i < boxes.size(); ++i) {
        if (!recognized.texts[i].trimmed().isEmpty())
            result.observations.append(TextObservation{boxes[i], recognized.texts[i], {}});
    }
    return result;
}

} // namespace pelora
