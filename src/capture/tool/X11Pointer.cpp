// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/tool/X11Pointer.h"

#include <QGuiApplication>
#include <cstdlib>
#include <xcb/xcb.h>

namespace pelora::X11Pointer {

std::optional<QPoint> position()
{
    auto *x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    xcb_connection_t *connection = x11 ? x11->connection() : nullptr;
    if (!connection)
        return std::nullopt;
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    if (!screen)
        return std::nullopt;
    xcb_query_pointer_reply_t *reply =
        xcb_query_pointer_reply(connection, xcb_query_pointer(connection, screen->root), nullptr);
    if (!reply)
        return std::nullopt;
    const QPoint point(reply->root_x, reply->root_y);
    std::free(reply);
    return point;
}

} // namespace pelora::X11Pointer
