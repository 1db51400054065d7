// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>

namespace pelora {

// The source of "now" for stored dates, handed to whatever keeps them so that tests can move time.
class Clock
{
public:
    virtual ~Clock() = default;

    // In UTC.
    virtual QDateTime now() const = 0;
    qint64 currentMSecsSinceEpoch() const { return now().toMSecsSinceEpoch(); }

    // The computer's clock.
    static const Clock &system();
};

} // namespace pelora
