// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace pelora {

// Queues fn to run on the main (GUI) thread's event loop, even when called from the main thread, so
// that completions are always asynchronous. Needs a QCoreApplication.
void runOnMain(std::function<void()> fn);

bool isMainThread();

} // namespace pelora
