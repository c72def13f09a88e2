#pragma once
#include "songdb/Recordset.h"
#include <QString>
#include <exception>
#include <memory>

namespace td {

// The two lowest operations on the song database and the configuration store on top of them.
// Failures show one critical message and answer false (or the default); none of them throws.
bool SongOpenRecordset(const QString& sql, std::unique_ptr<Recordset>& rs);
bool SongExecute(const QString& sql);
// Opens a recordset as SongOpenRecordset does; a failure is shown as "<name> failed! Err=...".
bool OpenRecordsetReported(const char* name, const QString& sql, std::unique_ptr<Recordset>& rs);
// Makes a failure of that statement the pending error and shows it as those helpers do.
void ReportStatementFailure(const char* name, const QString& sql, const QString& description);
QString SongReadValue(const QString& section, const QString& key, const QString& def);
bool SongWriteValue(const QString& section, const QString& key, const QString& value);

// The description of the last failure of a song database operation (the pending error that the
// next message shows after " Err="); empty when the last operation succeeded.
QString SongLastError();
void SetSongLastError(const QString& description);

}  // namespace td
