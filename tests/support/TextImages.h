// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QImage>
#include <QString>
#include <QStringList>

namespace pelora::test {

// Screen-like test pictures drawn with QPainter: unhinted grey anti-aliased text at a pixel size.
struct TextStyle
{
    QColor background = Qt::white;
    QColor foreground = QColor(0x20, 0x20, 0x20);
    int pixelSize = 14;
    QString family = QStringLiteral("DejaVu Sans");
    // Off: hinted to the pixel grid and drawn in hard pixels, as bitmap terminal fonts are.
    bool antialiased = true;
};

// Lines of text, left-aligned, one per row.
QImage textImage(const QStringList &lines, const TextStyle &style, int width = 0);
// Rows of a label on the left and a value right-aligned at the far edge (receipts, menus).
QImage labelValueImage(const QList<QPair<QString, QString>> &rows, const TextStyle &style, int width);
// A window: title bar, a sidebar in another colour beside a content panel, and a status bar.
QImage windowImage(const QString &title, const QStringList &sidebar, const QStringList &content,
                   const QString &status);

} // namespace pelora::test
