// tunedesk-admin: creates song databases and demo installations, runs statements and searches through
// the same layer as the console, and runs the console's long jobs without a window.
#include "exchange/LibraryImport.h"
#include "libraries/FileFinder.h"
#include "libraries/LibrarySongFiles.h"
#include "shell/services/AppError.h"
#include "shell/services/AppPaths.h"
#include "shell/services/ConsoleJobHost.h"
#include "shell/services/Ini.h"
#include "shell/services/Translate.h"
#include "songdb/Connection.h"
#include "songdb/DemoSongbook.h"
#include "songdb/JetSql.h"
#include "songdb/Schema.h"
#include "songdb/SongSearch.h"
#include "songdb/SongSession.h"
#include "songdb/SongStatements.h"
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cstdio>

using namespace td;

namespace {

constexpr int kUsageError = 2;

const char* const kUsage =
    "usage: tunedesk-admin create FILE [--language NAME] [--template]\n"
    "       tunedesk-admin demo DIR [--songs N]\n"
    "       tunedesk-admin sql FILE STATEMENT\n"
    "       tunedesk-admin search FILE PATH [VALUE]\n"
    "       tunedesk-admin library update FILE ROOT\n"
    "       tunedesk-admin library import FILE ROOT [--region R]... [--index import|index|blank] [--from N]\n";

struct Failure {
    QString text;
};

void print(const QString& text)
{
    std::fputs((text + u'\n').toUtf8().constData(), stdout);
}

// The value after an option such as --songs, or the default.
QString option(QStringList& args, const QString& name, const QString& def)
{
    const qsizetype i = args.indexOf(name);
    if (i < 0)
        return def;
    if (i + 1 >= args.size())
        throw Failure{name + QStringLiteral(" needs a value")};
    const QString value = args[i + 1];
    args.remove(i, 2);
    return value;
}

bool flag(QStringList& args, const QString& name)
{
    return args.removeAll(name) > 0;
}

void expectArgs(const QStringList& args, qsizetype min, qsizetype max)
{
    if (args.size() < min || args.size() > max)
        throw Failure{QStringLiteral("wrong number of arguments")};
}

int create(QStringList args)
{
    const QString language = option(args, QStringLiteral("--language"), QStringLiteral("English"));
    const bool asTemplate = flag(args, QStringLiteral("--template"));
    expectArgs(args, 1, 1);
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
    expectArgs(args, 1, 1);
    print(CreateDemoSongbook(args[0], options));
    return 0;
}

std::unique_ptr<Connection> openExisting(const QString& file)
{
    if (!QFileInfo(file).isFile())
        throw Failure{QStringLiteral("no such database file: ") + file};
    return OpenConnection(file);
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
    const QString file = QFileInfo(args[0]).absoluteFilePath();
    if (!QFileInfo(file).isFile())
        throw Failure{QStringLiteral("no such database file: ") + args[0]};
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

// Venue support runs a job to its end: the job's OK/Cancel questions (go on with so many songs, go on
// after a failed one) are answered OK, each failure having printed its line.
class RunToTheEnd : public ConsoleJobHost {
public:
    MsgAnswer Ask(const QString& text, MsgButtons buttons, const QString& title = {}) override
    {
        const MsgAnswer answer = ConsoleJobHost::Ask(text, buttons, title);
        return buttons == MsgButtons::OkCancel ? MsgAnswer::Ok : answer;
    }
};

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

// The library import wizard's defaults answer its questions: go on with so many files, and go on
// checking after a crashed index (the import then stops with nothing added). Each crash and each
// failed file is a line on stderr; a failed file is passed over.
class ImportToTheEnd : public RunToTheEnd {
public:
    // Progress goes to stderr at every tenth of the way.
    void StartProcess(const QString&, const QString& hint, qint64, qint64 max, bool) override
    {
        hint_ = hint;
        max_ = max;
        shown_ = 0;
    }
    void Processing(qint64 value) override
    {
        if (max_ <= 0 || value * 10 / max_ <= shown_)
            return;
        shown_ = value * 10 / max_;
        std::fprintf(stderr, "%s %lld/%lld\n", hint_.toLocal8Bit().constData(), static_cast<long long>(value),
                     static_cast<long long>(max_));
    }
    MsgAnswer Ask(const QString& text, MsgButtons buttons, const QString& title = {}) override
    {
        if (!title.isEmpty() || text.startsWith(QStringLiteral("An error take place"))) {
            Fail(text.split(QStringLiteral("\r\n")).first());
            return buttons == MsgButtons::OkCancel ? MsgAnswer::Ok : MsgAnswer::No;
        }
        return RunToTheEnd::Ask(text, buttons, title);
    }

private:
    QString hint_;
    qint64 max_ = 0;
    qint64 shown_ = 0;
};

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

}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    const QString command = args.value(0);
    if (!args.isEmpty())
        args.removeFirst();
    try {
        if (command == u"create")
            return create(args);
        if (command == u"demo")
            return demo(args);
        if (command == u"sql")
            return sql(args);
        if (command == u"search")
            return search(args);
        if (command == u"library")
            return library(args);
        throw Failure{command.isEmpty() ? QStringLiteral("no command")
                                        : QStringLiteral("unknown command ") + command};
    } catch (const Failure& f) {
        std::fprintf(stderr, "tunedesk-admin: %s\n", f.text.toLocal8Bit().constData());
        if (command.isEmpty())
            std::fputs(kUsage, stderr);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "tunedesk-admin: %s\n", ErrorText(e).toLocal8Bit().constData());
    }
    return kUsageError;
}
