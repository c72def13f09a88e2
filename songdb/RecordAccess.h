#pragma once
#include "shell/services/TextArray.h"
#include "songdb/Recordset.h"
#include <QString>
#include <memory>

namespace td {

// "select <fields> from <table> [where <where>] [order by <order>]": fields "*" or empty select
// all; a where of "all" or empty selects every row.
QString SongRecordsetSql(const QString& fields, const QString& table, const QString& where,
                         const QString& order);
// Opens that statement through SongOpenRecordset.
bool SongGetRecordset(const QString& fields, const QString& table, const QString& where, const QString& order,
                      std::unique_ptr<Recordset>& rs);
// The distinct non-NULL values of a field, sorted, as a text array from 1.
bool SongGetNamesFromField(const QString& table, const QString& field, const QString& where,
                           TextArray& names);
// Its statement, its rows as names, and its message after a failed statement, for a read elsewhere.
QString SongNamesFromFieldSql(const QString& table, const QString& field, const QString& where);
void NamesFromFirstField(const Recordset& rs, TextArray& names);
void ReportNamesFromFieldFailure();

// Writes the photograph of the current row (image, image_len bytes of it) to a file.
bool LoadImageField(Recordset* rs, const QString& path);
// Puts a file into image and image_len of the current row being edited or added, and updates it.
bool SaveImageField(Recordset* rs, const QString& path);
// The same two without their message box, for jobs off the interface thread: they throw instead. The
// file is replaced only once it is whole; WriteImageFile answers false for a row without a photograph.
bool WriteImageFile(Recordset& rs, const QString& path);
void StoreImageFile(Recordset& rs, const QString& path);

}  // namespace td
