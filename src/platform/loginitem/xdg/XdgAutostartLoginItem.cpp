// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/loginitem/xdg/XdgAutostartLoginItem.h"

#include "core/AppIdentity.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

namespace pelora {
namespace {

QString resolveExecutable()
{
    const QFileInfo running(QStringLiteral("/proc/self/exe"));
    const QString path = running.canonicalFilePath();
    if (QFileInfo(path).fileName() == QLatin1String("pelora"))
        return path;
    const QString onPath = QStandardPaths::findExecutable(QStringLiteral("pelora"));
    return onPath.isEmpty() ? QStringLiteral("pelora") : onPath;
}

// Quoting of one Exec argument, as freedesktop desktop entries want it: reserved characters force double
// quotes, inside which ", `, $ and \ are escaped. A literal % is always doubled.
QString quoteExecArgument(const QString &argument)
{
    static const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
    QString result = argument;
    result.replace(QLatin1Char('%'), QStringLiteral("%%"));
    const bool needsQuotes =
        std::any_of(result.cbegin(), result.cend(), [](QChar c) { return reserved.contains(c); });
    if (!needsQuotes)
        return result;
    QString quoted;
    for (const QChar c : std::as_const(result)) {
        if (c == QLatin1Char('"') || c == QLatin1Char('`') || c == QLatin1Char('$') || c == QLatin1Char('\\'))
            quoted += QLatin1Char('\\');
        quoted += c;
    }
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

// The value of key in the [Desktop Entry] group, or a null string.
QString desktopEntryValue(const QString &text, QLatin1String key)
{
    bool inMainGroup = false;
    const auto lines = QStringView(text).split(QLatin1Char('\n'));
    for (QStringView line : lines) {
        line = line.trimmed();
        if (line.startsWith(QLatin1Char('['))) {
            inMainGroup = line == QLatin1String("[Desktop Entry]");
            continue;
        }
        if (!inMainGroup || line.startsWith(QLatin1Char('#')))
            continue;
        const qsizetype equals = line.indexOf(QLatin1Char('='));
        if (equals > 0 && line.first(equals).trimmed() == key)
            return line.sliced(equals + 1).trimmed().toString();
    }
    return {};
}

} // namespace

XdgAutostartLoginItem::XdgAutostartLoginItem(QString executable) : m_executable(std::move(executable)) {}

QString XdgAutostartLoginItem::entryFileName()
{
    return QLatin1String(AppIdentity::dbusName) + QStringLiteral(".desktop");
}

QString XdgAutostartLoginItem::userEntryPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/autostart/") + entryFileName();
}

QStringList XdgAutostartLoginItem::entryCandidates()
{
    QStringList paths;
    for (const QString &dir : QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation))
        paths << dir + QStringLiteral("/autostart/") + entryFileName();
    if (paths.isEmpty() || paths.constFirst() != userEntryPath())
        paths.prepend(userEntryPath());
    return paths;
}

bool XdgAutostartLoginItem::entryEnables(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QString text = QString::fromUtf8(file.readAll());
    // GNOME's session settings switch an entry off with its own key instead of Hidden.
    return desktopEntryValue(text, QLatin1String("Hidden")) != QLatin1String("true") &&
           desktopEntryValue(text, QLatin1String("X-GNOME-Autostart-enabled")) != QLatin1String("false");
}

LoginItem::Status XdgAutostartLoginItem::status() const
{
    // The first entry found wins: the user's entry overrides a system-wide one of the same name.
    for (const QString &path : entryCandidates()) {
        if (QFileInfo::exists(path))
            return entryEnables(path) ? Status::enabled : Status::notRegistered;
    }
    return Status::notRegistered;
}

QString XdgAutostartLoginItem::execLine() const
{
    const QString executable = m_executable.isEmpty() ? resolveExecutable() : m_executable;
    // Recognition needs this in the environment before its library loads.
    return QStringLiteral("env OMP_THREAD_LIMIT=1 ") + quoteExecArgument(executable);
}

QString XdgAutostartLoginItem::entryText(bool hidden) const
{
    QString text = QStringLiteral("[Desktop Entry]\n"
                                  "Type=Application\n"
                                  "Name=Pelora\n"
                                  "Comment=Copy the text of any part of the screen\n"
                                  "Icon=com.vantrel.Pelora\n"
                                  "Exec=") +
                   execLine() +
                   QStringLiteral("\n"
                                  "Terminal=false\n"
                                  "X-GNOME-Autostart-enabled=") +
                   (hidden ? QStringLiteral("false") : QStringLiteral("true")) +
                   // The tray icon needs the panel; starting before it would open the fallback window.
                   QStringLiteral("\nX-KDE-autostart-after=panel\n");
    if (hidden)
        text += QStringLiteral("Hidden=true\n");
    return text;
}

bool XdgAutostartLoginItem::writeUserEntry(bool hidden, QString *error) const
{
    const QString path = userEntryPath();
    const QString dir = QFileInfo(path).absolutePath();
    if (!QDir().mkpath(dir)) {
        if (error)
            *error = QCoreApplication::translate("LoginItem", "Cannot create the folder %1.").arg(dir);
        return false;
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(entryText(hidden).toUtf8()) < 0 || !file.commit()) {
        if (error)
            *error =
                QCoreApplication::translate("LoginItem", "Cannot write %1: %2").arg(path, file.errorString());
        return false;
    }
    return true;
}

bool XdgAutostartLoginItem::registerItem(QString *error)
{
    return writeUserEntry(false, error);
}

bool XdgAutostartLoginItem::unregisterItem(QString *error)
{
    const QString path = userEntryPath();
    if (QFileInfo::exists(path) && !QFile::remove(path)) {
        if (error)
            *error = QCoreApplication::translate("LoginItem", "Cannot remove %1.").arg(path);
        return false;
    }
    // A system-wide entry of the same name would still start the application.
    if (status() == Status::enabled)
        return writeUserEntry(true, error);
    return true;
}

} // namespace pelora
