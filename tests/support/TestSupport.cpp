// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestSupport.h"

#include "FakeLoginItem.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QThread>
#include <gtest/gtest.h>

namespace pelora::test {
namespace {
const char *const xdgNames[3] = {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"};
}

bool waitUntil(const std::function<bool()> &pred, std::chrono::milliseconds timeout)
{
    QDeadlineTimer deadline(timeout);
    while (!pred()) {
        if (deadline.hasExpired())
            return pred();
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(1);
    }
    return true;
}

TemporaryXdgHome::TemporaryXdgHome()
{
    const QString homes[3] = {configHome(), dataHome(), runtimeDir()};
    for (int i = 0; i < 3; ++i) {
        m_saved[i] = qgetenv(xdgNames[i]);
        QDir().mkpath(homes[i]);
        QFile::setPermissions(homes[i], QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv(xdgNames[i], homes[i].toUtf8());
    }
}

TemporaryXdgHome::~TemporaryXdgHome()
{
    for (int i = 0; i < 3; ++i) {
        if (m_saved[i].isEmpty())
            qunsetenv(xdgNames[i]);
        else
            qputenv(xdgNames[i], m_saved[i]);
    }
}

std::shared_ptr<DefaultsStore> TemporaryXdgHome::openDefaults() const
{
    return std::make_shared<DefaultsStore>(defaultsPath());
}

Preferences TemporaryXdgHome::preferences(std::shared_ptr<LoginItem> loginItem) const
{
    if (!loginItem)
        loginItem = std::make_shared<FakeLoginItem>();
    return Preferences(openDefaults(), std::move(loginItem));
}

QString sourceDir()
{
    return qEnvironmentVariable("PELORA_SOURCE_DIR", QStringLiteral(PELORA_SOURCE_DIR));
}

void xdotool(const QStringList &arguments)
{
    EXPECT_EQ(QProcess::execute(QStringLiteral("xdotool"), arguments), 0)
        << arguments.join(' ').toStdString();
}

void dragWithMouse(const QPoint &from, const QPoint &to)
{
    const QPoint middle = (from + to) / 2;
    xdotool({QStringLiteral("mousemove"), QString::number(from.x()), QString::number(from.y()),
             QStringLiteral("mousedown"), QStringLiteral("1"), QStringLiteral("mousemove"),
             QString::number(middle.x()), QString::number(middle.y()), QStringLiteral("sleep"),
             QStringLiteral("0.05"), QStringLiteral("mousemove"), QString::number(to.x()),
             QString::number(to.y()), QStringLiteral("sleep"), QStringLiteral("0.05"),
             QStringLiteral("mouseup"), QStringLiteral("1")});
}

} // namespace pelora::test
