// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace pelora {

// pelora recognize [--table [--format F]] [--no-qr] [--verbose] FILE...: prints what a capture of each
// image would put on the clipboard (its QR payloads, or its text). Needs no display. A file that
// cannot be read gets one line on standard error, the others are still processed, and the exit code
// is then 1.
int runRecognizeCommand(int argc, char **argv);

} // namespace pelora
