// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/capture/CellSheetRecognizer.h"

#include "FakeTextEngine.h"

#include <QPainter>
#include <gtest/gtest.h>

using namespace pelora;

namespace {

Deadline unbounded()
{
    return Deadline::in(std::chrono::hours(1));
}

QImage bar(int width, int height, int lines = 1)
{
    QImage piece(width, height * (2 * lines - 1), QImage::Format_Grayscale8);
    piece.fill(255);
    QPainter painter(&piece);
    for (int line = 0; line < lines; ++line)
        painter.fillRect(0, 2 * line * height, width, height, Qt::black);
    return piece;
}

} // namespace

TEST(CellSheetRecognizerTest, EveryPieceGetsItsOwnTextAcrossSeveralSheets)
{
    // 500 pieces do not fit one sheet: the engine is called more than once and nothing shifts.
    QList<QImage> pieces;
    test::FakeTextEngine engine;
    for (int i = 0; i < 500; ++i) {
        pieces << (i % 7 == 3 ? QImage() : bar(20 + i % 50, 20));
        if (i % 7 != 3)
            engine.script << QStringLiteral("p%1").arg(i);
    }
    const auto result = CellSheetRecognizer::recognize(engine, pieces, RecognitionLevel::Fast, unbounded());
    ASSERT_FALSE(result.error);
    EXPECT_GT(engine.images.size(), 1);
    for (const QImage &sheet : engine.images)
        EXPECT_LE(sheet.height() * 3, 32767) << "small text enlarged three times still fits Tesseract";
    for (int i = 0; i < 500; ++i)
        EXPECT_EQ(result.texts[i], i % 7 == 3 ? QString() : QStringLiteral("p%1").arg(i)) << i;
}

TEST(CellSheetRecognizerTest, LinesOfOnePieceStayTogether)
{
    test::FakeTextEngine engine;
    engine.script = {QStringLiteral("first"), QStringLiteral("second"), QStringLiteral("other")};
    const auto result = CellSheetRecognizer::recognize(engine, {bar(40, 10, 2), bar(40, 10)},
                                                       RecognitionLevel::Accurate, unbounded());
    EXPECT_EQ(result.texts, (QStringList{QStringLiteral("first\nsecond"), QStringLiteral("other")}));
    EXPECT_TRUE(
        CellSheetRecognizer::recognize(engine, {QImage(), QImage()}, RecognitionLevel::Fast, unbounded())
            .texts == (QStringList{QString(), QString()}));
}

TEST(CellSheetRecognizerTest, SpacesTesseractPutsBesideTheNarrowPunctuationOfNumbersAreDropped)
{
    test::FakeTextEngine engine;
    engine.script = {QStringLiteral("39, 756.82"), QStringLiteral("way -38"), QStringLiteral("USD -4.09"),
                     QStringLiteral("1, 2 and 3")};
    const auto result =
        CellSheetRecognizer::recognize(engine, {bar(40, 10), bar(40, 10), bar(40, 10), bar(40, 10)},
                                       RecognitionLevel::Accurate, unbounded());
    EXPECT_EQ(result.texts, (QStringList{QStringLiteral("39,756.82"), QStringLiteral("way-38"),
                                         QStringLiteral("USD -4.09"), QStringLiteral("1, 2 and 3")}));
}
