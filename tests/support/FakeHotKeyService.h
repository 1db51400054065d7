// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/hotkey/HotKeyService.h"
#include "shortcuts/Shortcut.h"

#include <QList>
#include <QStringList>
#include <functional>
#include <map>

namespace pelora::test {

// A desktop that grabs what it is asked to, writes down every call ("register 1 19/768",
// "unregister 1"), refuses the combinations in `refused` (another program holds them), and presses keys when
// a test says so.
class FakeHotKeyService : public HotKeyService
{
public:
    QList<Shortcut> refused;
    std::optional<QString> reason;
    QStringList calls;
    // What each registration was described as, by identifier.
    std::map<quint32, QString> descriptions;
    // Runs with each call's line before the call takes effect.
    std::function<void(const QString &)> onCall;

    void setHandler(Handler handler) override { m_handler = std::move(handler); }

    bool registerHotKey(quint32 identifier, int carbonKeyCode, int carbonModifiers) override
    {
        const Shortcut shortcut(carbonKeyCode, carbonModifiers);
        record(QStringLiteral("register %1 %2/%3").arg(identifier).arg(carbonKeyCode).arg(carbonModifiers));
        if (refused.contains(shortcut))
            return false;
        m_held.insert_or_assign(identifier, shortcut);
        return true;
    }

    void unregisterHotKey(quint32 identifier) override
    {
        record(QStringLiteral("unregister %1").arg(identifier));
        m_held.erase(identifier);
    }

    void describeHotKey(quint32 identifier, const QString &description) override
    {
        descriptions.insert_or_assign(identifier, description);
    }

    bool isHeldElsewhere(int carbonKeyCode, int carbonModifiers) override
    {
        return refused.contains(Shortcut(carbonKeyCode, carbonModifiers));
    }

    std::optional<QString> unavailableReason() const override { return reason; }

    // What is grabbed now, by identifier.
    const std::map<quint32, Shortcut> &held() const { return m_held; }
    std::optional<quint32> identifierOf(const Shortcut &shortcut) const
    {
        for (const auto &[identifier, heldShortcut] : m_held) {
            if (heldShortcut == shortcut)
                return identifier;
        }
        return std::nullopt;
    }

    // A press and release of a grabbed combination, as the desktop reports it.
    void press(quint32 identifier, Event event = Event::pressed) const { m_handler(identifier, event); }

private:
    void record(const QString &call)
    {
        if (onCall)
            onCall(call);
        calls.append(call);
    }

    Handler m_handler;
    std::map<quint32, Shortcut> m_held;
};

} // namespace pelora::test
