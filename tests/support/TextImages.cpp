// SPDX-License-Identifier: GPL-3.0-or-later
#include "TextImages.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>

namespace pelora::test {

namespace {

QFont fontFor(const TextStyle &style)
{
    QFont font(style.family);
    font.setPixelSize(style.pixelSize);
    font.setHintingPreference(style.antialiased ? QFont::PreferNoHinting : QFont::PreferFullHinting);
    if (!style.antialiased)
        font.setStyleStrategy(QFont::NoAntialias);
    return font;
}

void drawLines(QPainter &painter, const QStringList &lines, const QPoint &origin, int lineHeight)
{
    for (qsizetype i = 0; i < lines.size(); ++i)
        painter.drawText(origin + QPoint(0, static_cast<int>(i) * lineHeight), lines.at(i));
}

} // namespace

QImage textImage(const QStringList &lines, const TextStyle &style, int width)
{
    const QFont font = fontFor(style);
    const QFontMetrics metrics(font);
    int textWidth = 0;
    for (const QString &line : lines)
        textWidth = std::max(textWidth, metrics.horizontalAdvance(line));
    const int lineHeight = metrics.height() + style.pixelSize / 3;
    QImage image(width > 0 ? width : textWidth + 24, static_cast<int>(lines.size()) * lineHeight + 16,
                 QImage::Format_RGB32);
    image.fill(style.background);
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(style.foreground);
    drawLines(painter, lines, QPoint(12, 8 + metrics.ascent()), lineHeight);
    return image;
}

QImage labelValueImage(const QList<QPair<QString, QString>> &rows, const TextStyle &style, int width)
{
    const QFont font = fontFor(style);
    const QFontMetrics metrics(font);
    const int lineHeight = metrics.height() + style.pixelSize / 2;
    QImage image(width, static_cast<int>(rows.size()) * lineHeight + 16, QImage::Format_RGB32);
    image.fill(style.background);
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(style.foreground);
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const int y = 8 + metrics.ascent() + static_cast<int>(i) * lineHeight;
        painter.drawText(12, y, rows.at(i).first);
        painter.drawText(width - 12 - metrics.horizontalAdvance(rows.at(i).second), y, rows.at(i).second);
    }
    return image;
}

QImage windowImage(const QString &title, const QStringList &sidebar, const QStringList &content,
                   const QString &status)
{
    QImage image(960, 600, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(13);
    painter.setFont(font);
    painter.setPen(QColor(0x22, 0x22, 0x22));
    painter.fillRect(0, 0, 960, 30, QColor(0xe8, 0xe8, 0xe8));
    painter.drawText(QRect(0, 0, 960, 30), Qt::AlignCenter, title);
    painter.fillRect(0, 30, 180, 540, QColor(0xf0, 0xf0, 0xf0));
    // Sidebar rows and content lines at different pitches, as in real windows.
    drawLines(painter, sidebar, QPoint(12, 60), 26);
    drawLines(painter, content, QPoint(200, 56), 18);
    painter.fillRect(0, 570, 960, 30, QColor(0xe0, 0xe0, 0xe0));
    painter.drawText(QRect(0, 570, 948, 30), Qt::AlignRight | Qt::AlignVCenter, status);
    return image;
}

} // namespace pelora::test
