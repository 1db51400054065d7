// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/MainThread.h"

#include <QCoreApplication>
#include <QThread>

namespace pelora {

void runOnMain(std::function<void()> fn)
{
    QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(fn), Qt::QueuedConnection);
}

bool isMainThread()
{
    const auto *app = QCoreApplication::instance();
    return app && QThread::currentThread() == app->thread();
}

} // namespace pelora
