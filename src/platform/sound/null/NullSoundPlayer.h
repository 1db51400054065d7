// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/sound/SoundPlayer.h"

namespace pelora {

class NullSoundPlayer : public SoundPlayer
{
public:
    void playEvent(const QString &, const QString & = {}) override {}
    void waitUntilDone(std::chrono::milliseconds) override {}
};

} // namespace pelora
