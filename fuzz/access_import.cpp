// A songbook brought from elsewhere: a legacy Access file (Jet 3 or Jet 4) or a SQLite song database,
// read by the songbook import.
#include "exchange/AccessDatabase.h"
#include "exchange/SongbookImport.h"
#include "fuzz/FuzzSupport.h"
#include "fuzz/FuzzTargets.h"
#include "songdb/Connection.h"

namespace td::fuzz {

int FuzzAccessImport(const uint8_t* data, size_t size)
{
    const QByteArray bytes = Input(data, size);
    // A SQLite file keeps its own name; everything else comes as a legacy songbook.
    const bool sqlite = bytes.startsWith(QByteArray("SQLite format 3\0", 16));
    ClearFolder(QStringLiteral("source"));
    const QString name = sqlite ? QStringLiteral("source/song.db") : QStringLiteral("source/song.mdb");
    const QString source = WriteFile(name, bytes);
    ReadAccessFileInfo(source);

    SongbookImportSettings settings;
    settings.source = source;
    settings.indexClass = QStringLiteral("import");
    YesJobHost host;
    const SongbookImportResult result = ImportSongbook(SongDatabase(), settings, host);
    Expect(result.songs <= result.sourceSongs, "no more songs are added than the source holds");
    Expect(result.singers <= result.sourceSingers, "no more singers are added than the source holds");
    return 0;
}

}  // namespace td::fuzz
