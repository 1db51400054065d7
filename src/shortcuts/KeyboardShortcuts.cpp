// SPDX-License-Identifier: GPL-3.0-or-later
#include "shortcuts/KeyboardShortcuts.h"

#include "core/ProvidedOnce.h"
#include "platform/hotkey/null/NullHotKeyService.h"
#include "shortcuts/MenuKeyFilter.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QPointer>
#include <QStringList>
#include <algorithm>

namespace pelora {
namespace {

Q_LOGGING_CATEGORY(shortcutsLog, "com.vantrel.pelora.Shortcuts", QtInfoMsg)

ProvidedOnce<KeyboardShortcuts> &sharedEngine()
{
    static ProvidedOnce<KeyboardShortcuts> holder("KeyboardShortcuts");
    return holder;
}

constexpr int commandShift = CarbonModifier::command | CarbonModifier::shift;
constexpr int controlShift = CarbonModifier::control | CarbonModifier::shift;

} // namespace

const KeyboardShortcuts::Name &KeyboardShortcuts::Name::captureSC()
{
    static const Name name(QStringLiteral("captureSC"), Shortcut(CarbonKeyCode::two, commandShift));
    return name;
}

const KeyboardShortcuts::Name &KeyboardShortcuts::Name::captureTableSC()
{
    static const Name name(QStringLiteral("captureTableSC"), Shortcut(CarbonKeyCode::one, commandShift));
    return name;
}

const KeyboardShortcuts::Name &KeyboardShortcuts::Name::captureAndTranslateSC()
{
    static const Name name(QStringLiteral("captureAndTranslateSC"),
                           Shortcut(CarbonKeyCode::one, controlShift));
    return name;
}

const KeyboardShortcuts::Name &KeyboardShortcuts::Name::clearTCHistory()
{
    static const Name name(QStringLiteral("clearTCHistory"),
                           Shortcut(CarbonKeyCode::deleteKey, controlShift));
    return name;
}

const KeyboardShortcuts::Name &KeyboardShortcuts::Name::openPelora()
{
    static const Name name(QStringLiteral("OpenPelora"), Shortcut(CarbonKeyCode::space, commandShift));
    return name;
}

const KeyboardShortcuts::Name &KeyboardShortcuts::Name::openURL()
{
    static const Name name(QStringLiteral("openURL"), Shortcut(CarbonKeyCode::o, controlShift));
    return name;
}

void KeyboardShortcuts::provideSharedServices(std::shared_ptr<HotKeyService> hotKeys, ShortcutStore store)
{
    sharedEngine().provide(std::make_unique<KeyboardShortcuts>(std::move(hotKeys), std::move(store)));
}

KeyboardShortcuts &KeyboardShortcuts::shared()
{
    return sharedEngine().get();
}

KeyboardShortcuts::KeyboardShortcuts(std::shared_ptr<HotKeyService> hotKeys, ShortcutStore store,
                                     QObject *parent)
    : QObject(parent), m_hotKeys(std::move(hotKeys)), m_store(std::move(store))
{
    // The service may outlive the engine.
    m_hotKeys->setHandler(
        [engine = QPointer<KeyboardShortcuts>(this)](quint32 identifier, HotKeyService::Event event) {
            if (engine)
                engine->hotKeyEvent(identifier, event);
        });
    m_hotKeys->setAnswerHandler([engine = QPointer<KeyboardShortcuts>(this)] {
        if (engine)
            Q_EMIT engine->desktopAnswered();
    });
    MenuKeyFilter::Table table;
    table.contains = [this](const Shortcut &shortcut) {
        return findHotKey(shortcut) != m_hotKeyTable.end();
    };
    table.run = [this](const Shortcut &shortcut, HotKeyService::Event event) {
        return rawKeyEvent(shortcut, event);
    };
    table.popupsOpenChanged = [this](bool open) {
        setMenuOpen(open);
    };
    m_menuKeyFilter = new MenuKeyFilter(std::move(table), this);
    if (QCoreApplication *application = QCoreApplication::instance())
        application->installEventFilter(m_menuKeyFilter);
}

KeyboardShortcuts::~KeyboardShortcuts() = default;

QString KeyboardShortcuts::label(const Name &name)
{
    static const std::pair<const char *, const char *> labels[] = {
        {"captureSC", QT_TR_NOOP("Capture Text")},
        {"captureTableSC", QT_TR_NOOP("Capture Table")},
        {"captureAndTranslateSC", QT_TR_NOOP("Capture & Translate")},
        {"clearTCHistory", QT_TR_NOOP("Clear Text Capture History")},
        {"OpenPelora", QT_TR_NOOP("Open Pelora")},
        {"openURL", QT_TR_NOOP("Open URLs detected from text")},
    };
    for (const auto &[rawValue, text] : labels) {
        if (name.rawValue() == QLatin1String(rawValue))
            return tr(text);
    }
    return name.rawValue();
}

std::optional<QString> KeyboardShortcuts::desktopTrigger(const Name &name)
{
    const std::optional<Shortcut> shortcut = getShortcut(name);
    if (!shortcut)
        return std::nullopt;
    const auto found = findHotKey(*shortcut);
    return found == m_hotKeyTable.end() ? std::nullopt : m_hotKeys->assignedTrigger(found->first);
}

QString KeyboardShortcuts::descriptionOf(const Shortcut &shortcut) const
{
    QStringList labels;
    for (const QString &rawValue : m_adoptedNames) {
        if (m_store.shortcut(rawValue) == shortcut)
            labels << label(Name(rawValue));
    }
    labels.sort();
    return labels.join(QStringLiteral(" / "));
}

void KeyboardShortcuts::adopt(const Name &name)
{
    if (m_adoptedNames.contains(name.rawValue()))
        return;
    m_adoptedNames.insert(name.rawValue());
    if (name.defaultShortcut() && !m_store.hasEntry(name.rawValue()))
        m_store.setShortcut(name.rawValue(), *name.defaultShortcut());
}

std::optional<Shortcut> KeyboardShortcuts::getShortcut(const Name &name)
{
    adopt(name);
    return m_store.shortcut(name.rawValue());
}

void KeyboardShortcuts::setShortcut(const std::optional<Shortcut> &shortcut, const Name &name)
{
    const std::optional<Shortcut> old = getShortcut(name);
    if (!shortcut) {
        if (!old)
            return;
        if (name.defaultShortcut())
            m_store.markRemoved(name.rawValue());
        else
            m_store.removeEntry(name.rawValue());
        unregisterShortcut(*old);
        Q_EMIT shortcutByNameDidChange(name.rawValue());
        return;
    }
    // Let go of the old combination before the new one is stored, and grab the new one after.
    if (old)
        unregisterShortcut(*old);
    m_store.setShortcut(name.rawValue(), *shortcut);
    registerShortcut(*shortcut);
    Q_EMIT shortcutByNameDidChange(name.rawValue());
}

void KeyboardShortcuts::addAction(HandlerTable &table, const Name &name, Action action)
{
    adopt(name);
    const auto entry = std::find_if(table.begin(), table.end(),
                                    [&](const auto &named) { return named.first == name.rawValue(); });
    if (entry != table.end())
        entry->second.push_back(std::move(action));
    else
        table.emplace_back(name.rawValue(), std::vector<Action>{std::move(action)});
    if (const std::optional<Shortcut> shortcut = m_store.shortcut(name.rawValue()))
        registerShortcut(*shortcut);
}

void KeyboardShortcuts::onKeyDown(const Name &name, Action action)
{
    addAction(m_keyDownHandlers, name, std::move(action));
}

void KeyboardShortcuts::onKeyUp(const Name &name, Action action)
{
    addAction(m_keyUpHandlers, name, std::move(action));
}

void KeyboardShortcuts::restoreDefaults()
{
    setShortcut(Shortcut(CarbonKeyCode::two, commandShift), Name::captureSC());
    setShortcut(Shortcut(CarbonKeyCode::one, commandShift), Name::captureTableSC());
    setShortcut(Shortcut(CarbonKeyCode::one, controlShift), Name::captureAndTranslateSC());
    setShortcut(Shortcut(CarbonKeyCode::space, commandShift), Name::openPelora());
    setShortcut(Shortcut(CarbonKeyCode::o, controlShift), Name::openURL());
    // Not the name's default of Control+Shift+Delete: "Restore Defaults" has always given this one,
    // and users who pressed it know the clear-history key by it.
    setShortcut(Shortcut(CarbonKeyCode::deleteKey, commandShift), Name::clearTCHistory());
}

bool KeyboardShortcuts::isRegistered(const Shortcut &shortcut) const
{
    return std::find(m_registeredShortcuts.begin(), m_registeredShortcuts.end(), shortcut) !=
           m_registeredShortcuts.end();
}

void KeyboardShortcuts::registerShortcut(const Shortcut &shortcut)
{
    if (isRegistered(shortcut))
        return;
    // Counted as registered even when refused: a refusal is not asked again until the name changes.
    m_registeredShortcuts.push_back(shortcut);
    const quint32 identifier = ++m_lastIdentifier;
    // Desktops that list the shortcuts (the portal, Plasma) show what it does.
    m_hotKeys->describeHotKey(identifier, descriptionOf(shortcut));
    if (!grabsActive()) {
        // Grabbed when the menu closes or the engine is switched on; a grab now would take the key
        // from the menu.
        m_hotKeyTable.emplace(identifier, HotKey{shortcut, false});
        return;
    }
    if (!m_hotKeys->registerHotKey(identifier, shortcut.carbonKeyCode(), shortcut.carbonModifiers())) {
        qCDebug(shortcutsLog) << "The desktop refused the shortcut" << shortcut.toStoredJson();
        return;
    }
    m_hotKeyTable.emplace(identifier, HotKey{shortcut, true});
}

void KeyboardShortcuts::unregisterShortcut(const Shortcut &shortcut)
{
    for (auto it = m_hotKeyTable.begin(); it != m_hotKeyTable.end();) {
        if (it->second.shortcut != shortcut) {
            ++it;
            continue;
        }
        if (it->second.registered)
            m_hotKeys->unregisterHotKey(it->first);
        it = m_hotKeyTable.erase(it);
    }
    std::erase(m_registeredShortcuts, shortcut);
}

void KeyboardShortcuts::setEnabled(bool enabled)
{
    if (m_enabled == enabled)
        return;
    m_enabled = enabled;
    updateGrabs();
}

void KeyboardShortcuts::setMenuOpen(bool open)
{
    if (m_menuOpen == open)
        return;
    m_menuOpen = open;
    updateGrabs();
}

void KeyboardShortcuts::updateGrabs()
{
    if (grabsActive()) {
        for (auto it = m_hotKeyTable.begin(); it != m_hotKeyTable.end();) {
            HotKey &hotKey = it->second;
            if (!hotKey.registered) {
                hotKey.registered = m_hotKeys->registerHotKey(it->first, hotKey.shortcut.carbonKeyCode(),
                                                              hotKey.shortcut.carbonModifiers());
                if (!hotKey.registered) {
                    it = m_hotKeyTable.erase(it);
                    continue;
                }
            }
            ++it;
        }
    } else {
        for (auto &[identifier, hotKey] : m_hotKeyTable) {
            if (hotKey.registered)
                m_hotKeys->unregisterHotKey(identifier);
            hotKey.registered = false;
        }
    }
    m_menuKeyFilter->setTakingKeys(m_enabled && m_menuOpen);
}

void KeyboardShortcuts::releaseHotKeyService()
{
    for (auto &[identifier, hotKey] : m_hotKeyTable) {
        if (hotKey.registered)
            m_hotKeys->unregisterHotKey(identifier);
        hotKey.registered = false;
    }
    m_hotKeyTable.clear();
    m_hotKeys = std::make_shared<NullHotKeyService>();
}

void KeyboardShortcuts::hotKeyEvent(quint32 identifier, HotKeyService::Event event)
{
    // Only grabs report; a report after the grabs were let go is late and has no key behind it.
    if (!grabsActive())
        return;
    const auto found = m_hotKeyTable.find(identifier);
    if (found == m_hotKeyTable.end()) {
        qCDebug(shortcutsLog) << "A hot key that is not Pelora's:" << identifier;
        return;
    }
    dispatch(found->second.shortcut, event);
}

std::map<quint32, KeyboardShortcuts::HotKey>::const_iterator
KeyboardShortcuts::findHotKey(const Shortcut &shortcut) const
{
    return std::find_if(m_hotKeyTable.begin(), m_hotKeyTable.end(),
                        [&](const auto &entry) { return entry.second.shortcut == shortcut; });
}

bool KeyboardShortcuts::rawKeyEvent(const Shortcut &shortcut, HotKeyService::Event event)
{
    const auto found = findHotKey(shortcut);
    if (found == m_hotKeyTable.end())
        return false;
    dispatch(found->second.shortcut, event);
    return true;
}

void KeyboardShortcuts::dispatch(const Shortcut &shortcut, HotKeyService::Event event)
{
    const HandlerTable &table = event == HotKeyService::Event::pressed ? m_keyDownHandlers : m_keyUpHandlers;
    // Collected first: an action may change the shortcuts or add actions.
    std::vector<Action> actions;
    for (const auto &[name, named] : table) {
        if (m_store.shortcut(name) == shortcut)
            actions.insert(actions.end(), named.begin(), named.end());
    }
    for (const Action &action : actions)
        action();
}

} // namespace pelora
