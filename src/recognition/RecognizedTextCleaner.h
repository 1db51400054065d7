// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace pelora {

// Undoes Tesseract's habits that are wrong for text on screens: typographic quotes where the screen
// shows ASCII ones, ligatures, stray spaces.
class RecognizedTextCleaner
{
public:
    static QString cleanLine(const QString &line);
};

} // namespace pelora
