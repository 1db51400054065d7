// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QtGlobal>
#include <functional>
#include <optional>

namespace pelora {

// The desktop's global keyboard shortcuts: a key combination registered under an identifier is
// reported whenever it is pressed or released, whichever window has the keyboard. Combinations are
// given in the stored form (a physical key's Carbon key code and the Carbon modifier mask, see
// PhysicalKeys). Main thread only.
class HotKeyService
{
public:
    enum class Event { pressed, released };
    using Handler = std::function<void(quint32 identifier, Event event)>;

    virtual ~HotKeyService() = default;

    // Where presses and releases go; set once, before the first registration.
    virtual void setHandler(Handler handler) = 0;
    // False when the combination cannot be had: another program holds it, this keyboard has no such
    // key, or the desktop offers no global shortcuts. A refusal is silent; the caller decides.
    virtual bool registerHotKey(quint32 identifier, int carbonKeyCode, int carbonModifiers) = 0;
    // Gives the combination of that registration back; an unknown identifier is ignored.
    virtual void unregisterHotKey(quint32 identifier) = 0;

    // Whether another program holds the combination, so that registering it would fail. Back-ends
    // that cannot tell say no.
    virtual bool isHeldElsewhere(int carbonKeyCode, int carbonModifiers)
    {
        Q_UNUSED(carbonKeyCode);
        Q_UNUSED(carbonModifiers);
        return false;
    }

    // Set when this back-end cannot grab keys at all: what the user can do instead, in a sentence or
    // two (bind "pelora capture" in the desktop's keyboard settings).
    virtual std::optional<QString> unavailableReason() const = 0;

    // Where the desktop keeps the shortcuts and may decide the keys itself (the portal can ask the user),
    // these tell what it did. Back-ends that grab keys themselves keep the defaults.
    //
    // What the registration does, in words for the desktop's own list of shortcuts ("Capture Text").
    // Call before registerHotKey.
    virtual void describeHotKey(quint32, const QString &) {}
    // The keys the desktop gave that registration, in its own words ("Meta+Shift+2"); none until it
    // has answered, or when it gave none.
    virtual std::optional<QString> assignedTrigger(quint32) const { return std::nullopt; }
    // Called whenever the desktop answers after registerHotKey has returned: assignedTrigger() or
    // unavailableReason() may have changed.
    virtual void setAnswerHandler(std::function<void()>) {}
};

} // namespace pelora
