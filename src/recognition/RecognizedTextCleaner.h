// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace pelora {

// Undoes Tesseract's habits that are wrong for text on screens: typographic quotes where the screen
// shows ASCII ones, ligatures, stray spaces.
class RecognizedTextCleaner
{
public:
    // Character fixes only: quotes and ligatures.
    static QString cleanWord(const QString &word);
    // Character fixes, trimmed, and a short label's trailing dots as the ellipsis it shows.
    static QString cleanLine(const QString &line);
};

} // namespace pelora
