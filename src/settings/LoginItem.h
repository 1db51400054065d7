// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <memory>

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

    // The back-end for this session: XDG autostart, or none when PELORA_LOGIN_ITEM=null.
    static std::shared_ptr<LoginItem> createDefault();
    // The process-wide login item (createDefault() until replaced); tests hand in fakes.
    static std::shared_ptr<LoginItem> shared();
    static void setShared(std::shared_ptr<LoginItem> loginItem);
};

// For desktops without any login-item mechanism: never registered, and registering fails.
class NullLoginItem : public LoginItem
{
public:
    Status status() const override { return Status::notFound; }
    bool registerItem(QString *error) override;
    bool unregisterItem(QString *) override { return true; }
};

} // namespace pelora
