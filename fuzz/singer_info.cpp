// The singer exchange folder: NAME.inf with a singer's Type, description and remark, NAME.jpg with the
// photograph, both as other consoles or people leave them.
#include "fuzz/FuzzSupport.h"
#include "fuzz/FuzzTargets.h"
#include "singers/SingerExchange.h"
#include "songdb/Connection.h"
#include "songdb/Recordset.h"

namespace td::fuzz {

int FuzzSingerInfo(const uint8_t* data, size_t size)
{
    const QByteArray bytes = Input(data, size);
    ClearFolder(QStringLiteral("Singer"));
    WriteFile(QStringLiteral("Singer/A&B Band.inf"), bytes);
    WriteFile(QStringLiteral("Singer/A&B Band.jpg"), bytes);
    Connection& db = SongDatabase();
    YesJobHost host;
    const SingerExchangeResult result = ImportSingers(db, SingerFolder(), host);
    Expect(result.infos == 1, "the one information file is read");
    Expect(result.images == (IsJpegFile(SingerFolder() + QStringLiteral("/A&B Band.jpg")) ? 1 : 0),
           "a photograph is stored exactly when it is a JPEG picture");
    const auto rows = db.openRecordset(QStringLiteral("select name from singer"));
    Expect(rows->RecordCount() <= 1, "one name makes at most one singer");
    return 0;
}

}  // namespace td::fuzz
