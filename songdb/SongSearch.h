#pragma once
#include "shell/services/TextArray.h"
#include "songdb/Recordset.h"
#include <QString>
#include <array>

namespace td {

// The search tree of the songbook: given a node (path) and a value, the items of that node with
// display names and keys (first at 1). Answers the item count, 0 for none, -1 when a statement failed.
// The path "pinyin" lists the songs whose title reads in pinyin as the value begins (SongReadings.h);
// the root leaves it out, and the songbook offers it after the root's types.
int SongSearchTree(int grade, const QString& path, const QString& value, TextArray& names, TextArray& keys);

// The values offered when a search type is chosen (the tree's node of that type with no value),
// split for a read elsewhere: the statement (empty where the list needs none, as for song and chars,
// whose list SongSearchTree gives at once), its rows as names and keys, and the messages of a failure.
QString SearchTypeValuesStatement(int grade, const QString& code);
int SearchTypeValuesFromRows(const QString& code, const Recordset& rs, TextArray& names, TextArray& keys);
void ReportSearchTypeValuesFailure(const QString& code, const QString& sql, const QString& description);

// Brings the pinyin readings of the open songbook's titles up to date before a pinyin search; a
// failure shows its message and answers false.
bool BringSongReadingsUpToDate();

// Caption of a search type key, through TranslateText; empty for an unknown key.
QString SearchTypeCaption(const QString& key);

// The condition on titles (or singer names, in a singer mode) for letters typed on a keypad: a
// prefix with "?" as wildcard, or in the Chinese modes one test per character on its pinyin initial.
// Empty, or text beginning with " and (" or " And ".
QString AlphabetCondition(const QString& value);

// The region names, each in single quotes, joined with ",".
QString GetRegionList();

// The non-empty conditions from 1 to the upper bound, joined with " and ".
QString JoinConditions(const TextArray& conditions);

// Module state of the search. Filter slots 1 to 10 are in use where their value is not empty.
QString& SearchMode();
std::array<QString, 11>& SearchFilterField();
std::array<QString, 11>& SearchFilterValue();

}  // namespace td
