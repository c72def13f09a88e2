#pragma once
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <memory>

namespace td {

class Backend;
class Connection;

// Every song and singer deleted from a songbook is kept, all fields and the photograph, in the tables
// deleted_song and deleted_singer of the same database. A trigger writes the row there before it goes,
// in the same statement, so no way of deleting (a window, a job, a statement typed at the admin tool,
// another console) loses it. Kept rows go after KeepDeletedDays of the application INI.

inline const QString kKeepDeletedDaysKey = QStringLiteral("KeepDeletedDays");
constexpr int kKeepDeletedDaysDefault = 30;
int KeepDeletedDays();

// The tables a deleting statement takes rows from, lower case: "song", "singer"; else empty text.
QString KeptTableOfDelete(const QString& sql);
bool IsKeptTable(const QString& table);

// The statements that make the journal tables and their triggers in SQLite or in PostgreSQL.
QStringList DeleteJournalStatements(bool postgres);
// Makes the journal in a database that holds a songbook but no journal yet; does nothing for a
// database without a song table, and after the first call on the same connection when cached.
// Throws AppError when the store refuses: a delete then does not run without its journal.
void EnsureDeleteJournal(Backend& backend, bool cached = true);

// Counts rows deleted from a kept table for the event log: one line per batch. While a DeleteBatch
// is open the counts add up, and its end writes the line; outside one each call is a batch.
void NoteDeleted(const std::shared_ptr<Backend>& backend, const QString& table, qint64 rows);

// The deletes of one operation (a selection deleted in a window): one event log line at the end, and
// kept rows past their age go then (at the first batch of a connection, then at most every 10 minutes).
class DeleteBatch {
public:
    DeleteBatch();
    ~DeleteBatch();
    DeleteBatch(const DeleteBatch&) = delete;
    DeleteBatch& operator=(const DeleteBatch&) = delete;
};

// Removes kept rows deleted before now less days; never fails.
void PruneDeleteJournal(Backend& backend, int days);

// What a restore brought back and what it left in the journal.
struct RestoreOutcome {
    qint64 songs = 0;
    qint64 singers = 0;
    QStringList refused;  // one line per song whose index, or singer whose name, another one has now
};

// Brings back the songs and singers kept since a time (invalid: all of them), the last deleted first.
// A song whose index another song has now, and a singer whose name is taken, stay in the journal and
// are named in refused; what comes back leaves the journal. Throws AppError.
RestoreOutcome RestoreDeleted(Connection& db, const QDateTime& since = {});

// A local time as the operator writes it: "yyyy-MM-dd", with " HH:mm" or " HH:mm:ss" (or 'T' for the
// space); invalid for anything else.
QDateTime ParseJournalTime(const QString& text);

}  // namespace td
