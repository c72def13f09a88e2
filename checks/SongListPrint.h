#pragma once
#include "checks/PrintList.h"
#include "checks/SongListLayout.h"
#include "shell/services/JobHost.h"
#include <QList>
#include <QStringList>

namespace td {

class Connection;

// What the printing wizard hands to the job.
struct SongListRequest {
    PrintChoice choice;
    QStringList captions;  // of choice.fields, in the same order: the heads of row 1
    QString templateFile;  // PrintTemplate.ini beside the program
    QString workbook;      // SongList.xlsx beside the program, replaced
    bool keepRows = true;  // keep the cell texts for the printed pages
};

struct SongList {
    bool written = false;  // the workbook was made (possibly with the rows up to a cancel)
    qint64 songs = 0;      // rows of the statement
    QStringList captions;
    QList<QStringList> rows;  // the cell texts, when kept
    SongListLayout layout;
};

// The ADO type code of each field of song, from the row the window opens for it.
std::function<int(const QString&)> SongFieldTypes(Connection& db);

// The song list of the printing wizard and of tunedesk-admin "print": runs the statement of the choice,
// asks whether to print so many songs, and writes the workbook: row 1 the captions, then one row per
// song with one cell per selected field (numbers as numbers, NULL as an empty cell), laid out by the
// template. A cancel keeps the rows written so far.
SongList MakeSongList(Connection& db, const SongListRequest& request, JobHost& host);

}  // namespace td
