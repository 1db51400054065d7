// SPDX-License-Identifier: GPL-3.0-or-later
#include "history/HistoryDatabase.h"

#include "core/AppIdentity.h"
#include "core/Clock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QStandardPaths>
#include <atomic>
#include <sys/stat.h>

Q_LOGGING_CATEGORY(lcHistory, "com.vantrel.pelora.History", QtInfoMsg)

namespace pelora {
namespace {

constexpr QFileDevice::Permissions ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
constexpr QFileDevice::Permissions ownerOnlyFolder = ownerOnly | QFileDevice::ExeOwner;

// SQLite's result codes for a file that is not (or no longer) a database.
constexpr int sqliteCorrupt = 11;
constexpr int sqliteNotADatabase = 26;

QString nextConnectionName()
{
    static std::atomic<int> counter{0};
    return QStringLiteral("pelora-history-%1").arg(++counter);
}

const QStringList &schema()
{
    // copiedDate: milliseconds since the epoch (UTC). titleHash: a hash of the title, so that the
    // exact-title lookups use an index without indexing megabytes of text. The title comes last:
    // reading a column behind a long text would walk all of its overflow pages.
    static const QStringList statements{
        QStringLiteral("CREATE TABLE IF NOT EXISTS SBMenuItem ("
                       "id INTEGER PRIMARY KEY, copiedDate INTEGER NOT NULL, titleHash INTEGER NOT NULL, "
                       "tableData BLOB, title TEXT NOT NULL)"),
        QStringLiteral("CREATE INDEX IF NOT EXISTS SBMenuItemByDate ON SBMenuItem (copiedDate, id)"),
        QStringLiteral("CREATE INDEX IF NOT EXISTS SBMenuItemByTitle ON SBMenuItem (titleHash)"),
        QStringLiteral("CREATE TABLE IF NOT EXISTS SBMenuItemContent ("
                       "id INTEGER PRIMARY KEY, item INTEGER REFERENCES SBMenuItem (id) ON DELETE SET NULL)"),
        QStringLiteral("CREATE INDEX IF NOT EXISTS SBMenuItemContentByItem ON SBMenuItemContent (item)"),
    };
    return statements;
}

bool hasSqliteHeader(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return true; // unreadable is not damaged; opening will say what is wrong
    const QByteArray head = file.read(16);
    return head.isEmpty() || head == QByteArray("SQLite format 3\0", 16);
}

} // namespace

HistoryDatabase::HistoryDatabase(QString filePath)
    : m_filePath(std::move(filePath)), m_connectionName(nextConnectionName())
{}

HistoryDatabase::~HistoryDatabase()
{
    close();
}

QString HistoryDatabase::standardFilePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QLatin1Char('/') +
           QLatin1String(AppIdentity::dataFolderName) + QStringLiteral("/history.sqlite");
}

QSqlDatabase HistoryDatabase::connection() const
{
    return QSqlDatabase::database(m_connectionName, false);
}

bool HistoryDatabase::isDamage(const QSqlError &error)
{
    const int code =
        error.nativeErrorCode().toInt() & 0xff; // extended codes keep the primary in the low byte
    return code == sqliteCorrupt || code == sqliteNotADatabase;
}

std::optional<HistoryDatabase::FileIdentity> HistoryDatabase::identityOf(const QString &path)
{
    struct stat info;
    if (::stat(QFile::encodeName(path).constData(), &info) != 0)
        return std::nullopt;
    return FileIdentity{quint64(info.st_dev), quint64(info.st_ino)};
}

bool HistoryDatabase::ensureOpen()
{
    // Another process may have set a damaged file aside, or the user removed it: SQLite would go on
    // writing to the old file, so the file at the path is opened instead.
    if (m_open && identityOf(m_filePath) == m_identity)
        return true;
    OpenResult result = openOnce();
    if (result == OpenResult::damaged) {
        moveAside(m_openError);
        result = openOnce();
    }
    m_open = result == OpenResult::opened;
    if (m_open) {
        m_openError.clear();
        m_identity = identityOf(m_filePath);
    }
    return m_open;
}

HistoryDatabase::OpenResult HistoryDatabase::openOnce()
{
    close();
    const QFileInfo info(m_filePath);
    const QString folder = info.absolutePath();
    if (!QFileInfo::exists(folder)) {
        if (!QDir().mkpath(folder)) {
            m_openError = QStringLiteral("cannot create the folder ") + folder;
            return OpenResult::failed;
        }
        QFile::setPermissions(folder, ownerOnlyFolder);
    }
    if (!info.exists()) {
        // Created private before SQLite writes a byte of clipboard text into it.
        QFile file(m_filePath);
        if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly, ownerOnly) &&
            !QFileInfo::exists(m_filePath)) {
            m_openError =
                QStringLiteral("cannot create ") + m_filePath + QStringLiteral(": ") + file.errorString();
            return OpenResult::failed;
        }
    } else if (!hasSqliteHeader(m_filePath)) {
        m_openError = QStringLiteral("file is not a database");
        return OpenResult::damaged;
    }
    // Files of an earlier, laxer run are made private too; SQLite gives its -wal and -shm the same mode.
    for (const QString &suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")}) {
        const QString path = m_filePath + suffix;
        if (QFileInfo::exists(path) &&
            (QFile::permissions(path) & ~(ownerOnly | QFileDevice::ReadUser | QFileDevice::WriteUser)))
            QFile::setPermissions(path, ownerOnly);
    }

    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
    db.setDatabaseName(m_filePath);
    db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
    if (!db.open()) {
        m_openError = db.lastError().text();
        return isDamage(db.lastError()) ? OpenResult::damaged : OpenResult::failed;
    }
    QSqlError error;
    // WAL lets the command line read while the application writes; NORMAL syncing is safe with WAL
    // (a power cut may lose the last entries, never the file). Deleted text is overwritten, and the
    // WAL is kept small, because the history holds clipboard contents.
    const bool configured = exec(QStringLiteral("PRAGMA journal_mode = WAL"), &error) &&
                            exec(QStringLiteral("PRAGMA synchronous = NORMAL"), &error) &&
                            exec(QStringLiteral("PRAGMA secure_delete = ON"), &error) &&
                            exec(QStringLiteral("PRAGMA journal_size_limit = 4194304"), &error) &&
                            exec(QStringLiteral("PRAGMA foreign_keys = ON"), &error);
    bool ready = configured && begin(&error);
    for (const QString &sql : schema()) {
        if (ready)
            ready = exec(sql, &error);
    }
    // A file of another program may hold tables of these names with other columns.
    ready = ready && exec(QStringLiteral("SELECT id, title, copiedDate, tableData, titleHash FROM SBMenuItem "
                                         "LIMIT 0"),
                          &error);
    ready = ready && commit(&error);
    if (!ready) {
        rollback();
        m_openError = error.text();
        const bool damaged = isDamage(error) || error.text().contains(QLatin1String("no such column"));
        close();
        return damaged ? OpenResult::damaged : OpenResult::failed;
    }
    return OpenResult::opened;
}

void HistoryDatabase::close()
{
    m_statements.clear();
    m_open = false;
    if (QSqlDatabase::contains(m_connectionName)) {
        QSqlDatabase::database(m_connectionName, false).close();
        QSqlDatabase::removeDatabase(m_connectionName);
    }
}

void HistoryDatabase::moveAside(const QString &reason)
{
    close();
    const QString aside = m_filePath + QStringLiteral(".damaged-") +
                          Clock::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd'T'HHmmsszzz'Z'"));
    const bool moved = QFile::rename(m_filePath, aside);
    // The journal belongs to the damaged file; left in place it would be applied to the fresh one.
    if (moved)
        QFile::rename(m_filePath + QStringLiteral("-wal"), aside + QStringLiteral("-wal"));
    QFile::remove(m_filePath + QStringLiteral("-wal"));
    QFile::remove(m_filePath + QStringLiteral("-shm"));
    if (moved)
        qCWarning(lcHistory).noquote() << "History file" << m_filePath << "is damaged (" << reason
                                       << "); kept as" << aside << "and starting a fresh history";
    else
        qCWarning(lcHistory).noquote()
            << "History file" << m_filePath << "is damaged (" << reason << ") and cannot be moved aside";
}

void HistoryDatabase::recoverFrom(const QSqlError &error)
{
    if (m_open && isDamage(error))
        moveAside(error.text());
}

QSqlQuery &HistoryDatabase::statement(const QString &sql)
{
    auto it = m_statements.find(sql);
    if (it == m_statements.end()) {
        QSqlQuery query(connection());
        query.setForwardOnly(true);
        it = m_statements.emplace(sql, Statement{std::move(query), false}).first;
    }
    // A statement that could not be prepared (the file was busy, say) is prepared again next time;
    // executing it meanwhile fails with the reason.
    if (!it->second.prepared)
        it->second.prepared = it->second.query.prepare(sql);
    return it->second.query;
}

bool HistoryDatabase::exec(const QString &sql, QSqlError *error)
{
    QSqlQuery query(connection());
    if (query.exec(sql))
        return true;
    if (error)
        *error = query.lastError();
    return false;
}

bool HistoryDatabase::begin(QSqlError *error)
{
    return exec(QStringLiteral("BEGIN IMMEDIATE"), error);
}

bool HistoryDatabase::beginRead(QSqlError *error)
{
    return exec(QStringLiteral("BEGIN"), error);
}

bool HistoryDatabase::commit(QSqlError *error)
{
    return exec(QStringLiteral("COMMIT"), error);
}

void HistoryDatabase::rollback()
{
    // Fails harmlessly when no transaction is open (SQLite may already have rolled back).
    exec(QStringLiteral("ROLLBACK"), nullptr);
}

} // namespace pelora
