#pragma once
#include "shell/services/JobHost.h"
#include <QString>
#include <QStringList>

namespace td {

class Connection;

// What the library import wizard hands to the import: the choices of its window.
struct LibraryImportSettings {
    QString library;           // the library's root_path, as stored; every new song gets it
    QStringList regions;       // the sections to read, top to bottom; "" reads "[]" (songs without a region)
    QString indexClass;        // "import" (the file's index), "index" (numbered from indexFrom) or "blank"
    QString indexFrom;         // the number before the first one "index" gives; no number counts as 0
    bool checkIndex = true;    // test the indexes against the songbook before anything is added
    QString remark;            // when not empty, the remark of every new song
};

struct LibraryImportResult {
    qint64 files = 0;    // song information files found
    qint64 added = 0;    // rows added to the table song
    bool crashed = false;  // the index check found a crash, so nothing was imported
    bool closed = false;   // the closing message was shown
};

// The wizard's defaults, from the application INI: ImportIndex, ImportIndexFrom (the minimum index
// when unset), CheckIndex. Regions and library are left for the caller.
LibraryImportSettings DefaultLibraryImportSettings(long long minIndex);
void SaveLibraryImportDefaults(const LibraryImportSettings& settings);

// The remark the wizard offers: "Import from <library> at <yyyy-MM-dd>".
QString LibraryImportRemark(const QString& library);

// The library import of the wizard and of tunedesk-admin "library import": finds every .son file
// below the library's root, asks whether to go on, tests the indexes when asked to, then adds one
// row of song for every file and chosen region that holds an index, on its own connection db. Rows
// are written one at a time, so a cancel or a failure keeps what was added. Ends with the message
// "<n>song(s) imported to songbook successfully!" once it has reached the import or a crash question
// was cancelled.
LibraryImportResult ImportLibrary(Connection& db, const LibraryImportSettings& settings, JobHost& host);

}  // namespace td
