// Songbook files: create, demo, a statement, a search through the console's own tree.
#include "shell/services/AppPaths.h"
#include "shell/services/Ini.h"
#include "songdb/Connection.h"
#include "songdb/DemoSongbook.h"
#include "songdb/JetSql.h"
#include "songdb/Schema.h"
#include "songdb/SongSearch.h"
#include "songdb/SongSession.h"
#include "tools/admin/AdminCommand.h"
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

namespace td::admin {
namespace {

int create(QStringList args)
{
    const QString language = option(args, QStringLiteral("--language"), QStringLiteral("English"));
    const bool asTemplate = flag(args, QStringLiteral("--template"));
    expectArgs(args, 1, 1);
    if (asTemplate && IsServerAddress(args[0]))
        throw Failure{QStringLiteral("--template makes a file, not a database on a server")};
    if (asTemplate)
        CreateTemplateDatabase(args[0]);
    else
        CreateSongDatabase(args[0], language);
    return 0;
}

int demo(QStringList args)
{
    DemoOptions options;
    bool ok = false;
    options.songs = option(args, QStringLiteral("--songs"), QStringLiteral("300")).toInt(&ok);
    if (!ok || options.songs < 0)
        throw Failure{QStringLiteral("--songs needs a number of songs")};
    options.media = !flag(args, QStringLiteral("--no-media"));
    options.database = option(args, QStringLiteral("--database"), {});
    if (!options.database.isEmpty() && !IsServerAddress(options.database))
        throw Failure{QStringLiteral("--database needs a postgresql://user@host:port/dbname address")};
    expectArgs(args, 1, 1);
    print(CreateDemoSongbook(args[0], options));
    return 0;
}

int sql(QStringList args)
{
    expectArgs(args, 2, 2);
    auto db = openExisting(args[0]);
    // A statement without rows runs once and prints nothing; opening it as rows would fail after it ran.
    if (TranslateJetSql(args[1], db->backend().dialect()).kind != TranslatedStatement::Kind::Rows) {
        db->execute(args[1]);
        return 0;
    }
    auto rs = db->openRecordset(args[1]);
    QStringList header;
    for (int c = 0; c < rs->FieldCount(); ++c)
        header << rs->Column(c).name;
    print(header.join(u'\t'));
    for (qsizetype r = 0; r < rs->RecordCount(); ++r) {
        QStringList cells;
        for (int c = 0; c < rs->FieldCount(); ++c)
            cells << rs->text(r, c).replace(u'\t', u' ').replace(u'\n', u' ');
        print(cells.join(u'\t'));
    }
    return 0;
}

// Runs the tree on the file through the console's own opening, from a scratch program folder.
int search(QStringList args)
{
    expectArgs(args, 2, 3);
    const QString file = IsServerAddress(args[0]) ? args[0] : QFileInfo(args[0]).absoluteFilePath();
    // A damaged file fails here in one line, before the session's opening tells it in several.
    openExisting(file)->openRecordset(
        QStringLiteral("select [value] from config where [section]='Database' and [key]='Format'"));
    QTemporaryDir scratch;
    SetAppPath(scratch.path());
    QDir().mkpath(scratch.filePath(QStringLiteral("KtvPublic")));
    IniWrite(scratch.filePath(QStringLiteral("KtvPublic/database_home.ini")), QStringLiteral("SongServer"),
             QStringLiteral("Local"), file);
    // Messages of the opening go to stderr; its questions get their default answer, No.
    if (!SongOpenDatabase())
        throw Failure{QStringLiteral("cannot open song database ") + args[0]};
    TextArray names, keys;
    const int count = SongSearchTree(1000, args[1], args.value(2), names, keys);
    SongCloseDatabase();
    if (count < 0)
        throw Failure{QStringLiteral("search failed")};
    print(QString::number(count));
    for (int i = 1; i <= UBound(names); ++i)
        print(keys.value(i) + u'\t' + names[i]);
    return 0;
}

// FILE may also be a postgresql://user@host:port/dbname address.
const CommandRegistration createCommand("create", "create FILE [--language NAME] [--template]", create);
const CommandRegistration demoCommand("demo", "demo DIR [--songs N] [--no-media] [--database ADDRESS]", demo);
const CommandRegistration sqlCommand("sql", "sql FILE STATEMENT", sql);
const CommandRegistration searchCommand("search", "search FILE PATH [VALUE]", search);

}  // namespace
}  // namespace td::admin
