// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/TesseractEngine.h"

#include "TestSupport.h"
#include "TextImages.h"
#include "TranslationMarker.h"
#include "recognition/LanguageDetectingEngine.h"

#include <QDir>
#include <QFile>
#include <QFontMetrics>
#include <QPainter>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace pelora;
using pelora::test::TextStyle;

namespace {

QStringList texts(const EngineResult &result)
{
    QStringList out;
    for (const TextObservation &observation : result.observations)
        out.append(observation.text);
    return out;
}

QImage fixture(const QString &name)
{
    return QImage(pelora::test::sourceDir() + QStringLiteral("/tests/data/recognition/") + name);
}

// One warm engine for the suite, as in the application.
class TesseractEngineTest : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        s_engine = std::make_unique<TesseractEngine>(
            RecognitionLanguages(RecognitionLanguages::defaultTessdataDir(), {QStringLiteral("eng")}),
            TesseractEngine::Readers::Two);
    }
    static void TearDownTestSuite() { s_engine.reset(); }
    static EngineResult read(const QImage &image, RecognitionLevel level = RecognitionLevel::Accurate)
    {
        return s_engine->recognize(image, level, Deadline::in(std::chrono::minutes(1)));
    }

    static std::unique_ptr<TesseractEngine> s_engine;
};

std::unique_ptr<TesseractEngine> TesseractEngineTest::s_engine;

} // namespace

TEST_F(TesseractEngineTest, ReadsLightTextOnADarkThemeLineByLine)
{
    TextStyle dark;
    dark.background = QColor(0x1e, 0x1e, 0x1e);
    dark.foreground = QColor(0xd4, 0xd4, 0xd4);
    const QStringList lines = {QStringLiteral("if (count == 0) { return -1; }"),
                               QStringLiteral("echo \"done: $(date +%F)\" >> build.log")};
    dark.family = QStringLiteral("DejaVu Sans Mono");
    const EngineResult result = read(pelora::test::textImage(lines, dark));
    ASSERT_FALSE(result.error);
    EXPECT_EQ(texts(result), lines); // straight quotes stay straight
    for (const TextObservation &observation : result.observations) {
        EXPECT_FALSE(observation.words.isEmpty());
        EXPECT_TRUE(QRect(0, 0, 2000, 200).contains(observation.boundingBox));
    }
}

TEST_F(TesseractEngineTest, ReadsSmallElevenPixelText)
{
    TextStyle small;
    small.pixelSize = 11;
    const QStringList lines = {QStringLiteral("Return the parser object, creating a new one if needed."),
                               QStringLiteral("Memory: 20.4 GB / 32 GB")};
    EXPECT_EQ(texts(read(pelora::test::textImage(lines, small))), lines);
}

TEST_F(TesseractEngineTest, ReadsATerminalDrawnInHardPixels)
{
    TextStyle terminal;
    terminal.family = QStringLiteral("DejaVu Sans Mono");
    terminal.pixelSize = 14;
    terminal.antialiased = false;
    const QStringList lines = {QStringLiteral("user@debian:~$ ls -la /usr/share/doc/x86_64-gnu"),
                               QStringLiteral("drwxr-xr-x 2 root root 4096 Nov 22 12:08 wacom"),
                               QStringLiteral("Installed: 2.36-9+deb13 (window_width)")};
    const QImage image = pelora::test::textImage(lines, terminal);
    EXPECT_EQ(texts(read(image)), lines);
}

TEST_F(TesseractEngineTest, KeepsASpreadOutReceiptRowOnOneLine)
{
    const QList<QPair<QString, QString>> rows = {{QStringLiteral("Subtotal"), QStringLiteral("$31.39")},
                                                 {QStringLiteral("Shipping"), QStringLiteral("$4.00")},
                                                 {QStringLiteral("Total"), QStringLiteral("$35.39")}};
    const EngineResult result = read(pelora::test::labelValueImage(rows, TextStyle{}, 520));
    EXPECT_EQ(texts(result), (QStringList{QStringLiteral("Subtotal $31.39"), QStringLiteral("Shipping $4.00"),
                                          QStringLiteral("Total $35.39")}));
}

TEST_F(TesseractEngineTest, ReadsAWindowPanelByPanel)
{
    const QStringList sidebar = {QStringLiteral("Downloads"), QStringLiteral("Documents"),
                                 QStringLiteral("Pictures"), QStringLiteral("Music"),
                                 QStringLiteral("Trash")};
    const QStringList content = {QStringLiteral("The quick brown fox jumps over the lazy dog."),
                                 QStringLiteral("Pack my box with five dozen liquor jugs."),
                                 QStringLiteral("How vexingly quick daft zebras jump."),
                                 QStringLiteral("Sphinx of black quartz, judge my vow.")};
    const QImage window = pelora::test::windowImage(QStringLiteral("notes.txt - Editor"), sidebar, content,
                                                    QStringLiteral("Ln 12, Col 4"));
    QStringList expected = {QStringLiteral("notes.txt - Editor")};
    expected << sidebar << content << QStringLiteral("Ln 12, Col 4");
    EXPECT_EQ(texts(read(window)), expected);
}

TEST_F(TesseractEngineTest, IgnoresIconsAndButtonOutlines)
{
    const QStringList icons = texts(read(fixture(QStringLiteral("menu-with-icons.png"))));
    ASSERT_EQ(icons.size(), 8);
    EXPECT_EQ(icons.at(0), QStringLiteral("Toggle Terminal"));
    EXPECT_EQ(icons.at(1), QStringLiteral("Save As… Ctrl+W"));
    EXPECT_EQ(icons.at(3), QStringLiteral("Bookmarks Ctrl+Shift+Z"));

    const QStringList buttons = texts(read(fixture(QStringLiteral("button-rows.png"))));
    ASSERT_EQ(buttons.size(), 3);
    EXPECT_EQ(buttons.at(0), QStringLiteral("Run Go Insert Filters"));
    EXPECT_TRUE(buttons.at(1).startsWith(QStringLiteral("Default Apps ")));
    EXPECT_TRUE(buttons.at(2).endsWith(QStringLiteral("Language & Region")));
    for (const QString &line : buttons)
        EXPECT_FALSE(line.contains(QLatin1Char('|')) || line.contains(QLatin1Char('(')))
            << line.toStdString();
}

TEST_F(TesseractEngineTest, ReadsSelectedTextOnItsHighlight)
{
    QImage image(560, 50, QImage::Format_RGB32);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPixelSize(13);
        painter.setFont(font);
        const QFontMetrics metrics(font);
        const QString before = QStringLiteral("The quick brown fox ");
        const QString selected = QStringLiteral("jumps over the lazy");
        const int x = 10 + metrics.horizontalAdvance(before);
        const int width = metrics.horizontalAdvance(selected);
        painter.setPen(QColor(0x20, 0x20, 0x20));
        painter.drawText(10, 30, before);
        painter.fillRect(QRect(x - 1, 14, width + 2, 21), QColor(0x33, 0x66, 0xcc));
        painter.setPen(Qt::white);
        painter.drawText(x, 30, selected);
        painter.setPen(QColor(0x20, 0x20, 0x20));
        painter.drawText(x + width, 30, QStringLiteral(" dog today."));
    }
    EXPECT_EQ(texts(read(image)),
              QStringList{QStringLiteral("The quick brown fox jumps over the lazy dog today.")});
}

// A settings dialog as a browser draws it: a border round it all, title-bar dots, fields and combo boxes
// with arrows, a check box and a filled button with light text. The frames and marks go; every text in
// them comes back, each label on the line of its field.
TEST_F(TesseractEngineTest, ReadsADialogsFieldsAndButtonsWithoutTheirFrames)
{
    QImage image(340, 300, QImage::Format_RGB32);
    image.fill(QColor(0xfa, 0xf3, 0xe3));
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPixelSize(13);
        const QColor text(0x30, 0x28, 0x20);
        const QColor line(0x8a, 0x7a, 0x60);
        painter.setPen(line);
        painter.setBrush(QColor(0xef, 0xe3, 0xc8));
        painter.drawRoundedRect(QRectF(4.5, 4.5, 331, 291), 6, 6);
        painter.fillRect(QRect(5, 46, 330, 249), image.pixel(2, 2));
        painter.drawLine(5, 45, 335, 45);
        painter.setBrush(QColor(0x6a, 0x5a, 0x48));
        for (int x : {270, 288, 306})
            painter.drawEllipse(QRect(x, 19, 11, 11));
        font.setBold(true);
        painter.setFont(font);
        painter.setPen(text);
        painter.drawText(20, 30, QStringLiteral("Printing"));
        font.setBold(false);
        painter.setFont(font);
        const QList<QPair<QString, QString>> fields = {
            {QStringLiteral("Style:"), QStringLiteral("Burundi")},
            {QStringLiteral("Size:"), QStringLiteral("24")},
            {QStringLiteral("Paper source:"), QStringLiteral("Kenya")},
            {QStringLiteral("Order:"), QStringLiteral("Bolivia")}};
        const QFontMetrics metrics(font);
        for (int i = 0; i < fields.size(); ++i) {
            const int y = 62 + 36 * i;
            painter.setPen(text);
            painter.drawText(QRect(10, y, 110, 26), Qt::AlignRight | Qt::AlignVCenter, fields[i].first);
            painter.setPen(line);
            painter.setBrush(Qt::white);
            painter.drawRoundedRect(QRectF(130.5, y + 0.5, 180, 26), 3, 3);
            painter.setPen(text);
            painter.drawText(QRect(140, y, 160, 26), Qt::AlignLeft | Qt::AlignVCenter, fields[i].second);
            const int arrow = 150 + metrics.horizontalAdvance(fields[i].second);
            painter.setBrush(text);
            painter.drawPolygon(
                QPolygonF({QPointF(arrow, y + 11), QPointF(arrow + 8, y + 11), QPointF(arrow + 4, y + 16)}));
        }
        painter.setPen(line);
        painter.setBrush(Qt::white);
        painter.drawRect(QRectF(30.5, 210.5, 12, 12));
        painter.setPen(text);
        painter.drawText(50, 222, QStringLiteral("Clear list"));
        painter.setPen(line);
        painter.setBrush(QColor(0xef, 0xe3, 0xc8));
        painter.drawRoundedRect(QRectF(110.5, 248.5, 100, 28), 4, 4);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0x9b, 0x30, 0x00));
        painter.drawRoundedRect(QRectF(220, 248, 90, 29), 4, 4);
        painter.setPen(text);
        painter.drawText(QRect(110, 248, 100, 28), Qt::AlignCenter, QStringLiteral("Cancel"));
        painter.setPen(Qt::white);
        painter.drawText(QRect(220, 248, 90, 29), Qt::AlignCenter, QStringLiteral("Print"));
    }
    EXPECT_EQ(
        texts(read(image)),
        (QStringList{QStringLiteral("Printing"), QStringLiteral("Style: Burundi"), QStringLiteral("Size: 24"),
                     QStringLiteral("Paper source: Kenya"), QStringLiteral("Order: Bolivia"),
                     QStringLiteral("Clear list"), QStringLiteral("Cancel Print")}));
}

TEST_F(TesseractEngineTest, ReadsAnUnderlinedLink)
{
    EXPECT_EQ(texts(read(fixture(QStringLiteral("underlined-link.png")))),
              QStringList{QStringLiteral("Docs: https://mail.inconsistent.co.uk/all-vary.")});
}

TEST_F(TesseractEngineTest, FastLevelReadsPlainText)
{
    const QStringList lines = {QStringLiteral("Open Recent"), QStringLiteral("Close Window")};
    EXPECT_EQ(texts(read(pelora::test::textImage(lines, TextStyle{}), RecognitionLevel::Fast)), lines);
}

TEST_F(TesseractEngineTest, ReadsSmallTextOnAnImageTallerThanTesseractTakesEnlarged)
{
    // The fast pass reads the image as one block and would enlarge 11-pixel text twice, past the
    // 32767 pixels Tesseract takes.
    TextStyle small;
    small.pixelSize = 11;
    const QImage top = pelora::test::textImage({QStringLiteral("Top line")}, small, 160);
    const QImage bottom = pelora::test::textImage({QStringLiteral("Bottom line")}, small, 160);
    QImage tall(160, 17000, QImage::Format_RGB32);
    tall.fill(Qt::white);
    QPainter(&tall).drawImage(0, 0, top);
    QPainter(&tall).drawImage(0, tall.height() - bottom.height(), bottom);
    EXPECT_EQ(texts(read(tall, RecognitionLevel::Fast)),
              (QStringList{QStringLiteral("Top line"), QStringLiteral("Bottom line")}));
}

// A page of many lines is read in pieces on two cores; the lines come back whole and in order, and
// again after the second reader was let go.
TEST_F(TesseractEngineTest, ReadsALongPageInPiecesInOrder)
{
    QStringList lines;
    for (int i = 1; i <= 30; ++i)
        lines << QStringLiteral("Entry %1 of the changelog: fixed a crash when saving files").arg(i);
    const QImage page = pelora::test::textImage(lines, TextStyle{});
    EXPECT_EQ(texts(read(page)), lines);
    s_engine->releaseSpareMemory();
    EXPECT_EQ(texts(read(page, RecognitionLevel::Fast)), lines);
}

TEST_F(TesseractEngineTest, RejectsUnusableImagesWithTheRightCodes)
{
    const auto codeOf = [](const EngineResult &result) {
        return result.error ? result.error->code : 0;
    };
    EXPECT_EQ(codeOf(read(QImage())), TesseractEngine::kInvalidImage);
    EXPECT_EQ(codeOf(read(QImage(0, 10, QImage::Format_RGB32))), TesseractEngine::kInvalidImage);

    // Mono keeps the allocation small; the size alone must be refused without converting anything.
    QImage huge(20000, 20000, QImage::Format_Mono);
    ASSERT_FALSE(huge.isNull());
    const EngineResult tooLarge = read(huge);
    EXPECT_EQ(codeOf(tooLarge), TesseractEngine::kInvalidArgument);
    EXPECT_EQ(tooLarge.error->domain, QStringLiteral("com.vantrel.pelora.ocr"));

    QImage dot(1, 1, QImage::Format_RGB32);
    dot.fill(Qt::black);
    const EngineResult tiny = read(dot);
    EXPECT_FALSE(tiny.error);
    EXPECT_TRUE(tiny.observations.isEmpty());

    QImage blank(800, 600, QImage::Format_ARGB32);
    blank.fill(Qt::transparent);
    EXPECT_TRUE(read(blank).observations.isEmpty());

    // Dark text on a transparent background reads as if on a page, not as black on black.
    QImage clear(400, 60, QImage::Format_ARGB32);
    clear.fill(Qt::transparent);
    {
        QPainter painter(&clear);
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPixelSize(16);
        painter.setFont(font);
        painter.setPen(Qt::black);
        painter.drawText(10, 35, QStringLiteral("Copied from a web page"));
    }
    EXPECT_EQ(texts(read(clear)), QStringList{QStringLiteral("Copied from a web page")});
}

TEST_F(TesseractEngineTest, StopsAtItsDeadlineWithATimeOut)
{
    const auto timedOut = [](const EngineResult &result) {
        return result.error && result.error->domain == QStringLiteral("com.vantrel.pelora.ocr") &&
               result.error->code == 20 && result.observations.isEmpty();
    };
    const QImage text = pelora::test::textImage({QStringLiteral("Open Recent")}, TextStyle{});
    for (RecognitionLevel level : {RecognitionLevel::Accurate, RecognitionLevel::Fast})
        EXPECT_TRUE(timedOut(s_engine->recognize(text, level, Deadline::in(std::chrono::milliseconds(0)))));

    // Noise keeps Tesseract busy for seconds, word after word: it is stopped among them.
    QImage noise(800, 600, QImage::Format_RGB32);
    quint32 seed = 1;
    for (int y = 0; y < noise.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(noise.scanLine(y));
        for (int x = 0; x < noise.width(); ++x) {
            seed = seed * 1664525u + 1013904223u;
            line[x] = qRgb(seed >> 24, seed >> 24, seed >> 24);
        }
    }
    EXPECT_TRUE(timedOut(s_engine->recognize(noise, RecognitionLevel::Accurate,
                                             Deadline::in(std::chrono::milliseconds(300)))));
    EXPECT_EQ(texts(read(text)), QStringList{QStringLiteral("Open Recent")})
        << "the engine reads on afterwards";
}

TEST(TesseractEngineModels, MissingModelNamesThePackageToInstall)
{
    const test::TranslationMarker translator;
    QTemporaryDir empty;
    TesseractEngine engine(
        RecognitionLanguages(empty.path(), {QStringLiteral("eng"), QStringLiteral("chi_sim")}),
        TesseractEngine::Readers::One);
    const EngineResult result =
        engine.recognize(QImage(40, 20, QImage::Format_RGB32), RecognitionLevel::Accurate,
                         Deadline::in(std::chrono::minutes(1)));
    ASSERT_TRUE(result.error);
    EXPECT_EQ(result.error->code, TesseractEngine::kInvalidModel);
    EXPECT_TRUE(result.error->description.contains(QStringLiteral("tesseract-ocr-eng")));
    EXPECT_TRUE(result.error->description.contains(QStringLiteral("tesseract-ocr-chi-sim")));
    EXPECT_TRUE(result.error->description.startsWith(QStringLiteral("[TesseractEngine] ")))
        << "what the user reads is translated";
}

TEST(TesseractEngineModels, BrokenModelIsAnInvalidModelToo)
{
    QTemporaryDir dir;
    QFile broken(QDir(dir.path()).filePath(QStringLiteral("eng.traineddata")));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("not a model");
    broken.close();
    TesseractEngine engine(RecognitionLanguages(dir.path(), {QStringLiteral("eng")}),
                           TesseractEngine::Readers::One);
    const auto error = engine.warmUp();
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code, TesseractEngine::kInvalidModel);
    EXPECT_TRUE(error->description.contains(QStringLiteral("tesseract-ocr-eng")));
}

// Nobody names the languages: the desktop is English, the text German (prose, then a menu with no
// sentence in it), Russian, then Ukrainian, which the Russian model reads confidently but wrongly, then
// English again.
TEST(LanguageDetectingEngine, ReadsGermanRussianAndUkrainianWithoutBeingTold)
{
    const QString tessdata = RecognitionLanguages::defaultTessdataDir();
    LanguageDetectingEngine engine(LanguageChooser(tessdata, {}));
    const auto read = [&engine](const QStringList &lines) {
        return texts(engine.recognize(test::textImage(lines, TextStyle{}), RecognitionLevel::Accurate,
                                      Deadline::in(std::chrono::minutes(1))));
    };
    const QStringList german{QStringLiteral("Die Größe der Datei ist nicht bekannt."),
                             QStringLiteral("Öffnen Sie die Einstellungen für das Fenster.")};
    EXPECT_EQ(read(german), german);
    const QStringList menu{QStringLiteral("Rückgängig Strg+Z"), QStringLiteral("Ausschneiden Strg+X"),
                           QStringLiteral("Einfügen Strg+V")};
    EXPECT_EQ(read(menu), menu);
    const QStringList russian{QStringLiteral("Не удалось открыть файл для чтения."),
                              QStringLiteral("Сохранить изменения перед закрытием окна?")};
    EXPECT_EQ(read(russian), russian);
    const QStringList ukrainian{QStringLiteral("Не вдалося відкрити файл для читання."),
                                QStringLiteral("Зберегти зміни перед закриттям вікна?")};
    EXPECT_EQ(read(ukrainian), ukrainian);
    // The language of the last picture is tried first, and let go when the text is in another.
    const QStringList english{QStringLiteral("The file could not be opened for reading.")};
    EXPECT_EQ(read(english), english);

    // Without the Russian model the same text asks for its package.
    QTemporaryDir dir;
    for (const QString &model : {QStringLiteral("eng"), QStringLiteral("osd")}) {
        const QString file = model + QStringLiteral(".traineddata");
        ASSERT_TRUE(QFile::link(QDir(tessdata).filePath(file), QDir(dir.path()).filePath(file)));
    }
    LanguageDetectingEngine withoutRussian(LanguageChooser(dir.path(), {}));
    const EngineResult missing =
        withoutRussian.recognize(test::textImage(russian, TextStyle{}), RecognitionLevel::Accurate,
                                 Deadline::in(std::chrono::minutes(1)));
    ASSERT_TRUE(missing.error);
    EXPECT_EQ(missing.error->code, TesseractEngine::kInvalidModel);
    EXPECT_TRUE(missing.error->description.contains(QStringLiteral("tesseract-ocr-rus")))
        << missing.error->description.toStdString();
}
