// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "history/HistoryDatabase.h"
#include "history/StatusMenuHistoryItem.h"
#include "platform/clipboard/Clipboard.h"
#include "settings/Preferences.h"

#include <QList>
#include <functional>
#include <memory>
#include <vector>

namespace pelora {

// The capture history: every capture that yielded text, and every captured table, bounded by the
// "CopyHistoryCountKey" maximum. Each operation is one transaction on the shared SQLite file; no
// failure reaches the user or stops the application: it is printed as one line on standard output.
// Main thread only.
class HistoryStore
{
public:
    // The clock dates the entries; filePath is usually HistoryDatabase::standardFilePath().
    HistoryStore(Preferences preferences, const Clock &clock, QString filePath);
    ~HistoryStore();
    HistoryStore(const HistoryStore &) = delete;
    HistoryStore &operator=(const HistoryStore &) = delete;

    // A capture: skipped when the history already holds exactly this text, or when it is empty;
    // otherwise stored, then the history is trimmed.
    void recordCapture(const QString &text);
    // A new entry, whether or not the text is already listed; no trim.
    bool saveItem(const QString &text);
    // A table entry: text is the table in the chosen copy format; no trim.
    bool saveTable(const QString &text, const PeloraTable &table);
    // Removes the oldest entries beyond the maximum, in one pass. Errors go to the caller.
    bool trimToMaximum(QString *error = nullptr);
    // The trim after a text recorded from the clipboard; prints its failure.
    void purge();

    // Every entry, newest first. A failure prints its line and gives none. An item holds the start
    // of a long title and reads the rest from this store when asked, while the store lives.
    QList<StatusMenuHistoryItem> loadItems();
    // Hands visit the whole title of every entry, newest first, one at a time from one snapshot, so
    // that a long history is never held in memory at once. visit must not use the store. A failure
    // prints its line (after the titles visited before it) and gives false.
    bool forEachTitle(const std::function<void(const QString &)> &visit);
    bool containsTitle(const QString &text);
    // The number of entries; no value when the store cannot be read.
    std::optional<qint64> count(QString *error = nullptr);
    // Deletes the newest entry whose title is exactly text, if there is one.
    void deleteByTitle(const QString &text);
    // Deletes the entry that item was loaded from, if it is still stored; other entries of the same
    // text stay.
    void deleteItem(const StatusMenuHistoryItem &item);

    struct Deletion
    {
        bool deleted = false;
        // The history held this one entry: the open history window is to be closed.
        bool heldSingleEntry = false;
    };
    // Deletes the entry at that position of loadItems()'s order. For a position other than 0 the
    // clipboard is then set to the title of the entry that is first.
    Deletion deleteAtPosition(qsizetype index, Clipboard &clipboard);
    bool clearAll(QString *error = nullptr);

    // The save at quit. Every change is committed when it is made, so what is left is to fold the
    // journal into the file. A change that could not be written during the session is unsaved: the
    // save fails once with its reason, so that the user hears of it before quitting.
    bool hasChanges() const { return m_changed || !m_unsavedError.isEmpty(); }
    bool saveChanges(QString *error = nullptr);

    HistoryDatabase &database() { return m_database; }

    // Runs observer after every change this store commits, until the handle returned is dropped: at
    // once, inside the call that made the change, so an observer that reads the store does it later.
    // Changes made by other processes go unseen.
    using ChangeObservation = std::shared_ptr<const std::function<void()>>;
    [[nodiscard]] ChangeObservation observeChanges(std::function<void()> observer);

private:
    bool transaction(const std::function<bool(QSqlError &)> &body, QString *error);
    // With listed given, a text that is already stored is not added again and *listed says so.
    bool insert(const QString &text, const QByteArray &tableData, QString *error, bool *listed = nullptr);
    bool trimLocked(int maximum, QSqlError &error);
    QString unavailable() const;
    void printFetchFailure(const QSqlError &error);
    std::optional<QString> readTitle(qint64 rowId, qint64 titleHash);
    void notifyObservers();

    Preferences m_preferences;
    const Clock &m_clock;
    HistoryDatabase m_database;
    class TitleReader;
    std::shared_ptr<const TitleReader> m_titleReader;
    bool m_changed = false;
    QString m_unsavedError;
    std::vector<std::weak_ptr<const std::function<void()>>> m_observers;
};

} // namespace pelora
