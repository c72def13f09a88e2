// The GB2312 collation of the song tables as a loadable SQLite extension, so that the sqlite3
// command-line program can write rows into a song database (".load" this module first).
#include "songdb/Gb2312Order.h"
#include <sqlite3.h>

// The program and this module share the one libsqlite3 of the process, so the collation is
// registered through the ordinary API.
extern "C" int sqlite3_extension_init(sqlite3* db, char**, const sqlite3_api_routines*)
{
    return td::RegisterGb2312Collation(db) ? SQLITE_OK : SQLITE_ERROR;
}
