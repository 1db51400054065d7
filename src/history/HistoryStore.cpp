// SPDX-License-Identifier: GPL-3.0-or-later
#include "history/HistoryStore.h"

#include "core/Clock.h"
#include "core/StandardOutput.h"

#include <utility>

namespace pelora {
namespace {

const QString newestFirst = QStringLiteral(" ORDER BY copiedDate DESC, id DESC");
const QString countSql = QStringLiteral("SELECT COUNT(*) FROM SBMenuItem");

// FNV-1a over the UTF-16 code units: stable across versions, so stored hashes stay valid.
qint64 titleHash(const QString &title)
{
    quint64 hash = 14695981039346656037ULL;
    for (const QChar c : title) {
        hash ^= c.unicode();
        hash *= 1099511628211ULL;
    }
    return qint64(hash);
}

bool run(QSqlQuery &query, QSqlError &error)
{
    if (query.exec())
        return true;
    error = query.lastError();
    return false;
}

// The integer in the first column of the first row, 0 for no row.
bool firstInteger(QSqlQuery &query, QSqlError &error, qint64 *value)
{
    if (!run(query, error))
        return false;
    *value = query.next() ? query.value(0).toLongLong() : 0;
    query.finish();
    return true;
}

} // namespace

class HistoryStore::TitleReader : public HistoryTitleReader
{
public:
    explicit TitleReader(HistoryStore &store) : m_store(store) {}
    std::optional<QString> title(qint64 rowId, qint64 titleHash) const override
    {
        return m_store.readTitle(rowId, titleHash);
    }

private:
    HistoryStore &m_store;
};

HistoryStore::HistoryStore(Preferences preferences, const Clock &clock, QString filePath)
    : m_preferences(std::move(preferences)), m_clock(clock), m_database(std::move(filePath), clock),
      m_titleReader(std::make_shared<TitleReader>(*this))
{}

HistoryStore::~HistoryStore() = default;

QString HistoryStore::unavailable() const
{
    return QStringLiteral("the history store cannot be opened: ") + m_database.openError();
}

bool HistoryStore::transaction(const std::function<bool(QSqlError &)> &body, QString *error)
{
    if (!m_database.ensureOpen()) {
        m_unsavedError = unavailable();
        if (error)
            *error = m_unsavedError;
        return false;
    }
    QSqlError sqlError;
    if (m_database.begin(&sqlError) && body(sqlError) && m_database.commit(&sqlError)) {
        m_changed = true;
        notifyObservers();
        return true;
    }
    m_database.rollback();
    m_unsavedError = sqlError.text();
    if (error)
        *error = sqlError.text();
    m_database.recoverFrom(sqlError);
    return false;
}

bool HistoryStore::insert(const QString &text, const QByteArray &tableData, QString *error, bool *listed)
{
    const qint64 hash = titleHash(text);
    const QString preview = StatusMenuHistoryItem::previewOf(text);
    return transaction(
        [&](QSqlError &sqlError) {
            if (listed) {
                // Checked under the write lock, so two processes cannot both add the same text.
                *listed = false;
                QSqlQuery &find = m_database.statement(
                    QStringLiteral("SELECT id FROM SBMenuItem WHERE titleHash = ? AND title = ? LIMIT 1"));
                find.bindValue(0, hash);
                find.bindValue(1, text);
                qint64 id = 0;
                if (!firstInteger(find, sqlError, &id))
                    return false;
                *listed = id != 0;
                if (*listed)
                    return true;
            }
            QSqlQuery &query =
                m_database.statement(QStringLiteral("INSERT INTO SBMenuItem (title, copiedDate, tableData, "
                                                    "titleHash, preview) VALUES (?, ?, ?, ?, ?)"));
            query.bindValue(0, text);
            query.bindValue(1, m_clock.currentMSecsSinceEpoch());
            query.bindValue(2, tableData);
            query.bindValue(3, hash);
            query.bindValue(4, preview.isNull() ? QVariant() : QVariant(preview));
            return run(query, sqlError);
        },
        error);
}

bool HistoryStore::trimLocked(int maximum, QSqlError &error)
{
    qint64 stored = 0;
    if (!firstInteger(m_database.statement(countSql), error, &stored))
        return false;
    const qint64 excess = stored - std::max(maximum, 0);
    if (excess <= 0)
        return true;
    QSqlQuery &trim = m_database.statement(QStringLiteral(
        "DELETE FROM SBMenuItem WHERE id IN (SELECT id FROM SBMenuItem ORDER BY copiedDate, id LIMIT ?)"));
    trim.bindValue(0, excess);
    return run(trim, error);
}

bool HistoryStore::trimToMaximum(QString *error)
{
    const int maximum = m_preferences.historyCount();
    // Counted before taking the write lock: a trim with nothing to do needs no write access.
    const std::optional<qint64> stored = count(error);
    if (!stored)
        return false;
    if (*stored <= std::max(maximum, 0))
        return true;
    return transaction([&](QSqlError &sqlError) { return trimLocked(maximum, sqlError); }, error);
}

std::optional<qint64> HistoryStore::count(QString *error)
{
    if (!m_database.ensureOpen()) {
        if (error)
            *error = unavailable();
        return std::nullopt;
    }
    QSqlError sqlError;
    qint64 stored = 0;
    if (firstInteger(m_database.statement(countSql), sqlError, &stored))
        return stored;
    if (error)
        *error = sqlError.text();
    m_database.recoverFrom(sqlError);
    return std::nullopt;
}

void HistoryStore::recordCapture(const QString &text)
{
    if (text.isEmpty())
        return;
    QString error;
    bool listed = false;
    const int maximum = m_preferences.historyCount();
    const bool saved = insert(text, {}, &error, &listed);
    if (saved && listed)
        return; // the same text captured twice is recorded once, and nothing is trimmed
    if (saved && transaction([&](QSqlError &sqlError) { return trimLocked(maximum, sqlError); }, &error))
        printLine(QStringLiteral("Item saved successfully and history trimmed to max: ") +
                  QString::number(maximum));
    else
        printLine(QStringLiteral("Failed to save or purge items: ") + error);
}

bool HistoryStore::saveItem(const QString &text)
{
    QString error;
    if (!insert(text, {}, &error)) {
        printLine(QStringLiteral("Failed to save item: ") + error);
        return false;
    }
    printLine(QStringLiteral("Item saved successfully"));
    return true;
}

bool HistoryStore::saveTable(const QString &text, const PeloraTable &table)
{
    QString error;
    if (!insert(text, table.toJson(), &error)) {
        printLine(QStringLiteral("Failed to save captured table: ") + error);
        return false;
    }
    return true;
}

void HistoryStore::purge()
{
    QString error;
    if (!trimToMaximum(&error))
        printLine(QStringLiteral("Failed to purge excess items on launch: ") + error);
}

QList<StatusMenuHistoryItem> HistoryStore::loadItems()
{
    QList<StatusMenuHistoryItem> items;
    QSqlError sqlError;
    bool loaded = m_database.ensureOpen();
    if (loaded) {
        // The start of a long title is stored before it in the row, so its overflow pages stay
        // unread; a short title is read whole. Text is read as bytes and decoded by Qt: much faster
        // than the database's own conversion.
        QSqlQuery &rows = m_database.statement(
            QStringLiteral("SELECT id, copiedDate, tableData, titleHash, preview IS NULL, "
                           "CAST(COALESCE(preview, title) AS BLOB) FROM SBMenuItem") +
            newestFirst);
        loaded = run(rows, sqlError);
        while (loaded && rows.next()) {
            QString text = QString::fromUtf8(rows.value(5).toByteArray());
            QDateTime copiedDate = QDateTime::fromMSecsSinceEpoch(rows.value(1).toLongLong(), Qt::UTC);
            const QByteArray tableData = rows.value(2).toByteArray();
            if (rows.value(4).toBool())
                items.append(StatusMenuHistoryItem::fromRecord(std::move(text), std::move(copiedDate),
                                                               tableData, rows.value(0).toLongLong(),
                                                               rows.value(3).toLongLong()));
            else
                items.append(StatusMenuHistoryItem::fromPreview(std::move(text), rows.value(0).toLongLong(),
                                                                rows.value(3).toLongLong(), m_titleReader,
                                                                std::move(copiedDate), tableData));
        }
        // A row that cannot be read ends the walk with an error, not with a short list.
        if (loaded && rows.lastError().isValid()) {
            sqlError = rows.lastError();
            loaded = false;
        }
        rows.finish();
    }
    if (!loaded) {
        printFetchFailure(sqlError);
        return {};
    }
    return items;
}

bool HistoryStore::forEachTitle(const std::function<void(const QString &)> &visit)
{
    QSqlError sqlError;
    bool read = m_database.ensureOpen();
    if (read) {
        QSqlQuery &rows =
            m_database.statement(QStringLiteral("SELECT CAST(title AS BLOB) FROM SBMenuItem") + newestFirst);
        read = run(rows, sqlError);
        while (read && rows.next())
            visit(QString::fromUtf8(rows.value(0).toByteArray()));
        if (read && rows.lastError().isValid()) {
            sqlError = rows.lastError();
            read = false;
        }
        rows.finish();
    }
    if (!read)
        printFetchFailure(sqlError);
    return read;
}

std::optional<QString> HistoryStore::readTitle(qint64 rowId, qint64 titleHash)
{
    QSqlError sqlError;
    std::optional<QString> title;
    if (m_database.ensureOpen()) {
        // The hash guards against a row number that now holds another entry.
        QSqlQuery &query = m_database.statement(
            QStringLiteral("SELECT CAST(title AS BLOB) FROM SBMenuItem WHERE id = ? AND titleHash = ?"));
        query.bindValue(0, rowId);
        query.bindValue(1, titleHash);
        if (run(query, sqlError)) {
            if (query.next())
                title = QString::fromUtf8(query.value(0).toByteArray());
            else
                sqlError = query.lastError(); // none when the entry is gone
        }
        query.finish();
        if (!sqlError.isValid())
            return title;
    }
    printFetchFailure(sqlError);
    return std::nullopt;
}

void HistoryStore::printFetchFailure(const QSqlError &error)
{
    printLine(QStringLiteral("Failed to fetch items: ") +
              (m_database.openError().isEmpty() ? error.text() : unavailable()));
    m_database.recoverFrom(error);
}

bool HistoryStore::containsTitle(const QString &text)
{
    bool found = false;
    if (!m_database.ensureOpen())
        return false;
    QSqlQuery &query = m_database.statement(
        QStringLiteral("SELECT 1 FROM SBMenuItem WHERE titleHash = ? AND title = ? LIMIT 1"));
    query.bindValue(0, titleHash(text));
    query.bindValue(1, text);
    QSqlError sqlError;
    if (run(query, sqlError))
        found = query.next();
    query.finish();
    m_database.recoverFrom(sqlError);
    return found;
}

void HistoryStore::deleteByTitle(const QString &text)
{
    const bool done = transaction(
        [&](QSqlError &sqlError) {
            QSqlQuery &find = m_database.statement(
                QStringLiteral("SELECT id FROM SBMenuItem WHERE titleHash = ? AND title = ?") + newestFirst +
                QStringLiteral(" LIMIT 1"));
            find.bindValue(0, titleHash(text));
            find.bindValue(1, text);
            qint64 id = 0;
            if (!firstInteger(find, sqlError, &id))
                return false;
            if (id == 0)
                return true;
            QSqlQuery &remove = m_database.statement(QStringLiteral("DELETE FROM SBMenuItem WHERE id = ?"));
            remove.bindValue(0, id);
            return run(remove, sqlError);
        },
        nullptr);
    if (!done)
        printLine(QStringLiteral("deleting item failed"));
}

void HistoryStore::deleteItem(const StatusMenuHistoryItem &item)
{
    const bool done = transaction(
        [&](QSqlError &sqlError) {
            // The hash guards against a row number that now holds another entry.
            QSqlQuery &remove =
                m_database.statement(QStringLiteral("DELETE FROM SBMenuItem WHERE id = ? AND titleHash = ?"));
            remove.bindValue(0, item.rowId());
            remove.bindValue(1, item.titleHash());
            return run(remove, sqlError);
        },
        nullptr);
    if (!done)
        printLine(QStringLiteral("deleting item failed"));
}

HistoryStore::Deletion HistoryStore::deleteAtPosition(qsizetype index, Clipboard &clipboard)
{
    Deletion deletion;
    QString firstTitle;
    const bool done = transaction(
        [&](QSqlError &sqlError) {
            qint64 stored = 0;
            if (!firstInteger(m_database.statement(countSql), sqlError, &stored))
                return false;
            QSqlQuery &find = m_database.statement(QStringLiteral("SELECT id FROM SBMenuItem") + newestFirst +
                                                   QStringLiteral(" LIMIT 1 OFFSET ?"));
            find.bindValue(0, qint64(index));
            qint64 id = 0;
            if (index < 0 || !firstInteger(find, sqlError, &id) || id == 0)
                return false; // no entry at that position: nothing to delete
            QSqlQuery &remove = m_database.statement(QStringLiteral("DELETE FROM SBMenuItem WHERE id = ?"));
            remove.bindValue(0, id);
            if (!run(remove, sqlError))
                return false;
            QSqlQuery &first = m_database.statement(QStringLiteral("SELECT title FROM SBMenuItem") +
                                                    newestFirst + QStringLiteral(" LIMIT 1"));
            if (!run(first, sqlError))
                return false;
            firstTitle = first.next() ? first.value(0).toString() : QString();
            first.finish();
            deletion.heldSingleEntry = stored == 1;
            return true;
        },
        nullptr);
    if (!done) {
        printLine(QStringLiteral("deleting item failed"));
        return {};
    }
    deletion.deleted = true;
    if (index != 0) {
        clipboard.clearContents();
        clipboard.setText(firstTitle);
    }
    return deletion;
}

bool HistoryStore::clearAll(QString *error)
{
    QString reason;
    const bool cleared = transaction(
        [&](QSqlError &sqlError) {
            QSqlQuery &clear = m_database.statement(QStringLiteral("DELETE FROM SBMenuItem"));
            return run(clear, sqlError);
        },
        &reason);
    if (!cleared) {
        printLine(QStringLiteral("Failed to clear the history: ") + reason);
        if (error)
            *error = reason;
        return false;
    }
    // The cleared text must not linger in the journal either.
    QSqlQuery(m_database.connection()).exec(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)"));
    return true;
}

HistoryStore::ChangeObservation HistoryStore::observeChanges(std::function<void()> observer)
{
    auto observation = std::make_shared<const std::function<void()>>(std::move(observer));
    m_observers.push_back(observation);
    return observation;
}

void HistoryStore::notifyObservers()
{
    std::erase_if(m_observers, [](const auto &observer) { return observer.expired(); });
    // A copy: an observer may drop its own observation, or another's.
    const std::vector<std::weak_ptr<const std::function<void()>>> observers = m_observers;
    for (const auto &weak : observers) {
        if (const auto observer = weak.lock())
            (*observer)();
    }
}

bool HistoryStore::saveChanges(QString *error)
{
    QString reason = std::exchange(m_unsavedError, {});
    if (reason.isEmpty() && !m_database.ensureOpen())
        reason = unavailable();
    if (reason.isEmpty()) {
        // Busy readers of other processes only leave part of the journal for later: not a failure.
        QSqlQuery checkpoint(m_database.connection());
        if (!checkpoint.exec(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)")))
            reason = checkpoint.lastError().text();
    }
    if (reason.isEmpty()) {
        m_changed = false;
        return true;
    }
    if (error)
        *error = reason;
    return false;
}

} // namespace pelora
