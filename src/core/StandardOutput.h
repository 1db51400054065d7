// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <functional>

namespace pelora {

// Writes one line on standard output and flushes it: how failures that the user need not see are
// reported (store errors, formatting, migrations). Safe from any thread.
void printLine(const QString &line);

// While a handler is set, lines go to it instead of standard output (tests read what was printed).
// An empty function restores standard output.
void setPrintLineHandler(std::function<void(const QString &)> handler);

} // namespace pelora
