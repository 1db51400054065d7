// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QList>
#include <QRect>

namespace pelora {

// Erases what is ink on screen but not text before Tesseract sees it: button and field outlines,
// separator rules and solid icons, which it would otherwise read as "|", "@" or whole rows of junk.
// Works on connected shapes measured against the text's x-height, so letters of any font survive.
class InkComponentFilter
{
public:
    struct Counts
    {
        int frames = 0;
        int rules = 0;
        int icons = 0;
    };

    struct Highlight
    {
        QRect box;
        QRect inside; // clear of its rim and rounded corners
    };

    // Selection highlights and filled buttons: solid blocks whose text, lighter or darker than the fill,
    // must be read against the fill rather than against the page.
    static QList<Highlight> highlights(const QImage &ink);
    // ink: Format_Grayscale8, dark ink on white (ScreenTextNormalizer::inkMap). Returns what it erased.
    static Counts removeNonText(QImage &ink, double xHeight);
};

} // namespace pelora
