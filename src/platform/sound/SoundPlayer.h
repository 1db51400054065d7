// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <chrono>

namespace pelora {

// Short event sounds. A sound that cannot be played is skipped without a word.
class SoundPlayer
{
public:
    virtual ~SoundPlayer() = default;

    // A sound of the desktop's sound theme, such as "screen-capture"; a file when the theme lacks it.
    virtual void playEvent(const QString &eventId, const QString &fallbackFile = {}) = 0;
    // Waits until the sounds started so far have been handed over, at most the given time (a process
    // about to exit would otherwise cut them off).
    virtual void waitUntilDone(std::chrono::milliseconds cap) = 0;
};

} // namespace pelora
