// The songbook check and the printed song list, for venues that run them at night.
#include "checks/SongListPages.h"
#include "checks/SongListPrint.h"
#include "checks/SongbookCheck.h"
#include "shell/services/AppPaths.h"
#include "shell/services/FilePaths.h"
#include "songdb/Connection.h"
#include "tools/admin/AdminCommand.h"
#include <QTemporaryDir>

namespace td::admin {
namespace {

// Says yes to starting each check and goes on after a failure, each failure a line on stderr.
class CheckToTheEnd : public ConsoleJobHost {
public:
    MsgAnswer Ask(const QString& text, MsgButtons buttons, const QString& title = {}) override
    {
        if (text.startsWith(QStringLiteral("An error take place"))) {
            Fail(text.split(QStringLiteral("\r\n")).first());
            return MsgAnswer::No;
        }
        if (text.startsWith(QStringLiteral("Begin to")))
            return MsgAnswer::Yes;
        return ConsoleJobHost::Ask(text, buttons, title);
    }
};

// Writes CheckLibrary.log, CheckSong.log and IsolatedMedia.log of the songbook FILE into the program's
// directory, or into --report DIR. Songs without their media file get the check's remark.
int check(QStringList args)
{
    const QString dir = option(args, QStringLiteral("--report"), AppPath());
    expectArgs(args, 1, 1);
    if (FileKind(dir) != u"p")
        throw Failure{QStringLiteral("no such directory ") + dir};
    auto db = openExisting(args[0]);
    CheckToTheEnd host;
    CheckSettings settings{dir, {}};
    CheckLibraries(*db, settings, host);
    CheckSongs(*db, settings, host);
    SearchIsolatedMedias(*db, settings, host);
    for (const QString& report : {CheckLibraryReport(dir), CheckSongReport(dir), IsolatedMediaReport(dir)})
        print(QStringLiteral("report: ") + report);
    return 0;
}

const CommandRegistration checkCommand("check", "check FILE [--report DIR]", check);

// "FIELD OP VALUE", the operator one of the window's compare list; NULL and NOT NULL take no value.
PrintCondition condition(const QString& text)
{
    const QString field = text.section(u' ', 0, 0);
    const QString rest = text.section(u' ', 1).trimmed();
    for (const QString& compare : {QStringLiteral("NOT NULL"), QStringLiteral("NULL")})
        if (rest.compare(compare, Qt::CaseInsensitive) == 0)
            return {field, compare, {}};
    const QString compare = rest.section(u' ', 0, 0).toUpper();
    if (field.isEmpty() || !PrintCompares().contains(compare))
        throw Failure{QStringLiteral("--where needs FIELD OP VALUE, OP one of ") + PrintCompares().join(u' ')};
    return {field, compare, rest.section(u' ', 1)};
}

QStringList repeated(QStringList& args, const QString& name)
{
    QStringList values;
    while (args.contains(name))
        values << option(args, name, {});
    return values;
}

// Prints the song list of the songbook FILE as the printing wizard does, into a workbook (--xlsx) and
// or a PDF (--pdf), laid out by PrintTemplate.ini beside the program (or --template). The fields are
// columns of song (--fields index,title,singer by default), the heads their captions in ListSong.ini.
int printList(QStringList args)
{
    const QString xlsx = option(args, QStringLiteral("--xlsx"), {});
    const QString pdf = option(args, QStringLiteral("--pdf"), {});
    const QString fields = option(args, QStringLiteral("--fields"), QStringLiteral("index,title,singer"));
    const QString layout = option(args, QStringLiteral("--template"), AppPath() + QStringLiteral("/PrintTemplate.ini"));
    const QStringList wheres = repeated(args, QStringLiteral("--where"));
    const QStringList orders = repeated(args, QStringLiteral("--order"));
    expectArgs(args, 1, 1);
    if (xlsx.isEmpty() && pdf.isEmpty())
        throw Failure{QStringLiteral("print needs --xlsx FILE or --pdf FILE")};
    if (wheres.size() > 3 || orders.size() > 3)
        throw Failure{QStringLiteral("at most three --where and three --order")};
    if (FileKind(layout) != u"f")
        throw Failure{QStringLiteral("no such template ") + layout};
    auto db = openExisting(args[0]);
    SongListRequest request;
    request.choice.fields = fields.split(u',', Qt::SkipEmptyParts);
    for (const QString& w : wheres)
        request.choice.conditions << condition(w);
    request.choice.orders = orders;
    const QList<PrintField> printable = PrintableFields(AppPath() + QStringLiteral("/ListSong.ini"));
    for (const QString& f : request.choice.fields) {
        QString caption = f;
        for (const PrintField& p : printable)
            if (p.field.compare(f, Qt::CaseInsensitive) == 0)
                caption = p.caption;
        request.captions << caption;
    }
    request.templateFile = layout;
    QTemporaryDir scratch;
    request.workbook = xlsx.isEmpty() ? scratch.filePath(QStringLiteral("SongList.xlsx")) : xlsx;
    request.keepRows = !pdf.isEmpty();
    ConsoleJobHost host;
    host.setAnswer(QStringLiteral("An error take place"), MsgAnswer::No);
    host.setAnswer({}, MsgAnswer::Yes);
    const SongList list = MakeSongList(*db, request, host);
    if (!list.written)
        return kUsageError;
    if (!pdf.isEmpty() && !WriteSongListPdf(pdf, list.layout, list.captions, list.rows, request.choice.fields))
        throw Failure{QStringLiteral("can't write ") + pdf};
    print(QString::number(list.songs) + QStringLiteral(" song(s) printed"));
    return host.failures() == 0 ? 0 : kUsageError;
}

const CommandRegistration printCommand(
    "print",
    "print FILE --xlsx OUT.xlsx|--pdf OUT.pdf [--fields F,F...] [--where 'FIELD OP VALUE']... [--order F]... [--template INI]",
    printList);

}  // namespace
}  // namespace td::admin
