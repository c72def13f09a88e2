#pragma once

struct sqlite3;

namespace td {

// Jet functions that SQLite lacks or does differently, registered on every connection:
// td_ucase is UCASE, upper case for every script (SQLite's upper knows only ASCII).
bool RegisterJetFunctions(sqlite3* db);

}  // namespace td
