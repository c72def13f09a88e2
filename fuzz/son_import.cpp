// A library's song information files (.son) read by the library import into the songbook.
#include "exchange/LibraryImport.h"
#include "fuzz/FuzzSupport.h"
#include "fuzz/FuzzTargets.h"
#include "songdb/Connection.h"
#include "songdb/Recordset.h"

namespace td::fuzz {

int FuzzSonImport(const uint8_t* data, size_t size)
{
    ClearFolder(QStringLiteral("library"));
    WriteFile(QStringLiteral("library/Pop/0001.dat.son"), Input(data, size));
    Connection& db = SongDatabase();
    LibraryImportSettings settings;
    settings.library = WorkDir() + QStringLiteral("/library");
    settings.regions = {QStringLiteral("English"), QStringLiteral("Chinese(PRC)"), QString()};
    settings.indexClass = QStringLiteral("import");
    settings.checkIndex = true;
    YesJobHost host;
    const LibraryImportResult result = ImportLibrary(db, settings, host);
    Expect(result.added <= qint64(settings.regions.size()), "one file adds at most one song per region");
    const auto rows = db.openRecordset(QStringLiteral("select count(*) from song"));
    Expect(rows->Fields(0).Value().toLongLong() == result.added, "every song counted as added is in the songbook");
    return 0;
}

}  // namespace td::fuzz
