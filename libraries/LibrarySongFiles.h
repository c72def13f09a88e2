#pragma once
#include "shell/services/JobHost.h"
#include <QHash>
#include <QString>
#include <QStringList>

namespace td {

class Connection;
class Recordset;

// The hidden marks of song information files, set folder by folder: a folder holding thousands of
// songs would otherwise have its hidden list read and rewritten once per song. Marks still pending
// are set when the object goes away.
class HiddenMarks {
public:
    HiddenMarks() = default;
    HiddenMarks(const HiddenMarks&) = delete;
    HiddenMarks& operator=(const HiddenMarks&) = delete;
    ~HiddenMarks();

    void add(const QString& path);
    // Sets every pending mark; answers the folders whose list could not be written.
    QStringList flush();
    qsizetype pending() const { return pending_; }

private:
    QHash<QString, QStringList> byFolder_;  // names in the order written
    qsizetype pending_ = 0;
};

// The song information file of a media file: the library's root, its media_file below it, ".son".
QString SongInfoPath(const QString& library, const QString& mediaFile);

// Writes the current row of a recordset on the table song into the section of its region of the
// song information file beside its media file; a missing media file writes nothing and answers true.
// Throws AppError when the file cannot be read or written.
void WriteSongInfo(Recordset& rs, HiddenMarks& marks);

// WriteSongInfo that reports a failure as the console does, "SetSongInfoToLibrary failed. Err = ...",
// and answers false.
bool SetSongInfoToLibrary(Recordset& rs, JobHost& host, HiddenMarks& marks);
bool SetSongInfoToLibrary(Recordset& rs, JobHost& host);

// The library manager's "update library" for one library, and tunedesk-admin's "library update":
// asks whether to go on, writes the song information file of every song whose library is rootPath in
// one pass over one recordset, asks after each failed song whether to go on, looks at the cancel button
// after each song, and writes ktvlibrary.ini when the pass reaches the end. Works on its own
// connection db. Answers true only when the pass reached the end.
struct LibraryUpdate {
    bool completed = false;
    qint64 updated = 0;  // songs done, those without a media file included
};
LibraryUpdate UpdateLibrary(Connection& db, const QString& rootPath, JobHost& host);

// Gives a library an empty database of its own: library.db in its root, copied from default.db beside
// the program, hidden, with the tables song and singer of the open song database and no rows.
bool CreateLibraryDatabase(const QString& rootPath);

}  // namespace td
