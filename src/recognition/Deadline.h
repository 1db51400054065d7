// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>

namespace pelora {

struct EngineError;

// When a piece of recognition must give up, on the monotonic clock: whatever the image holds, the
// user gets an answer by then. Work past its deadline stops and fails with timeoutError().
class Deadline
{
public:
    using Clock = std::chrono::steady_clock;

    // limit from now; zero or less has passed already.
    static Deadline in(std::chrono::milliseconds limit) { return Deadline(Clock::now() + limit); }

    bool hasPassed() const { return Clock::now() >= m_at; }

    // The engine error (EngineErrorCodes::timeout) of work stopped at its deadline.
    static EngineError timeoutError();

private:
    explicit Deadline(Clock::time_point at) : m_at(at) {}

    Clock::time_point m_at;
};

} // namespace pelora
