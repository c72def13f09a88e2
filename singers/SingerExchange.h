#pragma once
#include "shell/services/JobHost.h"
#include <QByteArray>
#include <QString>

namespace td {

class Connection;

// What one exchange did; closed once its closing message was shown.
struct SingerExchangeResult {
    qint64 exported = 0;  // singers written to the folder
    qint64 infos = 0;     // information files read
    qint64 images = 0;    // photographs stored
    bool closed = false;
};

// <program dir>/Singer, the one folder singers are exchanged through.
QString SingerFolder();

// The file name a singer is kept under: "/", "\", "|", ":", "?", "*" become "&", "<", ">" and the
// double quote go. The singer a file name stands for: the name up to its first ".", each "&" a "/".
QString SingerFileName(const QString& name);
QString SingerNameOfFile(const QString& file);

// True when the bytes begin as a JPEG picture does and the file ends with the picture's end mark
// (trailing padding allowed), so a PNG, an empty or a cut-off file is told apart from a photograph.
bool IsJpegFile(const QString& path);

// Writes every singer with a name to folder: NAME.jpg with the photograph, NAME.inf with Type,
// Description and remark under [Default]. Asks before it starts and before it creates the folder;
// a folder it cannot write to is refused before anything is written. Each file is replaced only
// once it is whole. Ends with "<n> singer(s) exported!".
SingerExchangeResult ExportSingers(Connection& db, const QString& folder, JobHost& host);

// Reads every NAME.inf of folder into the singer of that name (added when missing), then every
// NAME.jpg as its photograph (a singer is added for a photograph alone). A .jpg that is no JPEG is
// reported and passed over, so no singer is made or changed for it. Ends with "<i> singers'
// information and <p> singers' image imported!".
SingerExchangeResult ImportSingers(Connection& db, const QString& folder, JobHost& host);

}  // namespace td
