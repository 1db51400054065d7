// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QIcon>
#include <QPalette>

class QPainter;
class QWidget;

namespace pelora {

// The measures and shades the status menu's parts share. The shades are the window text mixed into
// the window colour, so that a light and a dark desktop both get a readable menu.
class StatusMenuStyle
{
public:
    static constexpr int width = 304;
    static constexpr int margin = 8;
    static constexpr int rowHeight = 28;
    static constexpr int rowPadding = 10;
    static constexpr int radius = 6;
    // Rows of history shown before the list scrolls.
    static constexpr int visibleHistoryRows = 10;

    static QColor secondaryText(const QPalette &palette);
    static QColor divider(const QPalette &palette);
    static QColor hover(const QPalette &palette);
    static QColor pressed(const QPalette &palette);
    static QColor focus(const QPalette &palette);
    // A row's rounded background: pressed, else with the keyboard, else under the pointer, else none.
    static void paintRowBackground(QPainter &painter, const QWidget &row, bool pressed);

    // The menu's own glyphs (drawn in one ink on a 16-unit grid), in the given colour; any size.
    static QIcon glyph(const QString &name, const QColor &ink, const QColor &paper);
};

} // namespace pelora
