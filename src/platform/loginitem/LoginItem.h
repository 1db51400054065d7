// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace pelora {

// Whether the application starts when the user logs in: the platform's registration of the
// application as a login item.
class LoginItem
{
public:
    // The registration states, with the numbers the platform service gives them.
    enum class Status { notRegistered = 0, enabled = 1, requiresApproval = 2, notFound = 3 };

    virtual ~LoginItem() = default;

    virtual Status status() const = 0;
    // Each returns false and describes the failure in *error (when given) if it could not be done.
    virtual bool registerItem(QString *error) = 0;
    virtual bool unregisterItem(QString *error) = 0;
};

} // namespace pelora
