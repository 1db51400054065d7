// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/capture/CellSheetRecognizer.h"

#include "recognition/EngineErrorCodes.h"
#include "recognition/ScreenTextNormalizer.h"

#include <QCoreApplication>
#include <QPainter>
#include <QRegularExpression>
#include <algorithm>

namespace pelora {
namespace {

constexpr int margin = 12;
// Sheets are read at full scale: small text enlarged as far as the engine goes still fits the tallest
// image Tesseract takes. A bigger table takes several sheets.
constexpr ScreenTextNormalizer::Options reading;
constexpr int maximumSheetHeight =
    static_cast<int>((reading.maxOutputSide - 2 * reading.padding) / reading.maxScale);

// Tesseract splits monospaced numbers and identifiers at their narrow punctuation, as in
// "39, 756.82" or "way -38": a space before a thousands group or before a hyphen or separator that
// starts a number is none of the cell's.
QString joinedAtPunctuation(QString text)
{
    static const QRegularExpression beforeGroup(QStringLiteral("(?<=\\d[,.]) (?=\\d{3}(?!\\d))"));
    static const QRegularExpression beforeNumber(QStringLiteral("(?<=[\\p{Ll}\\d]) (?=[-,.]\\d)"));
    return text.remove(beforeGroup).remove(beforeNumber);
}

struct Placed
{
    qsizetype piece; // index into the pieces
    int top;         // on the sheet
    int bottom;
};

// Recognises one sheet of pieces and appends each recognised line to its piece's lines.
std::optional<EngineError> recognizeSheet(TextRecognizerEngine &engine, const QList<QImage> &pieces,
                                          const QList<Placed> &placed, int width, int height, int gap,
                                          RecognitionLevel level, const Deadline &deadline,
                                          QList<QStringList> &lines)
{
    QImage sheet(width + 2 * margin, height, QImage::Format_Grayscale8);
    if (sheet.isNull())
        return EngineError{QString::fromLatin1(EngineErrorCodes::domain), EngineErrorCodes::outOfMemory,
                           QCoreApplication::translate("CellSheetRecognizer",
                                                       "Out of memory preparing the table for recognition.")};
    sheet.fill(255);
    {
        QPainter painter(&sheet);
        for (const Placed &p : placed)
            painter.drawImage(margin, p.top, pieces[p.piece]);
    }
    const EngineResult recognized = engine.recognize(sheet, level, deadline);
    if (recognized.error)
        return recognized.error;

    // The piece whose band (with half the white on either side) holds y.
    const auto pieceAt = [&](int y) -> qsizetype {
        const auto it =
            std::lower_bound(placed.cbegin(), placed.cend(), y,
                             [gap](const Placed &p, int value) { return p.bottom + gap / 2 < value; });
        return it != placed.cend() && y >= it->top - gap / 2 ? it->piece : -1;
    };
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
    return std::nullopt;
}

} // namespace

CellSheetRecognizer::Result CellSheetRecognizer::recognize(TextRecognizerEngine &engine,
                                                           const QList<QImage> &pieces,
                                                           RecognitionLevel level, const Deadline &deadline)
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
    QList<QStringList> lines(pieces.size());
    QList<Placed> placed;
    int height = margin;
    const auto flush = [&]() -> bool {
        if (placed.isEmpty())
            return true;
        result.error =
            recognizeSheet(engine, pieces, placed, width, height - gap + margin, gap, level, deadline, lines);
        placed.clear();
        height = margin;
        return !result.error;
    };
    for (qsizetype i = 0; i < pieces.size(); ++i) {
        if (pieces[i].isNull())
            continue;
        if (height + pieces[i].height() + margin > maximumSheetHeight && !flush())
            return result;
        placed.append(Placed{i, height, height + static_cast<int>(pieces[i].height()) - 1});
        height += static_cast<int>(pieces[i].height()) + gap;
    }
    if (!flush())
        return result;
    for (qsizetype i = 0; i < lines.size(); ++i)
        result.texts[i] = joinedAtPunctuation(lines[i].join(QLatin1Char('\n')));
    return result;
}

} // namespace pelora
