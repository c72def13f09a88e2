// The songbook exchange: importing another songbook (a song database or a legacy Access .mdb), and
// exporting this one to song.db.
#include "exchange/AccessDatabase.h"
#include "exchange/LibraryImport.h"
#include "exchange/SongbookExport.h"
#include "exchange/SongbookImport.h"
#include "shell/services/AppError.h"
#include "songdb/Connection.h"
#include "tools/admin/AdminCommand.h"
#include "tools/admin/ImportHost.h"
#include <QFileInfo>

namespace td::admin {
namespace {

AccessReadOptions::Gbk gbkOption(const QString& value)
{
    if (value.isEmpty())
        return AccessReadOptions::Gbk::CodePage;
    if (value == u"yes")
        return AccessReadOptions::Gbk::Yes;
    if (value == u"no")
        return AccessReadOptions::Gbk::No;
    throw Failure{QStringLiteral("--gbk needs yes or no")};
}

bool sameFile(const QString& a, const QString& b)
{
    return QFileInfo(a).canonicalFilePath() == QFileInfo(b).canonicalFilePath();
}

// A source that is empty, no database or too damaged to list its songs is refused in one line before
// the import starts, rather than failing once for its songs and once more for its singers.
void expectReadableSource(const QString& source)
{
    if (QFileInfo(source).size() == 0)
        throw Failure{QStringLiteral("not a songbook, the file is empty: ") + source};
    auto db = OpenAccessDatabase(source, kSongDatabasePassword, AccessReadOptions{});
    // An open Access file is left to the import: it can only be read a whole table at a time.
    if (db && (!db->isOpen() || !IsAccessFile(source)))
        db->openRecordset(QStringLiteral("select count(*) from song"));
}

// Imports the songs and singers of SOURCE into the songbook DB as the songbook import wizard does
// with its saved defaults; the options stand in for the wizard's choices.
int importBook(QStringList args)
{
    const QString indexClass = option(args, QStringLiteral("--index"), {}).toLower();
    const QString from = option(args, QStringLiteral("--from"), {});
    const QString remark = option(args, QStringLiteral("--remark"), {});
    const QString gbk = option(args, QStringLiteral("--gbk"), {}).toLower();
    const bool deleteSongs = flag(args, QStringLiteral("--delete-songs"));
    const bool deleteSingers = flag(args, QStringLiteral("--delete-singers"));
    expectArgs(args, 2, 2);
    auto db = openExisting(args[0]);
    if (!QFileInfo(args[1]).isFile())
        throw Failure{QStringLiteral("no such source file: ") + args[1]};
    if (sameFile(args[0], args[1]))
        throw Failure{QStringLiteral("Can not import from current database!")};
    expectReadableSource(args[1]);
    SongbookImportSettings settings = DefaultSongbookImportSettings(ConfigMinIndex(*db));
    settings.source = args[1];
    if (!indexClass.isEmpty())
        settings.indexClass = indexClass;
    if (settings.indexClass != u"import" && settings.indexClass != u"index" && settings.indexClass != u"blank")
        throw Failure{QStringLiteral("--index needs import, index or blank")};
    if (!from.isEmpty())
        settings.indexFrom = from;
    settings.deleteSongs = settings.deleteSongs || deleteSongs;
    settings.deleteSingers = settings.deleteSingers || deleteSingers;
    settings.remark = remark.isEmpty() ? LibraryImportRemark(settings.source) : remark;
    settings.access.gbk = gbkOption(gbk);
    ImportToTheEnd host;
    const SongbookImportResult result = ImportSongbook(*db, settings, host);
    if (result.songCrash)
        throw Failure{QStringLiteral("nothing imported: song indexes crashed")};
    return host.failures() == 0 ? 0 : kUsageError;
}

// Writes the songs and singers of DB to a new songbook TARGET (song.db beside DB when not given),
// replacing an earlier export there.
int exportBook(QStringList args)
{
    expectArgs(args, 1, 2);
    auto db = openExisting(args[0]);
    const QString target = args.size() > 1 ? args[1] : DefaultExportTarget(QFileInfo(args[0]).absoluteFilePath());
    RunToTheEnd host;
    const SongbookExportResult result = ExportSongbook(*db, args[0], target, host);
    return result.done ? 0 : kUsageError;
}

const CommandRegistration importCommand(
    "import",
    "import DB SOURCE [--index import|index|blank] [--from N] [--delete-songs] [--delete-singers] "
    "[--remark TEXT] [--gbk yes|no]",
    importBook);
const CommandRegistration exportCommand("export", "export DB [TARGET]", exportBook);

}  // namespace
}  // namespace td::admin
