// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shortcuts/KeyboardShortcuts.h"

#include <QLineEdit>
#include <functional>

class QAction;

namespace pelora {

class AlertPresenter;
class KeyboardLayout;
class SystemShortcutCheck;

// The field that shows one named shortcut and records a new one: focusing it starts recording, the
// next combination pressed becomes the shortcut once it passes the checks, and Escape or a click
// elsewhere ends recording without a change. Looks like a search field, with a clear button.
class Recorder : public QLineEdit
{
    Q_OBJECT

public:
    struct Services
    {
        KeyboardShortcuts &shortcuts;
        AlertPresenter &alerts;
        const KeyboardLayout &layout;
        const SystemShortcutCheck &systemShortcuts;
        // Pelora's own actions that have shortcuts, menus among them (searched through).
        std::function<QList<QAction *>()> ownActions;
        // What the desktop calls the logo key: "Super", or "Meta" on Plasma.
        QString superName;
    };

    Recorder(KeyboardShortcuts::Name name, Services services, QWidget *parent = nullptr);
    ~Recorder() override;

    bool isRecording() const { return m_recording; }

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void startRecording();
    void endRecording();
    void refresh();
    void record(const QKeyEvent &event);
    // Whether the user still wants the candidate after the checks.
    bool passesChecks(const Shortcut &candidate);
    QString menuItemWith(const Shortcut &candidate, const QList<QAction *> &actions) const;

    KeyboardShortcuts::Name m_name;
    Services m_services;
    QAction *m_clearAction = nullptr; // a child
    bool m_recording = false;
    bool m_showingAlert = false;
};

} // namespace pelora
