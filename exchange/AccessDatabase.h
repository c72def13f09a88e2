#pragma once
#include "songdb/Connection.h"
#include <QString>
#include <memory>

namespace td {

// The password of every song database; a legacy Access songbook that carries another is refused.
inline const QString kSongDatabasePassword = QStringLiteral("36281947");

// How the texts of a legacy Access file are read.
struct AccessReadOptions {
    enum class Gbk { CodePage, Yes, No };
    // Jet 3 files keep text in a code page: GBK when asked, the file's own code page by default.
    // Jet 4 text is Unicode and needs no choice.
    Gbk gbk = Gbk::CodePage;
};

// True when the file starts as a Jet 3 or Jet 4 database does.
bool IsAccessFile(const QString& path);

// A file opened as an import source, read-only: a SQLite song database, or a legacy Access .mdb
// (Jet 3 or Jet 4) whose tables can be read with "select * from <table>". A file the store refuses
// (not a database, cut short, another password) gives a closed connection whose first statement
// fails with the reason; nullptr when the file is missing.
std::unique_ptr<Connection> OpenAccessDatabase(const QString& path, const QString& password,
                                               const AccessReadOptions& options);

// What the file says about itself: its Jet version (3 or 4; 0 when it is no Access file) and code page.
struct AccessFileInfo {
    int jetVersion = 0;
    int codePage = 0;
};
AccessFileInfo ReadAccessFileInfo(const QString& path);

}  // namespace td
