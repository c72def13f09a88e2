#pragma once
#include "songdb/Connection.h"
#include <QString>
#include <memory>

namespace td {

// The process-wide session on the song database. SongDatabaseOpen is true exactly while a
// validated database is open (and while its format and version questions are asked).
bool SongDatabaseOpen();
QString SongServerHost();
QString SongDatabaseFile();
// The song database connection, or nullptr when none was ever opened.
Connection* SongConnection();

// Finds the database through KtvPublic/database_home.ini, opens and validates it, asking through
// the dialog seam; answers true when a song database is open.
bool SongOpenDatabase();
// Closes the connection and clears the session; safe at any time. Always true.
bool SongCloseDatabase();

// Another database by path (an export target, an import source): nullptr with a message when the
// file is missing; a closed connection, without a message, when the store refuses it.
std::unique_ptr<Connection> OpenAccessDatabase(const QString& path, const QString& password);

// Reads (write false) or writes the Local path of a server kind in KtvPublic/database_home.ini.
// A path inside the program directory is stored relative to it, as "./" and the rest, and reads
// back whole; a stored "\rest" (from a Windows installation) is relative too.
QString DatabaseHomePath(const QString& dbType, QString& path, bool write);

// The computer that holds a file: the host of a share path, of a path under NetworkRoot, or of a
// postgresql:// address; otherwise this computer.
QString GetServerHost(const QString& path);

}  // namespace td
