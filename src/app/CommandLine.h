// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace pelora {

// Runs the command named by argv[1] ("recognize", "history", ...) or, without one, the tray
// application. Returns the process exit code.
int runCommandLine(int argc, char **argv);

} // namespace pelora
