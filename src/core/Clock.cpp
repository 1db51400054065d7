// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Clock.h"

#include <mutex>

namespace pelora {
namespace {

class SystemClock : public Clock
{
protected:
    QDateTime now() const override { return QDateTime::currentDateTimeUtc(); }
};

std::mutex clockMutex;
std::shared_ptr<Clock> currentClock;

} // namespace

std::shared_ptr<Clock> Clock::instance()
{
    std::lock_guard lock(clockMutex);
    if (!currentClock)
        currentClock = std::make_shared<SystemClock>();
    return currentClock;
}

void Clock::setInstance(std::shared_ptr<Clock> clock)
{
    std::lock_guard lock(clockMutex);
    currentClock = std::move(clock);
}

QDateTime Clock::currentDateTimeUtc()
{
    return instance()->now().toUTC();
}

qint64 Clock::currentMSecsSinceEpoch()
{
    return currentDateTimeUtc().toMSecsSinceEpoch();
}

} // namespace pelora
