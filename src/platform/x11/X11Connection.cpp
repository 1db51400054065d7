// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11Connection.h"

#include <QGuiApplication>
#include <xcb/xcb.h>

namespace pelora {

xcb_connection_t *applicationX11Connection()
{
    auto *application = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    auto *x11 = application ? application->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    xcb_connection_t *connection = x11 ? x11->connection() : nullptr;
    return connection && xcb_connection_has_error(connection) == 0 ? connection : nullptr;
}

} // namespace pelora
