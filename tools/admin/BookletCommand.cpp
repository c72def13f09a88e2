// The song booklet for the guests' tables, made at night or from a script.
#include "booklet/Booklet.h"
#include "songdb/Connection.h"
#include "tools/admin/AdminCommand.h"

namespace td::admin {
namespace {

BookletGroup groupOption(QStringList& args)
{
    BookletGroup group = BookletGroup::Singer;
    const QString name = option(args, QStringLiteral("--group"), QStringLiteral("singer"));
    if (!BookletGroupFromName(name, group))
        throw Failure{QStringLiteral("--group is singer, length or language, not ") + name};
    return group;
}

int columnsOption(QStringList& args)
{
    const QString text = option(args, QStringLiteral("--columns"), QStringLiteral("3"));
    bool ok = false;
    const int columns = text.toInt(&ok);
    if (!ok || columns < 2 || columns > 4)
        throw Failure{QStringLiteral("--columns is 2, 3 or 4, not ") + text};
    return columns;
}

QString paperOption(QStringList& args)
{
    const QString paper = option(args, QStringLiteral("--paper"), QStringLiteral("a4")).toLower();
    if (paper != u"a4" && paper != u"letter")
        throw Failure{QStringLiteral("--paper is a4 or letter, not ") + paper};
    return paper == u"a4" ? QStringLiteral("A4") : QStringLiteral("Letter");
}

// Writes the booklet of the songbook FILE as a PDF: the songs of the available regions (or of
// --region R), grouped by singer, title length or language.
int booklet(QStringList args)
{
    BookletOptions options;
    options.group = groupOption(args);
    options.columns = columnsOption(args);
    options.paper = paperOption(args);
    options.region = option(args, QStringLiteral("--region"), {});
    options.venue = option(args, QStringLiteral("--venue"), {});
    expectArgs(args, 2, 2);
    auto db = openExisting(args[0]);
    RunToTheEndWithProgress host;
    const BookletOutcome out = MakeBookletPdf(*db, options, args[1], host);
    if (!out.written)
        return kUsageError;
    print(QStringLiteral("%1 song(s) on %2 page(s)").arg(out.songs).arg(out.pages));
    return 0;
}

const CommandRegistration bookletCommand(
    "booklet",
    "booklet FILE OUT.pdf [--group singer|length|language] [--columns N] [--paper a4|letter] [--region R] "
    "[--venue NAME]",
    booklet);

}  // namespace
}  // namespace td::admin
