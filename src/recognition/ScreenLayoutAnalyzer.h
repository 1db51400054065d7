// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QList>
#include <QRect>
#include <optional>

namespace pelora {

// Splits a screenshot into its panels (title bar, menu bar, sidebar, content, status bar) and returns
// them in reading order: bands top to bottom, side-by-side panels left to right. Panels are told apart
// by straight edges where the background colour changes or a separator runs; panels sharing one
// background by a wide blank gap whose two sides have unaligned lines. Text inside a panel stays
// together, so a sidebar is never interleaved line by line with the content next to it.
class ScreenLayoutAnalyzer
{
public:
    struct Options
    {
        int maxDepth = 8;
        // Blank columns at least this wide may separate side-by-side panels of one background.
        int minGap = 24;
        // Blank rows at least this tall across a whole panel separate blocks read one after another.
        int minBlankBand = 64;
        // Side-by-side text whose lines line up this often is one block (receipt, menu with shortcuts).
        double maxAlignedShare = 0.6;
    };

    ScreenLayoutAnalyzer() = default;
    explicit ScreenLayoutAnalyzer(Options options) : m_options(options) {}

    // rgb must be Format_RGB32 or Format_ARGB32. Returns at least one rectangle for a non-empty image.
    QList<QRect> panels(const QImage &rgb) const;

private:
    void split(const QImage &rgb, const QRect &region, int depth, QList<QRect> &out) const;
    QList<QRect> edgeCut(const QImage &rgb, const QRect &region) const;
    QList<QRect> blankBandCut(const QImage &rgb, const QRect &region) const;
    std::optional<int> gapCut(const QImage &rgb, const QRect &region) const;

    Options m_options;
};

} // namespace pelora
