#pragma once
#include "booklet/BookletPages.h"
#include "shell/services/JobHost.h"

namespace td {

class Connection;

// The songs a booklet lists, as a statement: those of the region, or with no region chosen those of
// the available regions and those without a region, as the songbook shows them.
QString BookletStatement(const QString& region);

// The songs of the statement, read at once.
QList<BookletSong> ReadBookletSongs(Connection& db, const QString& region);

// The booklet's groups, read and sorted as a job (the reading is the long part).
QList<BookletSection> ReadBookletSections(Connection& db, const BookletOptions& options, JobHost& host);

struct BookletOutcome {
    qint64 songs = 0;
    int pages = 0;
    bool written = false;
};

// The booklet of the window and of tunedesk-admin "booklet": reads and groups the songs and writes the
// PDF, a page at a time with the progress; a cancel leaves no file.
BookletOutcome MakeBookletPdf(Connection& db, const BookletOptions& options, const QString& pdf,
                              JobHost& host);

// The window's choices in the application INI (Booklet* keys of section Default).
BookletOptions LoadBookletOptions();
void SaveBookletOptions(const BookletOptions& options);

}  // namespace td
