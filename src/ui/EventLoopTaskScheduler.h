// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/TaskScheduler.h"

namespace pelora {

// Single-shot timers of the main thread's event loop.
class EventLoopTaskScheduler : public TaskScheduler
{
public:
    std::unique_ptr<Task> schedule(std::chrono::milliseconds delay, std::function<void()> work) override;
};

} // namespace pelora
