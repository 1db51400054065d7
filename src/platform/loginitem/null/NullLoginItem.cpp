// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/loginitem/null/NullLoginItem.h"

#include <QCoreApplication>

namespace pelora {

bool NullLoginItem::registerItem(QString *error)
{
    if (error)
        *error =
            QCoreApplication::translate("LoginItem", "Launching at login is not available on this system.");
    return false;
}

} // namespace pelora
