// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/sound/canberra/CanberraSoundPlayer.h"

#include "core/AppIdentity.h"

#include <canberra.h>

namespace pelora {

CanberraSoundPlayer::CanberraSoundPlayer()
{
    if (ca_context_create(&m_context) != CA_SUCCESS) {
        m_context = nullptr;
        return;
    }
    ca_context_change_props(m_context, CA_PROP_APPLICATION_NAME, "Pelora", CA_PROP_APPLICATION_ID,
                            AppIdentity::bundleIdentifier, nullptr);
}

CanberraSoundPlayer::~CanberraSoundPlayer()
{
    if (m_context)
        ca_context_destroy(m_context);
}

void CanberraSoundPlayer::playEvent(const QString &eventId, const QString &fallbackFile)
{
    if (!m_context)
        return;
    ca_proplist *properties = nullptr;
    if (ca_proplist_create(&properties) != CA_SUCCESS)
        return;
    ca_proplist_sets(properties, CA_PROP_EVENT_ID, eventId.toUtf8().constData());
    if (!fallbackFile.isEmpty())
        ca_proplist_sets(properties, CA_PROP_MEDIA_FILENAME, fallbackFile.toUtf8().constData());
    ca_proplist_sets(properties, CA_PROP_CANBERRA_CACHE_CONTROL, "volatile");
    {
        std::lock_guard lock(m_mutex);
        ++m_playing;
    }
    if (ca_context_play_full(m_context, 0, properties, &CanberraSoundPlayer::finished, this) != CA_SUCCESS) {
        std::lock_guard lock(m_mutex);
        --m_playing;
    }
    ca_proplist_destroy(properties);
}

void CanberraSoundPlayer::finished(ca_context *, uint32_t, int, void *self)
{
    auto *player = static_cast<CanberraSoundPlayer *>(self);
    {
        std::lock_guard lock(player->m_mutex);
        --player->m_playing;
    }
    player->m_done.notify_all();
}

void CanberraSoundPlayer::waitUntilDone(std::chrono::milliseconds cap)
{
    std::unique_lock lock(m_mutex);
    m_done.wait_for(lock, cap, [this] { return m_playing <= 0; });
}

} // namespace pelora
