#include "controls/RecordErrors.h"
#include "songdb/Connection.h"
#include "songdb/SongSession.h"

namespace td {

std::unique_ptr<Recordset> OpenSongRecordset(const QString& sql)
{
    Connection* db = SongConnection();
    if (!db)
        throw AppError(QStringLiteral("Operation is not allowed when the object is closed."));
    return db->openRecordset(sql);
}

}  // namespace td
