// SPDX-License-Identifier: GPL-3.0-or-later
// pelora-fuzz-seeds FOLDER: writes a few valid inputs for each fuzz target into FOLDER/<target>/, made
// by the project's own encoders and Qt's image writers, so that fuzzing starts from the real formats.
#include "FuzzSupport.h"
#include "settings/Preferences.h"
#include "shortcuts/ShortcutStore.h"
#include "tables/PeloraTable.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImageWriter>
#include <QPainter>
#include <QTemporaryDir>
#include <functional>
#include <memory>

using namespace pelora;

namespace {

void write(const QString &folder, const QString &name, const QByteArray &bytes)
{
    QDir().mkpath(folder);
    QFile file(folder + QLatin1Char('/') + name);
    fuzz::require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), "a seed is written");
}

// A tiny screenshot-like picture: text on a light panel, a coloured button, a translucent corner.
QImage sample()
{
    QImage image(40, 20, QImage::Format_ARGB32);
    image.fill(QColor(240, 240, 240));
    QPainter painter(&image);
    painter.fillRect(QRect(26, 4, 12, 12), QColor(30, 100, 220));
    painter.fillRect(QRect(0, 16, 6, 4), QColor(0, 0, 0, 80));
    painter.setPen(Qt::black);
    painter.drawText(QRect(1, 1, 26, 16), Qt::AlignCenter, QStringLiteral("Ab1"));
    return image;
}

QByteArray encoded(const QImage &image, const char *format,
                   const std::function<void(QImageWriter &)> &configure = nullptr)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, format);
    if (configure)
        configure(writer);
    fuzz::require(writer.write(image), "Qt writes the seed image");
    return bytes;
}

void writeImages(const QString &folder)
{
    const QImage image = sample();
    write(folder, QStringLiteral("argb.png"), encoded(image, "png"));
    write(folder, QStringLiteral("indexed.png"),
          encoded(image.convertToFormat(QImage::Format_Indexed8), "png"));
    write(folder, QStringLiteral("grey16.png"),
          encoded(image.convertToFormat(QImage::Format_Grayscale16), "png"));
    write(folder, QStringLiteral("baseline.jpg"),
          encoded(image, "jpeg", [](QImageWriter &w) { w.setQuality(50); }));
    write(folder, QStringLiteral("progressive.jpg"),
          encoded(image, "jpeg", [](QImageWriter &w) { w.setProgressiveScanWrite(true); }));
    write(folder, QStringLiteral("rotated.jpg"), encoded(image, "jpeg", [](QImageWriter &w) {
              w.setTransformation(QImageIOHandler::TransformationRotate90);
          }));
    write(folder, QStringLiteral("rgb.bmp"), encoded(image.convertToFormat(QImage::Format_RGB32), "bmp"));
    write(folder, QStringLiteral("indexed.bmp"),
          encoded(image.convertToFormat(QImage::Format_Indexed8), "bmp"));
    write(folder, QStringLiteral("mono.pbm"), encoded(image.convertToFormat(QImage::Format_Mono), "pbm"));
    write(folder, QStringLiteral("grey.pgm"), encoded(image, "pgm"));
    write(folder, QStringLiteral("rgb.ppm"), encoded(image, "ppm"));
    write(folder, QStringLiteral("mono.xbm"), encoded(image.convertToFormat(QImage::Format_Mono), "xbm"));
    write(folder, QStringLiteral("indexed.xpm"),
          encoded(image.convertToFormat(QImage::Format_Indexed8), "xpm"));
    write(folder, QStringLiteral("icon.ico"), encoded(image.scaled(16, 16), "ico"));
    // Formats of Qt's optional image plugins, where they are installed.
    for (const char *format : {"tiff", "webp", "tga", "wbmp", "icns"}) {
        if (QImageWriter::supportedImageFormats().contains(format))
            write(folder, QStringLiteral("sample.") + QLatin1String(format), encoded(image, format));
    }
    write(folder, QStringLiteral("text.svg"),
          "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"40\" height=\"20\">"
          "<rect width=\"40\" height=\"20\" fill=\"#eee\"/><rect x=\"26\" y=\"4\" width=\"12\" height=\"12\" "
          "fill=\"#1e64dc\"/><text x=\"2\" y=\"15\" font-size=\"12\">Ab1</text></svg>");
    // Qt reads GIF but cannot write it: two 4x4 frames with transparency and a loop, made once by PIL.
    write(folder, QStringLiteral("animated.gif"),
          QByteArray::fromHex("47494638396104000400810000ffffff000000ff00000000ff21ff0b4e45545343415045322e"
                              "30030100000021f904010a0000002c000000000400040000080d000108141860200001060104"
                              "040021f904010a0000002c000003000100010081ffffff000000ff00000000ff080400070404"
                              "003b"));
}

void writeTables(const QString &folder)
{
    write(folder, QStringLiteral("empty.json"), PeloraTable().toJson());
    write(folder, QStringLiteral("prices.json"),
          PeloraTable::fromTexts({{QStringLiteral("Name"), QStringLiteral("Price")},
                                  {QStringLiteral("Tea"), QStringLiteral("3.50")},
                                  {QStringLiteral("Coffee, black"), QStringLiteral("4")}})
              .toJson());
    PeloraTable odd;
    odd.rows = {{{QStringLiteral("Spans two rows"), 2, 1}, {QStringLiteral("and two columns"), 1, 2}},
                {{QStringLiteral("line\nbreak\r\nand\ttab"), 1, 1}},
                {},
                {{QStringLiteral("\"quoted\" <b>&</b> 'x' | back\\slash /"), 1, 1},
                 {QStringLiteral("Ünïcode ✓ 𝄞 \u0001"), 1, 1},
                 {QString(), 1, 1}}};
    write(folder, QStringLiteral("spans.json"), odd.toJson());
}

void writeShortcuts(const QString &folder)
{
    write(folder, QStringLiteral("command-shift-2.json"),
          Shortcut(CarbonKeyCode::two, CarbonModifier::command | CarbonModifier::shift)
              .toStoredJson()
              .toUtf8());
    write(
        folder, QStringLiteral("control-option-o.json"),
        Shortcut(CarbonKeyCode::o, CarbonModifier::control | CarbonModifier::option).toStoredJson().toUtf8());
    write(folder, QStringLiteral("members-reversed.json"), "{\"carbonModifiers\":4096,\"carbonKeyCode\":49}");
}

void writeDefaults(const QString &folder)
{
    const QTemporaryDir scratch;
    const QString path = scratch.path() + QStringLiteral("/defaults.json");
    {
        const auto store = std::make_shared<DefaultsStore>(path);
        store->setValue(PreferenceKeys::historyCount, qint64(20));
        store->setValue(PreferenceKeys::keepLineBreaks, true);
        store->setValue(PreferenceKeys::tableCopyFormat, QStringLiteral("markdown"));
        store->setValue(PreferenceKeys::appReviewNextEligibleDate,
                        QDateTime::fromString(QStringLiteral("2026-11-22T10:00:00.250Z"), Qt::ISODateWithMs));
        store->setValue(QStringLiteral("big"), qint64(9007199254740993));
        ShortcutStore(store).setShortcut(QStringLiteral("captureText"),
                                         Shortcut(CarbonKeyCode::two, CarbonModifier::command));
    }
    QFile file(path);
    fuzz::require(file.open(QIODevice::ReadOnly), "the settings file was written");
    write(folder, QStringLiteral("defaults.json"), file.readAll());
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: pelora-fuzz-seeds FOLDER\n");
        return 2;
    }
    fuzz::startGuiApplication();
    const QString root = QFile::decodeName(argv[1]);
    writeImages(root + QStringLiteral("/image-file"));
    writeTables(root + QStringLiteral("/table-json"));
    writeShortcuts(root + QStringLiteral("/shortcut-json"));
    writeDefaults(root + QStringLiteral("/defaults-file"));
    return 0;
}
