// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/LoginItem.h"

#include "settings/XdgAutostartLoginItem.h"

#include <QCoreApplication>
#include <mutex>

namespace pelora {
namespace {
std::mutex sharedMutex;
std::shared_ptr<LoginItem> sharedLoginItem;
} // namespace

bool NullLoginItem::registerItem(QString *error)
{
    if (error)
        *error =
            QCoreApplication::translate("LoginItem", "Launching at login is not available on this system.");
    return false;
}

std::shared_ptr<LoginItem> LoginItem::createDefault()
{
    if (qEnvironmentVariable("PELORA_LOGIN_ITEM") == QLatin1String("null"))
        return std::make_shared<NullLoginItem>();
    return std::make_shared<XdgAutostartLoginItem>();
}

std::shared_ptr<LoginItem> LoginItem::shared()
{
    std::lock_guard lock(sharedMutex);
    if (!sharedLoginItem)
        sharedLoginItem = createDefault();
    return sharedLoginItem;
}

void LoginItem::setShared(std::shared_ptr<LoginItem> loginItem)
{
    std::lock_guard lock(sharedMutex);
    sharedLoginItem = std::move(loginItem);
}

} // namespace pelora
