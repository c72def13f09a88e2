#pragma once

struct sqlite3;

namespace td {

// Jet functions that SQLite lacks or does differently, registered on every connection:
// td_ucase is UCASE, upper case for every script (SQLite's upper knows only ASCII).
// The td_char functions test the character at a position pos (from 1) of a text x, with the
// result (NULL for a NULL x) of the Jet comparisons they stand for, where M is Mid(x,pos,1):
//   td_char_in(x, pos, lo, hi)                M>=lo And M<hi; with hi NULL, M>=lo alone
//   td_char_upper_is(x, pos, c)               UCASE(M)=c
//   td_char_in_or_upper_is(x, pos, lo, hi, c) the two joined by "or"
// lo, hi and c are texts and compare in GB2312 order. One call reads the character once and
// converts nothing, where the comparisons themselves cut and convert it for each.
bool RegisterJetFunctions(sqlite3* db);

}  // namespace td
