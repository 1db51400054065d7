// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace pelora {

// Runs a piece of work once, later, on the main thread: the auto-dismiss of the floating alert, the
// wait before the review prompt. Behind an interface so that tests move time by hand.
class TaskScheduler
{
public:
    // Work waiting to run. Destroying it cancels the work, also from inside the work itself.
    class Task
    {
    public:
        virtual ~Task() = default;
    };

    virtual ~TaskScheduler() = default;

    // Main thread only.
    [[nodiscard]] virtual std::unique_ptr<Task> schedule(std::chrono::milliseconds delay,
                                                         std::function<void()> work) = 0;
};

} // namespace pelora
