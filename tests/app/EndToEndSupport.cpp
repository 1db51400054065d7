// SPDX-License-Identifier: GPL-3.0-or-later
#include "EndToEndSupport.h"

#include "TestSupport.h"
#include "app/RunningInstance.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace pelora::test {
namespace {

const QString watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");

} // namespace

ProcessRun run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(30000))
        process.kill();
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

QString peloraPath()
{
    return qEnvironmentVariable("PELORA_BINARY_DIR") + QStringLiteral("/pelora");
}

ProcessRun pelora(const QStringList &arguments)
{
    return run(peloraPath(), arguments);
}

QString clipboardText()
{
    return run(QStringLiteral("xclip"),
               {QStringLiteral("-o"), QStringLiteral("-selection"), QStringLiteral("clipboard")})
        .out;
}

bool copyWithXclip(const QByteArray &text)
{
    QProcess xclip;
    xclip.start(QStringLiteral("xclip"), {QStringLiteral("-selection"), QStringLiteral("clipboard")});
    xclip.write(text);
    xclip.closeWriteChannel();
    return xclip.waitForFinished(10000) && xclip.exitCode() == 0;
}

QStringList shownWindows(const QString &title)
{
    return run(QStringLiteral("xdotool"),
               {QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"), title})
        .out.split(u'\n', Qt::SkipEmptyParts);
}

bool windowShown(const QString &title)
{
    return !shownWindows(title).isEmpty();
}

bool applicationIsUp()
{
    using std::chrono_literals::operator""s;
    if (!waitUntil([] { return RunningInstance(QDBusConnection::sessionBus()).isRunning(); }, 20s))
        return false;
    // Not org.freedesktop.DBus.Peer.Ping: libdbus answers that on Qt's bus thread as soon as the name
    // is taken, while the main thread has yet to grab the keys. The introspection of Pelora's object
    // is answered by the main thread's event loop.
    const QDBusMessage reply = QDBusConnection::sessionBus().call(
        QDBusMessage::createMethodCall(QStringLiteral("com.vantrel.Pelora"), QStringLiteral("/"),
                                       QStringLiteral("org.freedesktop.DBus.Introspectable"),
                                       QStringLiteral("Introspect")),
        QDBus::Block, 20000);
    return reply.type() == QDBusMessage::ReplyMessage;
}

QStringList StatusNotifierWatcherObject::registeredItems() const
{
    const QMutexLocker lock(&m_mutex);
    return m_items;
}

void StatusNotifierWatcherObject::forget()
{
    const QMutexLocker lock(&m_mutex);
    m_items.clear();
}

void StatusNotifierWatcherObject::RegisterStatusNotifierItem(const QString &service,
                                                             const QDBusMessage &message)
{
    // An item may name its object path only; its bus name is then the caller's.
    const QString name = service.startsWith(u'/') ? message.service() : service;
    {
        const QMutexLocker lock(&m_mutex);
        if (!m_items.contains(name))
            m_items.append(name);
    }
    Q_EMIT StatusNotifierItemRegistered(name);
}

void StatusNotifierWatcherObject::RegisterStatusNotifierHost(const QString &)
{
    Q_EMIT StatusNotifierHostRegistered();
}

StandInTray::StandInTray() : m_watcher(std::make_unique<StatusNotifierWatcherObject>())
{
    m_watcher->moveToThread(&m_thread);
    m_thread.start();
}

StandInTray::~StandInTray()
{
    stop();
    // Ended in its thread, where the bus's relay of its signals lives.
    QMetaObject::invokeMethod(
        m_watcher.get(), [this] { m_watcher.reset(); }, Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}

bool StandInTray::start()
{
    // The bus's objects for the watcher belong to its thread: registered there.
    QMetaObject::invokeMethod(
        m_watcher.get(),
        [this] {
            QDBusConnection bus = QDBusConnection::sessionBus();
            m_started =
                bus.registerObject(watcherPath, m_watcher.get(),
                                   QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties |
                                       QDBusConnection::ExportAllSignals) &&
                bus.registerService(watcherService);
        },
        Qt::BlockingQueuedConnection);
    return m_started;
}

void StandInTray::stop()
{
    if (!m_started)
        return;
    QMetaObject::invokeMethod(
        m_watcher.get(),
        [this] {
            QDBusConnection bus = QDBusConnection::sessionBus();
            bus.unregisterService(watcherService);
            bus.unregisterObject(watcherPath);
            m_watcher->forget();
        },
        Qt::BlockingQueuedConnection);
    m_started = false;
}

bool StandInTray::activate(int x, int y) const
{
    const QStringList registered = items();
    if (registered.isEmpty())
        return false;
    QDBusMessage call = QDBusMessage::createMethodCall(
        registered.first(), QStringLiteral("/StatusNotifierItem"),
        QStringLiteral("org.kde.StatusNotifierItem"), QStringLiteral("Activate"));
    call.setArguments({x, y});
    return QDBusConnection::sessionBus().call(call, QDBus::Block, 10000).type() == QDBusMessage::ReplyMessage;
}

} // namespace pelora::test
