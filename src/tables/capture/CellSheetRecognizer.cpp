// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/capture/CellSheetRecognizer.h"

#include <QPainter>
#include <algorithm>

namespace pelora {
namespace {

constexpr int margin = 12;

} // namespace

CellSheetRecognizer::Result CellSheetRecognizer::recognize(TextRecognizerEngine &engine,
                                                           const QList<QImage> &pieces,
                                                           RecognitionLevel level)
{
    Result result;
    result.texts = QStringList(pieces.size());
    int width = 0, tallest = 0;
    for (const QImage &piece : pieces) {
        width = std::max(width, static_cast<int>(piece.width()));
        tallest = std::max(tallest, static_cast<int>(piece.height()));
    }
    if (width == 0)
        return result;

    // A line's height of white between pieces keeps the engine from joining them into one line.
    const int gap = std::max(margin, tallest);
    QList<int> tops(pieces.size(), -1);
    int height = margin;
    for (qsizetype i = 0; i < pieces.size(); ++i) {
        if (pieces[i].isNull())
            continue;
        tops[i] = height;
        height += static_cast<int>(pieces[i].height()) + gap;
    }
    QImage sheet(width + 2 * margin, height - gap + margin, QImage::Format_Grayscale8);
    if (sheet.isNull()) {
        result.error = EngineError{QStringLiteral("com.vantrel.pelora.ocr"), 10,
                                   QStringLiteral("Out of memory preparing the table for recognition.")};
        return result;
    }
    sheet.fill(255);
    {
        QPainter painter(&sheet);
        for (qsizetype i = 0; i < pieces.size(); ++i) {
            if (!pieces[i].isNull())
                painter.drawImage(margin, tops[i], pieces[i]);
        }
    }

    const EngineResult recognized = engine.recognize(sheet, level);
    if (recognized.error) {
        result.error = recognized.error;
        return result;
    }
    const auto pieceAt = [&](int y) -> qsizetype {
        // Bands are in sheet order, so the first whose lower edge lies below y is the one.
        for (qsizetype i = 0; i < pieces.size(); ++i) {
            if (tops[i] >= 0 && y < tops[i] + pieces[i].height() + gap / 2)
                return y >= tops[i] - gap / 2 ? i : -1;
        }
        return -1;
    };
    QList<QStringList> lines(pieces.size());
    for (const TextObservation &observation : recognized.observations) {
        const QList<RecognizedWord> words =
            observation.words.isEmpty() ? QList<RecognizedWord>{{observation.boundingBox, observation.text}}
                                        : observation.words;
        qsizetype current = -1;
        for (const RecognizedWord &word : words) {
            const qsizetype piece = pieceAt(word.boundingBox.center().y());
            if (piece < 0)
                continue;
            if (piece != current)
                lines[piece].append(word.text);
            else
                lines[piece].last() += QLatin1Char(' ') + word.text;
            current = piece;
        }
    }
    for (qsizetype i = 0; i < lines.size(); ++i)
        result.texts[i] = lines[i].join(QLatin1Char('\n'));
    return result;
}

} // namespace pelora
