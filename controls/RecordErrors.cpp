#include "controls/RecordErrors.h"
#include "controls/ControlsLog.h"
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

void CancelPendingEdit(Recordset* rs)
{
    try {
        if (rs && rs->IsOpen() && rs->editMode() != Recordset::EditMode::None)
            rs->CancelUpdate();
    } catch (const std::exception& e) {
        qCWarning(lcControls) << "edit left pending after a failed write:" << ErrorText(e);
    }
}

}  // namespace td
