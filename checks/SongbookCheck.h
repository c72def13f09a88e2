#pragma once
#include "shell/services/JobHost.h"
#include <QString>
#include <QStringList>
#include <functional>

namespace td {

class Connection;

// Where the checks write their reports and how a report with something to show is shown: the console
// hands it to the text editor, tunedesk-admin names it.
struct CheckSettings {
    QString reportDir;
    std::function<void(const QString& report)> showReport;
};

// What one check did; errors are the libraries or songs found wanting.
struct CheckOutcome {
    bool ran = false;      // the operator said yes to the opening question
    bool stopped = false;  // cancelled or stopped after a failure
    qint64 errors = 0;
    QString report;        // the report's path, once created
};

QString CheckLibraryReport(const QString& dir);
QString CheckSongReport(const QString& dir);
QString IsolatedMediaReport(const QString& dir);

// The jobs of the songbook check, each on a connection of its own. Each asks before it begins, reports to
// its file beside the program and shows the report when it found something.

// Whether every library's root directory is there.
CheckOutcome CheckLibraries(Connection& db, const CheckSettings& settings, JobHost& host);
// Whether every song's media file is there; a song without one gets the remark
// "Error - media file missing", written at once.
CheckOutcome CheckSongs(Connection& db, const CheckSettings& settings, JobHost& host);

// The media files in the libraries that no song refers to, as full paths, reported in
// IsolatedMedia.log. The patterns are the songbook's FileType.
QStringList SearchIsolatedMedias(Connection& db, const CheckSettings& settings, JobHost& host);
// Adds a song for every isolated media file; answers the songs added.
qint64 AddIsolatedMedias(Connection& db, const CheckSettings& settings, JobHost& host);
// Deletes the isolated media files from the disk; answers the files deleted.
qint64 DeleteIsolatedMedias(Connection& db, const CheckSettings& settings, JobHost& host);

// The media file patterns of the songbook, "*.vob;*.dat;*.mp3;*.avi" when it names none.
QString MediaFileTypes(Connection& db);

}  // namespace td
