#pragma once
// The song and singer tables of an earlier version's Access songbook, under that version's column
// names, and a generated song for the large ones.
#include "MdbWriter.h"

namespace td::test {

// id, Index, Name, Chars, Singer, Language, Style, Grade, Channel, OrderTimes, Region, MediaFile,
// LibraryLocalPath, lupd_by, lupd_time, Remark (a memo).
std::vector<JetColumn> LegacySongColumns();
// Name, Male, Female, region, Image, ImageLen, Description (a memo), Remark.
std::vector<JetColumn> LegacySingerColumns();

// Song number i of a generated songbook: index 1000 + i, a Chinese title, every column filled.
QVariantList LegacySongRow(qsizetype i);

// A songbook file with the generated songs 0 .. songs - 1 and no singer.
bool WriteLegacySongbook(const QString& path, const JetFileOptions& options, qsizetype songs,
                         QString* error = nullptr);

}  // namespace td::test
