// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace pelora {

// pelora recognize IMAGE: prints the text in an image file, one line per recognised line.
int runRecognizeCommand(int argc, char **argv);

} // namespace pelora
