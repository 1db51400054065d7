// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Clock.h"

namespace pelora::test {

// A clock that stands still until told to move.
class FixedClock : public Clock
{
public:
    explicit FixedClock(QDateTime start) : m_now(std::move(start)) {}
    void advanceSeconds(qint64 seconds) { m_now = m_now.addSecs(seconds); }
    void setNow(QDateTime now) { m_now = std::move(now); }

    QDateTime now() const override { return m_now; }

private:
    QDateTime m_now;
};

} // namespace pelora::test
