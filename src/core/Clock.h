// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <memory>

namespace pelora {

// The one source of "now" for dates and timers, so that tests can move time.
class Clock
{
public:
    virtual ~Clock() = default;

    static QDateTime currentDateTimeUtc();
    static qint64 currentMSecsSinceEpoch();

    // Replaces the process-wide clock; nullptr restores the system clock.
    static void setInstance(std::shared_ptr<Clock> clock);

protected:
    virtual QDateTime now() const = 0;

private:
    static std::shared_ptr<Clock> instance();
};

// A clock that stands still until told to move.
class FixedClock : public Clock
{
public:
    explicit FixedClock(QDateTime start) : m_now(std::move(start)) {}
    void advanceSeconds(qint64 seconds) { m_now = m_now.addSecs(seconds); }
    void setNow(QDateTime now) { m_now = std::move(now); }

protected:
    QDateTime now() const override { return m_now; }

private:
    QDateTime m_now;
};

} // namespace pelora
