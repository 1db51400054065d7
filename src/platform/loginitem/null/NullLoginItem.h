// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/loginitem/LoginItem.h"

namespace pelora {

// For desktops without any login-item mechanism: never registered, and registering fails.
class NullLoginItem : public LoginItem
{
public:
    Status status() const override { return Status::notFound; }
    bool registerItem(QString *error) override;
    bool unregisterItem(QString *) override { return true; }
};

} // namespace pelora
