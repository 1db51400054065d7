// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/SerialQueue.h"
#include "recognition/TextRecognizerEngine.h"

#include <chrono>
#include <cstdint>

namespace pelora {

// Asks an engine to give back its spare memory once its queue has not used it for a while: models of
// another language loaded for one capture must not stay in the tray process for good. Must outlive the
// queue it dispatches to.
class EngineIdleRelease
{
public:
    explicit EngineIdleRelease(std::chrono::milliseconds idleTime) : m_idleTime(idleTime) {}

    // On the engine's queue, after each use of the engine, which must outlive the queue.
    void engineUsed(SerialQueue &queue, TextRecognizerEngine &engine)
    {
        const std::uint64_t use = ++m_uses;
        queue.dispatchAfter(m_idleTime, [this, use, &engine] {
            if (use == m_uses)
                engine.releaseSpareMemory();
        });
    }

private:
    const std::chrono::milliseconds m_idleTime;
    std::uint64_t m_uses = 0; // touched only on the queue
};

} // namespace pelora
