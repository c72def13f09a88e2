#pragma once
#include "exchange/AccessDatabase.h"
#include "shell/services/JobHost.h"
#include <QString>

namespace td {

class Connection;

// What the songbook import wizard hands to the import: the choices of its window.
struct SongbookImportSettings {
    QString source;              // the database file to read; never written
    QString indexClass;          // "import" (the source's Index), "index" (numbered from indexFrom) or "blank"
    QString indexFrom;           // the first number "index" gives; no number counts as 0
    bool deleteSongs = false;    // empty the table song first (no index check then)
    bool deleteSingers = false;  // empty the table singer first (no name check then)
    QString remark;              // when not empty, the remark of every new row; cut to 255 characters
    AccessReadOptions access;    // how a legacy Access source is read
};

struct SongbookImportResult {
    qint64 songs = 0;          // rows added to song
    qint64 singers = 0;        // rows added to singer
    qint64 sourceSongs = 0;    // rows of the source's song table
    qint64 sourceSingers = 0;  // rows of the source's singer table
    bool songCrash = false;    // the index check found a crash: nothing was imported
    bool singerCrash = false;  // the name check found a crash
    bool closed = false;       // the closing message was shown
};

// The index bounds of a songbook's config (MinIndex 1000 and MaxIndex 999999 when unset).
long long ConfigMinIndex(Connection& db);
long long ConfigMaxIndex(Connection& db);

// The wizard's defaults, from the application INI: ImportIndex and ImportIndexFrom (shared with the
// library import), ImportDeleteSong, ImportDeleteSinger. Source and remark are left for the caller.
SongbookImportSettings DefaultSongbookImportSettings(long long minIndex);
void SaveSongbookImportDefaults(const SongbookImportSettings& settings);

// The source the wizard proposes: song.db beside the database in use, the file an upgrade leaves.
QString DefaultImportSource(const QString& databaseFile);
// The remark the wizard offers is LibraryImportRemark's: "Import from <source> at <yyyy-MM-dd>".

// The songbook import of the wizard and of tunedesk-admin "import": asks whether to import from the
// source, then moves first all songs, then all singers into the database db (the file databaseFile),
// with the old column names of earlier versions mapped to today's. Rows are written one at a time, so
// a stop or a failure keeps what was added. Ends with "<n> songs and <m> singers imported to
// songbook!" once the source was opened.
SongbookImportResult ImportSongbook(Connection& db, const SongbookImportSettings& settings, JobHost& host);

}  // namespace td
