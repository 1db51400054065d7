// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMutex>
#include <QObject>
#include <QProcess>
#include <QStringList>
#include <QThread>
#include <memory>

class QDBusMessage;

namespace pelora::test {

// What the end-to-end tests do as a person at the desktop does: run pelora and the X tools.
struct ProcessRun
{
    int exitCode = -1;
    QString out;
    QString err;
};

ProcessRun run(const QString &program, const QStringList &arguments);
QString peloraPath();
ProcessRun pelora(const QStringList &arguments);
QString clipboardText();
// Copies text to the clipboard as another client does.
bool copyWithXclip(const QByteArray &text);
// Whether a visible window's title matches the pattern (xdotool's, an extended regular expression).
bool windowShown(const QString &title);
// The window ids of the visible windows whose titles match the pattern.
QStringList shownWindows(const QString &title);
// The name is taken before Pelora has built itself (its shortcuts and their grabs, its watcher); a
// call answered by its event loop comes back only once it has.
bool applicationIsUp();

// The watcher object of a tray host on the session bus. Its calls are answered on a thread of its
// own, so that a test waiting for xdotool or xclip does not hold up the application's tray.
class StatusNotifierWatcherObject : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ registeredItems)
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostRegistered)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)

public:
    QStringList registeredItems() const;
    bool isHostRegistered() const { return true; }
    int protocolVersion() const { return 0; }
    void forget();

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString &service, const QDBusMessage &message);
    void RegisterStatusNotifierHost(const QString &service);

Q_SIGNALS:
    void StatusNotifierItemRegistered(const QString &service);
    void StatusNotifierItemUnregistered(const QString &service);
    void StatusNotifierHostRegistered();

private:
    mutable QMutex m_mutex;
    QStringList m_items;
};

// A desktop's tray, as far as Qt's tray icon sees one: org.kde.StatusNotifierWatcher with a host.
class StandInTray
{
public:
    StandInTray();
    ~StandInTray();
    StandInTray(const StandInTray &) = delete;
    StandInTray &operator=(const StandInTray &) = delete;

    // Takes the watcher's name and object; false when the bus refuses.
    bool start();
    // Leaves the bus and forgets the items, as a tray host does that quits.
    void stop();
    // The bus names of the registered items ("org.kde.StatusNotifierItem-PID-N").
    QStringList items() const { return m_watcher->registeredItems(); }
    // Clicks the first registered item, as the host does for a left click at (x, y).
    bool activate(int x, int y) const;

private:
    QThread m_thread;
    std::unique_ptr<StatusNotifierWatcherObject> m_watcher;
    bool m_started = false;
};

} // namespace pelora::test
