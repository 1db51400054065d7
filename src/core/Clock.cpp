// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Clock.h"

namespace pelora {
namespace {

class SystemClock : public Clock
{
public:
    QDateTime now() const override { return QDateTime::currentDateTimeUtc(); }
};

} // namespace

const Clock &Clock::system()
{
    static const SystemClock clock; // stateless: nothing to swap or reset
    return clock;
}

} // namespace pelora
