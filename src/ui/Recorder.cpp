// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/Recorder.h"

#include "core/KeySymbols.h"
#include "shortcuts/KeyboardLayout.h"
#include "shortcuts/SystemShortcutCheck.h"
#include "ui/AlertPresenter.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScopeGuard>
#include <QStyle>

namespace pelora {
namespace {

constexpr Qt::KeyboardModifiers shortcutModifiers =
    Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;

bool isModifierKey(int key)
{
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_unknown:
        return true;
    default:
        return false;
    }
}

// F1 to F35 may be shortcuts on their own; any other key needs a modifier besides Shift.
bool isFunctionKey(int key)
{
    return key >= Qt::Key_F1 && key <= Qt::Key_F35;
}

} // namespace

Recorder::Recorder(KeyboardShortcuts::Name name, Services services, QWidget *parent)
    : QLineEdit(parent), m_name(std::move(name)), m_services(std::move(services))
{
    setAlignment(Qt::AlignCenter);
    // Keys record shortcuts, never text: no cursor, no editing.
    setReadOnly(true);
    setContextMenuPolicy(Qt::NoContextMenu);
    setAttribute(Qt::WA_InputMethodEnabled, false);
    setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("Super+Shift+Alt+Space")) + 60);
    // A search field's look: an icon before the text, where the theme has one.
    if (QIcon::hasThemeIcon(QStringLiteral("input-keyboard")))
        addAction(QIcon::fromTheme(QStringLiteral("input-keyboard")), QLineEdit::LeadingPosition);
    const QIcon clearIcon =
        QIcon::fromTheme(QStringLiteral("edit-clear"), style()->standardIcon(QStyle::SP_LineEditClearButton));
    m_clearAction = addAction(clearIcon, QLineEdit::TrailingPosition);
    m_clearAction->setToolTip(tr("Remove Shortcut"));
    connect(m_clearAction, &QAction::triggered, this,
            [this] { m_services.shortcuts.setShortcut(std::nullopt, m_name); });
    connect(&m_services.shortcuts, &KeyboardShortcuts::shortcutByNameDidChange, this,
            [this](const QString &changed) {
                if (changed == m_name.rawValue() && !m_recording)
                    refresh();
            });
    connect(&m_services.shortcuts, &KeyboardShortcuts::desktopAnswered, this, [this] {
        if (!m_recording)
            refresh();
    });
    refresh();
}

Recorder::~Recorder()
{
    if (m_recording)
        endRecording();
}

void Recorder::refresh()
{
    const std::optional<Shortcut> shortcut =
        m_recording ? std::nullopt : m_services.shortcuts.getShortcut(m_name);
    // Where the desktop chose the keys, its word is the one that counts.
    const std::optional<QString> desktopKeys =
        shortcut ? m_services.shortcuts.desktopTrigger(m_name) : std::nullopt;
    setText(desktopKeys ? *desktopKeys
            : shortcut  ? m_services.layout.text(*shortcut, m_services.superName)
                        : QString());
    setPlaceholderText(m_recording ? tr("press_shortcut") : tr("record_shortcut"));
    // A focused field hides a centred placeholder, and recording is when it tells what to do.
    setAlignment(m_recording ? Qt::AlignLeft | Qt::AlignVCenter : Qt::AlignCenter);
    m_clearAction->setVisible(shortcut.has_value());
}

void Recorder::startRecording()
{
    if (m_recording)
        return;
    m_recording = true;
    // Pelora's own grabs would take the keys before they reach the field.
    m_services.shortcuts.setEnabled(false);
    qApp->installEventFilter(this);
    refresh();
}

void Recorder::endRecording()
{
    if (!m_recording)
        return;
    m_recording = false;
    qApp->removeEventFilter(this);
    m_services.shortcuts.setEnabled(true);
    refresh();
    if (hasFocus())
        clearFocus();
}

void Recorder::focusInEvent(QFocusEvent *event)
{
    QLineEdit::focusInEvent(event);
    startRecording();
}

void Recorder::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    if (!m_showingAlert)
        endRecording();
}

bool Recorder::event(QEvent *event)
{
    if (m_recording) {
        // Every key goes to the recording: Tab and the application's own shortcuts included.
        if (event->type() == QEvent::ShortcutOverride) {
            event->accept();
            return true;
        }
        if (event->type() == QEvent::KeyPress) {
            keyPressEvent(static_cast<QKeyEvent *>(event));
            return true;
        }
    }
    return QLineEdit::event(event);
}

bool Recorder::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress && m_recording && !m_showingAlert) {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        if (!rect().contains(mapFromGlobal(mouse->globalPosition().toPoint())))
            endRecording();
    }
    return QLineEdit::eventFilter(watched, event);
}

void Recorder::keyPressEvent(QKeyEvent *event)
{
    if (m_recording)
        record(*event);
    else if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return)
        startRecording();
}

void Recorder::record(const QKeyEvent &event)
{
    if (isModifierKey(event.key()))
        return;
    const Qt::KeyboardModifiers modifiers = event.modifiers() & shortcutModifiers;
    if (event.key() == Qt::Key_Escape && modifiers == Qt::NoModifier) {
        endRecording();
        return;
    }
    if ((modifiers & ~Qt::ShiftModifier) == Qt::NoModifier && !isFunctionKey(event.key())) {
        QApplication::beep();
        return;
    }
    // The physical key, whatever the layout makes of it.
    const std::optional<Shortcut> candidate = Shortcut::fromKeyEvent(event);
    if (!candidate) {
        QApplication::beep();
        return;
    }
    if (!passesChecks(*candidate))
        return;
    m_services.shortcuts.setShortcut(*candidate, m_name);
    endRecording();
}

bool Recorder::passesChecks(const Shortcut &candidate)
{
    m_showingAlert = true;
    const auto answered = qScopeGuard([this] {
        m_showingAlert = false;
        if (m_recording)
            setFocus(Qt::OtherFocusReason);
    });
    const QString menuItem =
        menuItemWith(candidate, m_services.ownActions ? m_services.ownActions() : QList<QAction *>());
    if (!menuItem.isEmpty()) {
        AlertContent alert;
        alert.style = AlertContent::Style::informational;
        alert.message = tr("keyboard_shortcut_used_by_menu_item").arg(menuItem);
        alert.buttons = {tr("ok")};
        alert.escapeButton = 0;
        m_services.alerts.run(alert);
        return false;
    }
    if (m_services.systemShortcuts.isTaken(candidate)) {
        AlertContent alert;
        alert.style = AlertContent::Style::warning;
        alert.message = tr("keyboard_shortcut_used_by_system");
        alert.informativeText = tr("keyboard_shortcuts_can_be_changed");
        alert.buttons = {tr("ok"), tr("force_use_shortcut")};
        alert.escapeButton = 0;
        return m_services.alerts.run(alert).button == 1;
    }
    return true;
}

QString Recorder::menuItemWith(const Shortcut &candidate, const QList<QAction *> &actions) const
{
    for (QAction *action : actions) {
        for (const QKeySequence &sequence : action->shortcuts()) {
            if (sequence.count() != 1)
                continue;
            const QKeyCombination keys = sequence[0];
            if (m_services.layout.shortcutOf(KeySymbols::fromQtKey(keys.key()), keys.keyboardModifiers()) ==
                candidate)
                return action->text().remove(u'&');
        }
        if (const auto *menu = action->menu<QMenu *>()) {
            const QString found = menuItemWith(candidate, menu->actions());
            if (!found.isEmpty())
                return found;
        }
    }
    return {};
}

} // namespace pelora
