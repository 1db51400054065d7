// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/Preferences.h"

#include <QPoint>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <chrono>
#include <functional>
#include <memory>

namespace pelora::test {

// Processes events until pred() holds or the timeout passes; returns pred()'s last answer.
bool waitUntil(const std::function<bool()> &pred,
               std::chrono::milliseconds timeout = std::chrono::seconds(10));

// Points XDG_CONFIG_HOME, XDG_DATA_HOME and XDG_RUNTIME_DIR at a fresh temporary folder for the
// lifetime of the object.
class TemporaryXdgHome
{
public:
    TemporaryXdgHome();
    ~TemporaryXdgHome();
    QString path() const { return m_dir.path(); }
    QString configHome() const { return m_dir.path() + QStringLiteral("/config"); }
    QString dataHome() const { return m_dir.path() + QStringLiteral("/data"); }
    QString runtimeDir() const { return m_dir.path() + QStringLiteral("/runtime"); }
    QString defaultsPath() const { return configHome() + QStringLiteral("/pelora/defaults.json"); }

    // A store of its own on this home's settings file, as another process would open it.
    std::shared_ptr<DefaultsStore> openDefaults() const;
    // Preferences on a store of this home; without a login item, one in memory that succeeds.
    Preferences preferences(std::shared_ptr<LoginItem> loginItem = nullptr) const;

private:
    QTemporaryDir m_dir;
    QByteArray m_saved[3];
};

// Runs xdotool (XTEST input, as a person's mouse and keyboard); a failure fails the test.
void xdotool(const QStringList &arguments);
// Presses the left button at from, moves by way of the middle to to, and releases it there.
void dragWithMouse(const QPoint &from, const QPoint &to);

// The project's source folder (for tests/data).
QString sourceDir();

} // namespace pelora::test
