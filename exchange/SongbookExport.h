#pragma once
#include "shell/services/JobHost.h"
#include <QString>

namespace td {

class Connection;

struct SongbookExportResult {
    bool done = false;     // the target was written and read back
    qint64 songs = -1;     // rows read back from the target's song table
    qint64 singers = -1;   // rows read back from the target's singer table
};

// The export target the wizard writes: song.db beside the database in use.
QString DefaultExportTarget(const QString& databaseFile);

// The songbook export of the wizard and of tunedesk-admin "export": makes target from the empty
// template default.db beside the program and copies the tables song and singer of db (the file
// databaseFile) into it, then counts what arrived. A target that is the database in use is refused
// before anything is touched; an older target is replaced only when the host says OK.
SongbookExportResult ExportSongbook(Connection& db, const QString& databaseFile, const QString& target,
                                    JobHost& host);

}  // namespace td
