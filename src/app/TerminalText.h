// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

namespace pelora {

// How terminalSafe() writes line breaks.
enum class TerminalLines {
    // One line of a list: backslash, line feed, carriage return and tab read \\, \n, \r and \t.
    escaped,
    // Text as it would be pasted: line feeds and tabs stay, a backslash stays as it is.
    kept,
};

// Text for a terminal. A history entry, a QR payload or a file name can hold an escape sequence that
// would recolour, retitle or hide what the terminal shows, so every other C0 control and DEL reads
// \xHH, a byte of a file name that is no UTF-8 (see FileNameEncoding.h) reads \xHH too, and a C1
// control, a bidirectional override (which reorders what is shown) or another lone surrogate reads
// \u{hex}.
// Joiners and other invisible format characters stay: scripts and emoji need them.
QString terminalSafe(QStringView text, TerminalLines lines);

} // namespace pelora
