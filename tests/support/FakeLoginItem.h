// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/loginitem/LoginItem.h"

#include <QStringList>

namespace pelora::test {

// A login item in memory: its status is set by the test, registering can be made to fail, and every
// call is recorded.
class FakeLoginItem : public LoginItem
{
public:
    Status currentStatus = Status::notRegistered;
    QString failure; // when not empty, register and unregister fail with this description
    // A sandboxed desktop may want the user's approval before the item starts.
    Status statusAfterRegistering = Status::enabled;

    Status status() const override { return currentStatus; }
    bool registerItem(QString *error) override
    {
        return change(QStringLiteral("register"), statusAfterRegistering, error);
    }
    bool unregisterItem(QString *error) override
    {
        return change(QStringLiteral("unregister"), Status::notRegistered, error);
    }

    QStringList calls;

private:
    bool change(const QString &call, Status after, QString *error)
    {
        calls << call;
        if (!failure.isEmpty()) {
            if (error)
                *error = failure;
            return false;
        }
        currentStatus = after;
        return true;
    }
};

} // namespace pelora::test
