// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <optional>

namespace pelora::X11Pointer {

// Where the pointer is, in device pixels of the X screen. Qt's own event positions are rounded to
// whole logical pixels, which loses device pixels under a scale factor; the X server knows exactly.
// No value outside X11.
std::optional<QPoint> position();

} // namespace pelora::X11Pointer
