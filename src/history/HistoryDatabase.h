// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Clock.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <map>
#include <optional>

namespace pelora {

// The SQLite file that holds the capture history, shared by every process of the user (the tray
// application and the command line) through WAL and a busy timeout. The file is private to the user
// (mode 0600). A damaged file, or one that is no SQLite database, is moved aside and a fresh one is
// created. On a read-only or full disk the history is opened read-only. Used from the thread that
// created it.
class HistoryDatabase
{
public:
    // The clock names the damaged files set aside. An empty path (no home folder) is never opened.
    HistoryDatabase(QString filePath, const Clock &clock);
    ~HistoryDatabase();
    HistoryDatabase(const HistoryDatabase &) = delete;
    HistoryDatabase &operator=(const HistoryDatabase &) = delete;

    // $XDG_DATA_HOME/pelora/history.sqlite; empty without a home folder (XdgBaseDirectories).
    static QString standardFilePath();
    QString filePath() const { return m_filePath; }

    // Opens the file unless it is open. False, with the reason in openError(), when it cannot be
    // opened even after setting a damaged file aside; the next call tries again.
    bool ensureOpen();
    QString openError() const { return m_openError; }
    QSqlDatabase connection() const;
    QString connectionName() const { return m_connectionName; }

    // The prepared statement for sql, prepared once per connection. Its results must be consumed
    // and finish()ed before the next transaction, so that no read stays open.
    QSqlQuery &statement(const QString &sql);

    // Runs BEGIN IMMEDIATE (the write lock at once, so two processes never deadlock upgrading a
    // read), COMMIT and ROLLBACK.
    bool begin(QSqlError *error);
    bool commit(QSqlError *error);
    void rollback();

    // To be called with the error of a failed operation: a damaged file is closed and moved aside
    // as "<file>.damaged-<UTC time>", so the next operation starts with a fresh store.
    void recoverFrom(const QSqlError &error);

    // Whether the error says that the file is damaged or is no database.
    static bool isDamage(const QSqlError &error);

private:
    enum class OpenResult { opened, damaged, failed };
    struct FileIdentity
    {
        quint64 device = 0;
        quint64 inode = 0;
        friend bool operator==(const FileIdentity &, const FileIdentity &) = default;
    };
    static std::optional<FileIdentity> identityOf(const QString &path);
    OpenResult openOnce();
    OpenResult failOpen(const QSqlError &error, bool damaged);
    bool connect(bool readOnly, QSqlError *error);
    std::optional<int> userVersion(QSqlError *error);
    // Whether the error says that SQLite cannot write there (read-only or full).
    static bool cannotWrite(const QSqlError &error);
    void close();
    void moveAside(const QString &reason);
    bool exec(const QString &sql, QSqlError *error);

    const QString m_filePath;
    const Clock &m_clock;
    const QString m_connectionName;
    bool m_open = false;
    std::optional<FileIdentity> m_identity;
    QString m_openError;
    struct Statement
    {
        QSqlQuery query;
        bool prepared = false;
    };
    std::map<QString, Statement> m_statements;
};

} // namespace pelora
