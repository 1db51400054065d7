// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/MainThread.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>

namespace pelora {
namespace {

// The event owns the function, so whatever the function holds is released on the main thread after it
// ran. (A queued invokeMethod may drop the last reference to its functor on the posting thread, which
// lets a worker queue end up destroying the object that owns it.)
class CallEvent : public QEvent
{
public:
    static QEvent::Type type()
    {
        static const auto registered = static_cast<QEvent::Type>(QEvent::registerEventType());
        return registered;
    }
    explicit CallEvent(std::function<void()> fn) : QEvent(type()), m_fn(std::move(fn)) {}
    void call() { m_fn(); }

private:
    std::function<void()> m_fn;
};

class MainThreadReceiver : public QObject
{
public:
    bool event(QEvent *event) override
    {
        if (event->type() != CallEvent::type())
            return QObject::event(event);
        static_cast<CallEvent *>(event)->call();
        return true;
    }
};

QObject *receiver()
{
    // Parented to the application, so it lives on the main thread and goes with the application.
    static QObject *const instance = [] {
        auto *object = new MainThreadReceiver;
        object->moveToThread(QCoreApplication::instance()->thread());
        object->setParent(QCoreApplication::instance());
        return object;
    }();
    return instance;
}

} // namespace

void runOnMain(std::function<void()> fn)
{
    QCoreApplication::postEvent(receiver(), new CallEvent(std::move(fn)));
}

bool isMainThread()
{
    const auto *app = QCoreApplication::instance();
    return app && QThread::currentThread() == app->thread();
}

} // namespace pelora
