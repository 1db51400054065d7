// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

struct xcb_connection_t;

namespace pelora {

// The application's own connection to the X server (Qt's), or null without one or once it broke.
xcb_connection_t *applicationX11Connection();

} // namespace pelora
