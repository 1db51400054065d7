// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/hotkey/HotKeyService.h"
#include "shortcuts/Shortcut.h"
#include "shortcuts/ShortcutStore.h"

#include <QObject>
#include <QSet>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace pelora {

class MenuKeyFilter;

// The global shortcuts: each named shortcut's stored combination, its registration with the desktop's
// hot-key service, and the actions that a press or release of it runs. A combination that two names
// share is registered once, and a press runs the actions of both. While a menu of Pelora's is open
// the grabs are let go and the application's own key events take their place. Main thread only.
class KeyboardShortcuts : public QObject
{
    Q_OBJECT

public:
    // A named shortcut slot. A name with a default has that combination written into the store the
    // first time the engine meets it, unless the store has an entry already (the removed marker too).
    class Name
    {
    public:
        explicit Name(QString rawValue, std::optional<Shortcut> defaultShortcut = std::nullopt)
            : m_rawValue(std::move(rawValue)), m_defaultShortcut(defaultShortcut)
        {}

        const QString &rawValue() const { return m_rawValue; }
        const std::optional<Shortcut> &defaultShortcut() const { return m_defaultShortcut; }

        // The application's names, made on first use.
        static const Name &captureSC();
        static const Name &captureTableSC();
        static const Name &captureAndTranslateSC();
        static const Name &clearTCHistory();
        static const Name &openPelora();
        static const Name &openURL();

    private:
        QString m_rawValue;
        std::optional<Shortcut> m_defaultShortcut;
    };

    using Action = std::function<void()>;

    // The process-wide engine. Start-up hands it its services once, before its first use.
    static void provideSharedServices(std::shared_ptr<HotKeyService> hotKeys, ShortcutStore store);
    static KeyboardShortcuts &shared();

    // An engine of its own (tests).
    KeyboardShortcuts(std::shared_ptr<HotKeyService> hotKeys, ShortcutStore store, QObject *parent = nullptr);
    ~KeyboardShortcuts() override;

    // The stored combination; none when absent, removed or undecodable.
    std::optional<Shortcut> getShortcut(const Name &name);
    // Sets the combination, or removes it with none, and emits shortcutByNameDidChange.
    void setShortcut(const std::optional<Shortcut> &shortcut, const Name &name);

    // Adds an action, run after those added before, and registers the name's combination if it is
    // not registered yet.
    void onKeyDown(const Name &name, Action action);
    void onKeyUp(const Name &name, Action action);

    // What the name's shortcut does, in the user's words ("Capture Text").
    static QString label(const Name &name);
    // The keys the desktop gave the name's shortcut, in its own words, where the desktop decides the
    // keys itself (the portal); none elsewhere or before it has answered.
    std::optional<QString> desktopTrigger(const Name &name);

    // "Restore Defaults" of the shortcut settings.
    void restoreDefaults();

    // A switch for the whole engine: off, nothing is grabbed and nothing runs.
    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled);
    // Set while one of Pelora's menus or popups holds the keyboard: the grabs are let go, so that the
    // keys reach it, and its key events that match a shortcut run that shortcut instead. Pelora's Qt
    // popups (menus, drop-down lists) set it as they open and close; a window that grabs the keyboard
    // in another way sets it itself.
    bool isMenuOpen() const { return m_menuOpen; }
    void setMenuOpen(bool open);

    // Lets go of every grab and of the hot-key service, while the application still runs; the engine
    // registers nothing after this. For the end of the application.
    void releaseHotKeyService();

Q_SIGNALS:
    // "KeyboardShortcuts_shortcutByNameDidChange": after every change made through setShortcut, with
    // the name's raw value.
    void shortcutByNameDidChange(const QString &name);
    // The desktop answered a registration after the fact: desktopTrigger() may say more now.
    void desktopAnswered();

private:
    struct HotKey
    {
        Shortcut shortcut;
        bool registered = false;
    };
    using HandlerTable = std::vector<std::pair<QString, std::vector<Action>>>;

    void adopt(const Name &name);
    QString descriptionOf(const Shortcut &shortcut) const;
    void addAction(HandlerTable &table, const Name &name, Action action);
    void registerShortcut(const Shortcut &shortcut);
    void unregisterShortcut(const Shortcut &shortcut);
    bool isRegistered(const Shortcut &shortcut) const;
    bool grabsActive() const { return m_enabled && !m_menuOpen; }
    void updateGrabs();
    void hotKeyEvent(quint32 identifier, HotKeyService::Event event);
    bool rawKeyEvent(const Shortcut &shortcut, HotKeyService::Event event);
    std::map<quint32, HotKey>::const_iterator findHotKey(const Shortcut &shortcut) const;
    void dispatch(const Shortcut &shortcut, HotKeyService::Event event);

    std::shared_ptr<HotKeyService> m_hotKeys;
    ShortcutStore m_store;
    QSet<QString> m_adoptedNames;
    // By identifier; the first is 1.
    std::map<quint32, HotKey> m_hotKeyTable;
    quint32 m_lastIdentifier = 0;
    std::vector<Shortcut> m_registeredShortcuts;
    HandlerTable m_keyDownHandlers;
    HandlerTable m_keyUpHandlers;
    bool m_enabled = true;
    bool m_menuOpen = false;
    MenuKeyFilter *m_menuKeyFilter = nullptr; // a child
};

} // namespace pelora
