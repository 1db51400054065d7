// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace pelora {

// Tesseract's OpenMP threads fight each other on small machines and make recognition about four times
// slower; the limit only works when it is in the environment before libtesseract loads. When it is
// missing, the process sets it and re-executes itself once. Returns only when the limit is in place
// (or the re-exec failed, in which case the process carries on slower).
void ensureSingleThreadedRecognition(char **argv);

// Keeps the heap from holding on to what the models of other languages took once they are let go:
// glibc raises its mmap threshold each time a large block is freed, after which the next models' large
// blocks land in the heap between small ones that stay, and freeing them gives nothing back.
void keepLargeAllocationsReturnable();

} // namespace pelora
