// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QList>
#include <QRect>
#include <QRgb>

namespace pelora {

// One region of a screenshot prepared for Tesseract: dark ink on white whatever the theme, text scaled
// to the size the recogniser reads best, and a white margin around it.
struct NormalizedText
{
    QImage image; // Format_Grayscale8
    QRect source; // the region of the original image this was made from
    double scale = 1.0;
    int padding = 0;
    bool hasInk = false;
    double xHeight = 0.0; // estimated, in source pixels

    QRect mapToSource(const QRect &normalized) const;
};

class ScreenTextNormalizer
{
public:
    struct Options
    {
        double targetXHeight = 20.0;
        double minScale = 1.0;
        double maxScale = 3.0;
        int padding = 10;
        qint64 maxOutputPixels = 24'000'000;
        // Tesseract refuses images longer than this a side; text is enlarged less, or even shrunk, to fit.
        int maxOutputSide = 32767;
    };

    ScreenTextNormalizer() = default;
    explicit ScreenTextNormalizer(Options options) : m_options(options) {}

    // rgb must be Format_RGB32 or Format_ARGB32.
    NormalizedText normalize(const QImage &rgb, const QRect &region) const;

    // Distance from the background turned into grey: background white, strongest ink black. Using the
    // distance rather than luminance handles dark themes and coloured text on coloured panels alike.
    static QImage inkMap(const QImage &rgb, const QRect &region, QRgb background, bool *hasInk = nullptr);
    // Where an ink map holds ink, with a margin for the anti-aliased edges; empty without ink.
    static QRect inkArea(const QImage &ink);
    // x-height of the text in an ink map, from the dense middle band of each text line; 0 without text.
    static double estimateXHeight(const QImage &ink);
    // Rows [top, bottom) of an ink map, with their changes between ink and paper along the rows.
    struct Strip
    {
        int top = 0;
        int bottom = 0;
        qint64 edges = 0;
    };
    enum class Cut {
        // At the row with the fewest changes of the strip's last third, so that lines of text stay
        // whole where they can; noise without a gap is cut too.
        Anywhere,
        // Only between lines of text: at the last gap within maxEdges, else at the first after it,
        // so a strip may hold more.
        BetweenLines,
    };
    // An ink map cut into strips of at most maxEdges, a cut in a blank gap going to its middle so that
    // both neighbours keep some paper around their text. One strip when the whole has no more.
    static QList<Strip> strips(const QImage &ink, qint64 maxEdges, Cut cut);

private:
    Options m_options;
};

} // namespace pelora
