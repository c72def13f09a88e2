// The library jobs: writing a library's song information files, importing a library into a songbook.
#include "exchange/LibraryImport.h"
#include "libraries/FileFinder.h"
#include "libraries/LibrarySongFiles.h"
#include "shell/services/AppPaths.h"
#include "shell/services/AppError.h"
#include "shell/services/Translate.h"
#include "songdb/Connection.h"
#include "songdb/SongStatements.h"
#include "tools/admin/AdminCommand.h"
#include "tools/admin/ImportHost.h"

namespace td::admin {
namespace {

// Writes the song information files and ktvlibrary.ini of the library whose root_path is ROOT, as the
// library manager's "update library" does.
int libraryUpdate(const QStringList& args)
{
    expectArgs(args, 2, 2);
    auto db = openExisting(args[0]);
    const QString root = args[1];
    QString quoted = root;
    quoted.replace(u'\'', QStringLiteral("''"));
    if (db->openRecordset(QStringLiteral("select root_path from library where root_path='") + quoted + u'\'')
            ->RecordCount() == 0)
        throw Failure{QStringLiteral("no library with root_path ") + root};
    RunToTheEnd host;
    UpdateLibrary(*db, root, host);
    return host.failures() == 0 ? 0 : kUsageError;
}

QString configValue(Connection& db, const QString& key, const QString& def)
{
    auto rs = db.openRecordset(QStringLiteral("select [value] from config where [section]='Default' and [key]='") +
                               key + u'\'');
    return rs->RecordCount() >= 1 ? rs->Fields(0).Text() : def;
}

// The regions whose language is installed beside the program, as the wizard lists them.
QStringList interfaceRegions()
{
    TextArray folders;
    int attributes = ATTR_DIRECTORY;
    FindFileNames(AppPath() + QStringLiteral("/Region"), QStringLiteral("*.*"), 0, folders, attributes);
    QStringList names;
    for (int i = 1; i <= UBound(folders); ++i)
        if (!GetRegionFile(folders[i]).isEmpty())
            names << folders[i];
    return names;
}

// Reads the song information files below ROOT into the songbook FILE, as the library import wizard
// does with its defaults: every region that has a song file section, songs without a region included,
// unless --region names the ones wanted ("" for songs without a region).
int libraryImport(QStringList args)
{
    QStringList regions;
    for (qsizetype i = args.indexOf(QStringLiteral("--region")); i >= 0;
         i = args.indexOf(QStringLiteral("--region")))
        regions << option(args, QStringLiteral("--region"), {});
    const QString indexClass = option(args, QStringLiteral("--index"), {}).toLower();
    const QString from = option(args, QStringLiteral("--from"), {});
    expectArgs(args, 2, 2);
    auto db = openExisting(args[0]);
    LibraryImportSettings settings =
        DefaultLibraryImportSettings(IntegerValue(configValue(*db, QStringLiteral("MinIndex"), QStringLiteral("1000"))));
    settings.library = args[1];
    if (!indexClass.isEmpty())
        settings.indexClass = indexClass;
    if (settings.indexClass != u"import" && settings.indexClass != u"index" && settings.indexClass != u"blank")
        throw Failure{QStringLiteral("--index needs import, index or blank")};
    if (!from.isEmpty())
        settings.indexFrom = from;
    if (regions.isEmpty()) {
        regions = interfaceRegions();
        regions << QString();
    }
    settings.regions = regions;
    settings.remark = LibraryImportRemark(settings.library);
    ImportToTheEnd host;
    const LibraryImportResult result = ImportLibrary(*db, settings, host);
    if (result.files == 0)
        throw Failure{QStringLiteral("no song information files below ") + settings.library};
    if (result.crashed)
        throw Failure{QStringLiteral("nothing imported: song indexes crashed")};
    return host.failures() == 0 ? 0 : kUsageError;
}

int library(QStringList args)
{
    const QString sub = args.value(0);
    if (!args.isEmpty())
        args.removeFirst();
    if (sub == u"update")
        return libraryUpdate(args);
    if (sub == u"import")
        return libraryImport(args);
    throw Failure{sub.isEmpty() ? QStringLiteral("library needs update or import")
                                : QStringLiteral("unknown library command ") + sub};
}

const CommandRegistration libraryCommand(
    "library", "library update FILE ROOT\nlibrary import FILE ROOT [--region R]... [--index import|index|blank] [--from N]",
    library);

}  // namespace
}  // namespace td::admin
