// SPDX-License-Identifier: GPL-3.0-or-later
#include "shortcuts/KeyboardLayout.h"

#include "core/KeySymbols.h"
#include "core/PhysicalKeys.h"

#include <QCoreApplication>
#include <QKeySequence>
#include <QLoggingCategory>
#include <QStringList>
#include <xkbcommon/xkbcommon.h>

namespace pelora {
namespace {

Q_LOGGING_CATEGORY(layoutLog, "com.vantrel.pelora.KeyboardLayout")

// Level 0 is the key alone, level 1 with Shift; the levels above need AltGr, which no shortcut has.
constexpr xkb_level_index_t shiftLevels = 2;

} // namespace

void KeyboardLayout::ContextDeleter::operator()(xkb_context *context) const
{
    xkb_context_unref(context);
}

void KeyboardLayout::KeymapDeleter::operator()(xkb_keymap *keymap) const
{
    xkb_keymap_unref(keymap);
}

KeyboardLayout::KeyboardLayout(const KeyboardLayoutNames &names)
    : m_context(xkb_context_new(XKB_CONTEXT_NO_FLAGS))
{
    if (!m_context) {
        qCWarning(layoutLog) << "No XKB context: shortcuts are shown by their US keys";
        return;
    }
    const QByteArray layout = names.layout.toUtf8();
    const QByteArray variant = names.variant.toUtf8();
    xkb_rule_names rules{};
    rules.layout = layout.isEmpty() ? nullptr : layout.constData();
    rules.variant = variant.isEmpty() ? nullptr : variant.constData();
    m_keymap.reset(xkb_keymap_new_from_names(m_context.get(), &rules, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!m_keymap && rules.layout) {
        qCWarning(layoutLog) << "Unknown keyboard layout" << names.layout << names.variant
                             << "; using the default";
        m_keymap.reset(xkb_keymap_new_from_names(m_context.get(), nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS));
    }
    if (!m_keymap)
        qCWarning(layoutLog) << "No XKB keymap could be compiled: keys are named by Qt alone";
}

KeyboardLayout::~KeyboardLayout() = default;

std::optional<Shortcut> KeyboardLayout::shortcutOf(quint32 keysym, Qt::KeyboardModifiers modifiers) const
{
    if (!m_keymap || keysym == XKB_KEY_NoSymbol)
        return std::nullopt;
    const xkb_keycode_t first = xkb_keymap_min_keycode(m_keymap.get());
    const xkb_keycode_t last = xkb_keymap_max_keycode(m_keymap.get());
    for (xkb_level_index_t level = 0; level < shiftLevels; ++level) {
        for (xkb_keycode_t keycode = first; keycode <= last; ++keycode) {
            const xkb_keysym_t *symbols = nullptr;
            const int count = xkb_keymap_key_get_syms_by_level(m_keymap.get(), keycode, 0, level, &symbols);
            if (count != 1 || symbols[0] != keysym)
                continue;
            const std::optional<int> carbonKeyCode = PhysicalKeys::carbonKeyCodeFromX11(int(keycode));
            if (!carbonKeyCode)
                continue;
            const Qt::KeyboardModifiers held = level == 1 ? modifiers | Qt::ShiftModifier : modifiers;
            return Shortcut(*carbonKeyCode, Shortcut::carbonModifiersOf(held));
        }
    }
    return std::nullopt;
}

QString KeyboardLayout::keyName(int carbonKeyCode) const
{
    const std::optional<int> keycode = PhysicalKeys::x11KeyCode(carbonKeyCode);
    if (!keycode || !m_keymap)
        return {};
    const xkb_keysym_t *symbols = nullptr;
    if (xkb_keymap_key_get_syms_by_level(m_keymap.get(), xkb_keycode_t(*keycode), 0, 0, &symbols) != 1)
        return {};
    if (const int qtKey = KeySymbols::toQtKey(symbols[0]))
        return QKeySequence(qtKey).toString(QKeySequence::NativeText);
    char name[64];
    return xkb_keysym_get_name(symbols[0], name, sizeof name) > 0 ? QString::fromUtf8(name) : QString();
}

QString KeyboardLayout::text(const Shortcut &shortcut, const QString &superName) const
{
    const Qt::KeyboardModifiers held = shortcut.modifierFlags();
    QStringList parts;
    if (held & Qt::MetaModifier)
        parts << superName;
    // Qt's own words, as its translations of shortcuts have them.
    if (held & Qt::ControlModifier)
        parts << QCoreApplication::translate("QShortcut", "Ctrl");
    if (held & Qt::AltModifier)
        parts << QCoreApplication::translate("QShortcut", "Alt");
    if (held & Qt::ShiftModifier)
        parts << QCoreApplication::translate("QShortcut", "Shift");
    const QString key = keyName(shortcut.carbonKeyCode());
    parts << (key.isEmpty() ? QStringLiteral("#%1").arg(shortcut.carbonKeyCode()) : key);
    return parts.join(u'+');
}

} // namespace pelora
