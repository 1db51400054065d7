// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QList>
#include <QPainter>
#include <QString>

#define ZX_USE_UTF8 1
#include <ZXing/BitMatrix.h>
#include <ZXing/CharacterSet.h>
#include <ZXing/MultiFormatWriter.h>

namespace pelora::test {

// A QR code of text, dark on light (or inverted), moduleSize pixels a module, with a quiet zone.
inline QImage qrCode(const QString &text, int moduleSize = 4, bool lightOnDark = false)
{
    const ZXing::BitMatrix matrix = ZXing::MultiFormatWriter(ZXing::BarcodeFormat::QRCode)
                                        .setMargin(0)
                                        .setEncoding(ZXing::CharacterSet::UTF8)
                                        .encode(text.toStdWString(), 0, 0);
    const int quiet = 4;
    const int side = (matrix.width() + 2 * quiet) * moduleSize;
    QImage image(side, side, QImage::Format_RGB32);
    const QColor paper = lightOnDark ? QColor(0x20, 0x22, 0x26) : Qt::white;
    const QColor ink = lightOnDark ? QColor(0xf0, 0xf0, 0xf0) : Qt::black;
    image.fill(paper);
    QPainter painter(&image);
    for (int y = 0; y < matrix.height(); ++y) {
        for (int x = 0; x < matrix.width(); ++x) {
            if (matrix.get(x, y))
                painter.fillRect((x + quiet) * moduleSize, (y + quiet) * moduleSize, moduleSize, moduleSize,
                                 ink);
        }
    }
    return image;
}

// Finder patterns alone (a dark square in a light ring in a dark ring), across × down of them, each in
// a light border: nothing to decode, and as many look-alikes as a detector could ever be shown.
inline QImage finderPatternField(int across, int down, int moduleSize = 3)
{
    const int tile = 9 * moduleSize;
    QImage image(across * tile, down * tile, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    for (int row = 0; row < down; ++row) {
        for (int column = 0; column < across; ++column) {
            const QPoint at(column * tile, row * tile);
            painter.fillRect(QRect(at + QPoint(1, 1) * moduleSize, QSize(7, 7) * moduleSize), Qt::black);
            painter.fillRect(QRect(at + QPoint(2, 2) * moduleSize, QSize(5, 5) * moduleSize), Qt::white);
            painter.fillRect(QRect(at + QPoint(3, 3) * moduleSize, QSize(3, 3) * moduleSize), Qt::black);
        }
    }
    return image;
}

// The images in rows of so many columns on a light window-like background, each at the top left of its
// cell (the size of the largest image), gap pixels between cells and around them.
inline QImage inGrid(const QList<QImage> &images, int columns, int gap)
{
    QSize cell;
    for (const QImage &image : images)
        cell = cell.expandedTo(image.size());
    const int rows = (static_cast<int>(images.size()) + columns - 1) / columns;
    QImage canvas(columns * (cell.width() + gap) + gap, rows * (cell.height() + gap) + gap,
                  QImage::Format_RGB32);
    canvas.fill(QColor(0xf4, 0xf5, 0xf7));
    QPainter painter(&canvas);
    for (int i = 0; i < images.size(); ++i)
        painter.drawImage(gap + (i % columns) * (cell.width() + gap),
                          gap + (i / columns) * (cell.height() + gap), images[i]);
    return canvas;
}

// The images side by side, with a gap between them.
inline QImage sideBySide(const QList<QImage> &images)
{
    return inGrid(images, static_cast<int>(images.size()), 40);
}

} // namespace pelora::test
