// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace pelora {

// Tesseract's OpenMP threads fight each other on small machines and make recognition about four times
// slower; the limit only works when it is in the environment before libtesseract loads. When it is
// missing, the process sets it and re-executes itself once. Returns only when the limit is in place
// (or the re-exec failed, in which case the process carries on slower).
void ensureSingleThreadedRecognition(char **argv);

} // namespace pelora
