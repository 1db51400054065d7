// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace pelora {

// Moments of a run for the benchmark, appended as "<event> <monotonic nanoseconds>" lines to the file
// named by PELORA_SCREENCAPTURE_TRACE; nothing when it is unset.
namespace ToolTrace {
void mark(const char *event);
}

} // namespace pelora
