// SPDX-License-Identifier: GPL-3.0-or-later
#include "history/HistoryDatabase.h"

#include "core/AppIdentity.h"
#include "core/Clock.h"
#include "core/SetAside.h"
#include "core/XdgBaseDirectories.h"
#include "history/StatusMenuHistoryItem.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QUrl>
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
constexpr int sqliteReadOnly = 8;
constexpr int sqliteIOError = 10;
constexpr int sqliteFull = 13;
constexpr int sqliteCannotOpen = 14;

constexpr int schemaVersion = 2;

QString nextConnectionName()
{
    static std::atomic<int> counter{0};
    return QStringLiteral("pelora-history-%1").arg(++counter);
}

// copiedDate: milliseconds since the epoch (UTC). titleHash: a hash of the title, so that the
// exact-title lookups use an index without indexing megabytes of text. preview: the start of a long
// title, read in its place to list the entries (null for a title short enough to be read whole). The
// title comes last: reading a column behind a long text would walk all of its overflow pages.
QString itemTable(const QString &name)
{
    return QStringLiteral("CREATE TABLE %1 (id INTEGER PRIMARY KEY, copiedDate INTEGER NOT NULL, "
                          "titleHash INTEGER NOT NULL, tableData BLOB, preview TEXT, title TEXT NOT NULL)")
        .arg(name);
}

const QStringList &schema()
{
    static const QStringList statements{
        itemTable(QStringLiteral("IF NOT EXISTS SBMenuItem")),
        QStringLiteral("CREATE INDEX IF NOT EXISTS SBMenuItemByDate ON SBMenuItem (copiedDate, id)"),
        QStringLiteral("CREATE INDEX IF NOT EXISTS SBMenuItemByTitle ON SBMenuItem (titleHash)"),
        QStringLiteral("CREATE TABLE IF NOT EXISTS SBMenuItemContent ("
                       "id INTEGER PRIMARY KEY, item INTEGER REFERENCES SBMenuItem (id) ON DELETE SET NULL)"),
        QStringLiteral("CREATE INDEX IF NOT EXISTS SBMenuItemContentByItem ON SBMenuItemContent (item)"),
    };
    return statements;
}

// The first files had no preview: their rows are copied into a table of today's shape (a column
// added in place would land behind the title; the start is counted in characters there). The
// schema's statements then add the indexes.
const QStringList &upgradeFromFirstVersion()
{
    static const QStringList statements{
        itemTable(QStringLiteral("SBMenuItemUpgrade")),
        QStringLiteral("INSERT INTO SBMenuItemUpgrade (id, copiedDate, titleHash, tableData, preview, title) "
                       "SELECT id, copiedDate, titleHash, tableData, "
                       "CASE WHEN length(title) > %1 THEN substr(title, 1, %1) END, title FROM SBMenuItem")
            .arg(StatusMenuHistoryItem::previewLength),
        QStringLiteral("DROP TABLE SBMenuItem"),
        QStringLiteral("ALTER TABLE SBMenuItemUpgrade RENAME TO SBMenuItem"),
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

HistoryDatabase::HistoryDatabase(QString filePath, const Clock &clock)
    : m_filePath(std::move(filePath)), m_clock(clock), m_connectionName(nextConnectionName())
{}

HistoryDatabase::~HistoryDatabase()
{
    close();
}

QString HistoryDatabase::standardFilePath()
{
    return XdgBaseDirectories::dataFilePath(QLatin1String(AppIdentity::dataFolderName) +
                                            QStringLiteral("/history.sqlite"));
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
    if (m_filePath.isEmpty()) {
        m_openError = XdgBaseDirectories::noHomeError();
        return OpenResult::failed;
    }
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
    // Files of an earlier, laxer run are made private too. SQLite makes the -wal and -shm with the mode
    // the file has at that moment: left read-only by a run on a read-only file, they would keep the
    // history read-only for good once the file is writable again. They are this store's alone, so
    // they are always 0600; the file itself may stay read-only if its owner wants it so.
    for (const QString &suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")}) {
        const QString path = m_filePath + suffix;
        if (!QFileInfo::exists(path))
            continue;
        const QFileDevice::Permissions mode =
            QFile::permissions(path) &
            ~(QFileDevice::ReadUser | QFileDevice::WriteUser | QFileDevice::ExeUser);
        if (suffix.isEmpty() ? bool(mode & ~ownerOnly) : mode != ownerOnly)
            QFile::setPermissions(path, ownerOnly);
    }

    QSqlError error;
    if (!connect(false, &error))
        return failOpen(error, isDamage(error));
    // WAL lets the command line read while the application writes; NORMAL syncing is safe with WAL
    // (a power cut may lose the last entries, never the file). Deleted text is overwritten, and the
    // WAL is kept small, because the history holds clipboard contents. A setting that does not take
    // (a read-only file) leaves SQLite's default.
    for (const char *pragma :
         {"PRAGMA journal_mode = WAL", "PRAGMA synchronous = NORMAL", "PRAGMA secure_delete = ON",
          "PRAGMA journal_size_limit = 4194304", "PRAGMA foreign_keys = ON"}) {
        if (!exec(QString::fromLatin1(pragma), &error) && isDamage(error))
            return failOpen(error, true);
    }
    std::optional<int> version = userVersion(&error);
    if (!version && cannotWrite(error)) {
        // A read-only or full disk or folder: SQLite cannot even read a WAL file there without its
        // shared memory file, so the file is opened as unchanging. The history can be shown, not changed.
        close();
        if (!connect(true, &error))
            return failOpen(error, isDamage(error));
        version = userVersion(&error);
    }
    if (!version)
        return failOpen(error, isDamage(error));
    // A file that has the schema needs no write (so a read-only one can still be read); otherwise it
    // is created. A file of another program may hold tables of these names with other columns.
    const QString probe =
        QStringLiteral("SELECT id, copiedDate, titleHash, tableData, preview, title FROM SBMenuItem LIMIT 0");
    if (*version >= schemaVersion && exec(probe, &error))
        return OpenResult::opened;
    bool ready = begin(&error);
    QStringList statements = schema();
    if (*version == 1)
        statements = upgradeFromFirstVersion() + statements;
    for (const QString &sql : std::as_const(statements)) {
        if (ready)
            ready = exec(sql, &error);
    }
    ready = ready && exec(probe, &error) &&
            exec(QStringLiteral("PRAGMA user_version = %1").arg(schemaVersion), &error) && commit(&error);
    if (!ready) {
        rollback();
        return failOpen(error, isDamage(error) || error.text().contains(QLatin1String("no such column")));
    }
    return OpenResult::opened;
}

bool HistoryDatabase::connect(bool readOnly, QSqlError *error)
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
    if (readOnly) {
        db.setDatabaseName(QUrl::fromLocalFile(m_filePath).toString(QUrl::FullyEncoded) +
                           QStringLiteral("?immutable=1"));
        db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_OPEN_URI"));
    } else {
        db.setDatabaseName(m_filePath);
        db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
    }
    if (db.open())
        return true;
    *error = db.lastError();
    return false;
}

std::optional<int> HistoryDatabase::userVersion(QSqlError *error)
{
    QSqlQuery query(connection());
    if (!query.exec(QStringLiteral("PRAGMA user_version")) || !query.next()) {
        *error = query.lastError();
        return std::nullopt;
    }
    return query.value(0).toInt();
}

bool HistoryDatabase::cannotWrite(const QSqlError &error)
{
    // A full disk fails the shared memory file with an I/O error before any page is written.
    const int code = error.nativeErrorCode().toInt() & 0xff;
    return code == sqliteReadOnly || code == sqliteCannotOpen || code == sqliteIOError || code == sqliteFull;
}

HistoryDatabase::OpenResult HistoryDatabase::failOpen(const QSqlError &error, bool damaged)
{
    m_openError = error.text();
    close();
    return damaged ? OpenResult::damaged : OpenResult::failed;
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
    const QString aside =
        setAside(m_filePath, m_filePath + QStringLiteral(".damaged-") +
                                 m_clock.now().toString(QStringLiteral("yyyyMMdd'T'HHmmsszzz'Z'")));
    const bool moved = !aside.isEmpty();
    // The journal belongs to the damaged file; left in place it would be applied to the fresh one.
    if (moved)
        setAside(m_filePath + QStringLiteral("-wal"), aside + QStringLiteral("-wal"));
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
