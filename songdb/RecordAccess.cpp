#include "songdb/RecordAccess.h"
#include "shell/services/AppError.h"
#include "shell/services/Dialogs.h"
#include "shell/services/FilePaths.h"
#include "songdb/SongStatements.h"
#include "songdb/StoreLog.h"
#include <QFile>
#include <QSaveFile>
#include <algorithm>
#include <cmath>

namespace td {

namespace {
constexpr qsizetype kSaveBlock = 100000;

bool selectsAll(const QString& where)
{
    return where.isEmpty() || where == u"all";
}

// A read of exactly size bytes; past the end of the file the rest stays zero.
QByteArray readPadded(QFile& file, qsizetype size)
{
    QByteArray bytes(size, '\0');
    const qint64 got = file.read(bytes.data(), size);
    if (got < 0)
        throw AppError(file.errorString());
    return bytes;
}
}  // namespace

QString SongRecordsetSql(const QString& fields, const QString& table, const QString& where,
                         const QString& order)
{
    QString sql = fields.isEmpty() || fields == u"*" ? QStringLiteral("select * ")
                                                     : QStringLiteral("select ") + fields + u' ';
    // Cuts at the word's last letter, so a caller's "where x" leaves "e x" and fails; callers never pass it.
    const QString condition = where.left(5).toLower() == u"where" ? where.mid(4) : where;
    sql += QStringLiteral("from ") + table;
    if (!selectsAll(condition))
        sql += QStringLiteral(" where ") + condition;
    if (!order.isEmpty())
        sql += QStringLiteral(" order by ") + order;
    return sql;
}

bool SongGetRecordset(const QString& fields, const QString& table, const QString& where, const QString& order,
                      std::unique_ptr<Recordset>& rs)
{
    const QString sql = SongRecordsetSql(fields, table, where, order);
    // The one message of a failure names this helper, not the statement runner.
    return OpenRecordsetReported("SongGetRecordset", sql, rs);
}

QString SongNamesFromFieldSql(const QString& table, const QString& field, const QString& where)
{
    QString sql = QStringLiteral("select distinct [") + field + QStringLiteral("] from ") + table;
    if (!selectsAll(where))
        sql += QStringLiteral(" where ") + where;
    return sql + QStringLiteral(" order by [") + field + u']';
}

void NamesFromFirstField(const Recordset& rs, TextArray& names)
{
    names = NewTextArray();
    for (qsizetype i = 0; i < rs.RecordCount(); ++i)
        if (!rs.isNull(i, 0))
            AppendItem(names, rs.text(i, 0));
}

void ReportNamesFromFieldFailure()
{
    MsgError(QStringLiteral("SongGetNamesFromField failed! ") + ErrSuffix(SongLastError()));
}

bool SongGetNamesFromField(const QString& table, const QString& field, const QString& where, TextArray& names)
{
    names = NewTextArray();
    std::unique_ptr<Recordset> rs;
    if (!SongOpenRecordset(SongNamesFromFieldSql(table, field, where), rs)) {
        ReportNamesFromFieldFailure();
        return false;
    }
    NamesFromFirstField(*rs, names);
    rs->Close();
    return true;
}

bool WriteImageFile(Recordset& rs, const QString& path)
{
    const qsizetype length = qsizetype(rs.Fields(QStringLiteral("image_len")).Value().toLongLong());
    if (length <= 0)
        return false;
    // The file is replaced only once it is whole: a failed write leaves the old one as it was.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw AppError(file.errorString());
    // Read once and written once: chunk by chunk, a photograph of many megabytes took minutes.
    const QByteArray image = rs.Fields(QStringLiteral("image")).Value().toByteArray();
    file.write(image.constData(), std::min(length, image.size()));
    if (!file.commit())
        throw AppError(file.errorString());
    return true;
}

bool LoadImageField(Recordset* rs, const QString& path)
{
    if (!rs)
        return false;
    try {
        return WriteImageFile(*rs, path);
    } catch (const std::exception& e) {
        MsgError(QStringLiteral("Load image failed. ") + ErrSuffix(e));
        return false;
    }
}

// The field is filled as the photograph store always did: rest + 1 bytes, then whole blocks of
// block + 1 bytes, zero-padded; image_len tells where the photograph ends.
void StoreImageFile(Recordset& rs, const QString& path)
{
    try {
        const Field image = rs.Fields(QStringLiteral("image"));
        const Field length = rs.Fields(QStringLiteral("image_len"));
        if (path.isEmpty()) {
            image.AppendChunk(QByteArray());
            length.setValue(0);
        } else {
            QFile file(path);
            if (!file.open(QIODevice::ReadOnly))
                throw AppError(file.errorString());
            const qint64 size = file.size();
            if (size >= 1) {
                // The blocks are gathered first and appended once, so a big photograph is not copied
                // again at every block.
                const auto blocks = qint64(std::nearbyint(double(size) / double(kSaveBlock)));
                QByteArray padded = readPadded(file, qsizetype(size % kSaveBlock) + 1);
                padded.reserve(padded.size() + qsizetype(blocks) * (kSaveBlock + 1));
                for (qint64 b = 1; b <= blocks; ++b)
                    padded += readPadded(file, kSaveBlock + 1);
                image.AppendChunk(padded);
                length.setValue(size);
            }
        }
        rs.Update();
    } catch (const std::exception&) {
        try {
            rs.CancelUpdate();
        } catch (const std::exception& undo) {
            qCWarning(lcStore) << "edit not cancelled after a failed image save:" << ErrorText(undo);
        }
        throw;
    }
}

bool SaveImageField(Recordset* rs, const QString& path)
{
    if (!rs)
        return false;
    try {
        StoreImageFile(*rs, path);
        return true;
    } catch (const std::exception& e) {
        MsgError(QStringLiteral("Save image failed. ") + ErrSuffix(e));
        return false;
    }
}

}  // namespace td
