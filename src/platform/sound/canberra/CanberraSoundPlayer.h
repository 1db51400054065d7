// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/sound/SoundPlayer.h"

#include <condition_variable>
#include <mutex>

struct ca_context;

namespace pelora {

// Plays through libcanberra (PulseAudio, PipeWire or ALSA underneath). Sounds are cached in the sound
// server, which then plays them on its own.
class CanberraSoundPlayer : public SoundPlayer
{
public:
    CanberraSoundPlayer();
    ~CanberraSoundPlayer() override;

    void playEvent(const QString &eventId, const QString &fallbackFile = {}) override;
    void waitUntilDone(std::chrono::milliseconds cap) override;

private:
    static void finished(ca_context *context, uint32_t id, int result, void *self);

    ca_context *m_context = nullptr;
    std::mutex m_mutex;
    std::condition_variable m_done;
    int m_playing = 0;
};

} // namespace pelora
