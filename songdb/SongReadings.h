#pragma once
#include <QString>

namespace td {

class Connection;
class JobHost;

// The pinyin readings of the song titles, kept in the table song_reading beside song: one row per
// reading of a title (song_id, initials, spelling). Triggers on song mark a title to be read again
// (a row with no initials) whenever a song is added or its title changes, and take the rows of a
// deleted song away, whichever console or program writes; the readings themselves are made here,
// by the console that searches next.

// Whether the songbook has the table yet.
bool SongReadingsExist(Connection& db);

// Brings the readings up to date: makes the table and its triggers when missing (every song then
// waits to be read), then reads the waiting titles, in batches, each batch one write transaction.
// With a host, the job shows its progress and can be cancelled (answer false). Throws AppError.
bool UpdateSongReadings(Connection& db, JobHost* host = nullptr);

// How many titles wait to be read (all songs when the table is missing).
qint64 SongReadingsWaiting(Connection& db);

// The condition on song.id that finds the titles whose reading begins with what was typed, read as
// one initial per character or as syllables. Empty for an empty value.
QString PinyinCondition(const QString& typed);

}  // namespace td
