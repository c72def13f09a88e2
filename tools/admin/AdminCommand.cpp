#include "tools/admin/AdminCommand.h"
#include "shell/services/AppError.h"
#include "songdb/Connection.h"
#include <QFileInfo>
#include <QMap>
#include <cstdio>

namespace td::admin {

namespace {

struct Command {
    QString usage;
    CommandFunction run;
};

QMap<QString, Command>& commands()
{
    static QMap<QString, Command> all;
    return all;
}

void printUsage()
{
    QString text;
    const char* lead = "usage: ";
    for (const Command& c : commands())
        for (const QString& line : c.usage.split(u'\n', Qt::SkipEmptyParts)) {
            text += QString::fromLatin1(lead) + QStringLiteral("tunedesk-admin ") + line + u'\n';
            lead = "       ";
        }
    std::fputs(text.toLocal8Bit().constData(), stderr);
}

}  // namespace

CommandRegistration::CommandRegistration(const char* name, const char* usage, CommandFunction run)
{
    commands().insert(QString::fromLatin1(name), Command{QString::fromLatin1(usage), std::move(run)});
}

int RunCommand(QStringList args)
{
    const QString name = args.value(0);
    if (!args.isEmpty())
        args.removeFirst();
    try {
        const auto found = commands().constFind(name);
        if (found == commands().cend())
            throw Failure{name.isEmpty() ? QStringLiteral("no command") : QStringLiteral("unknown command ") + name};
        return found->run(args);
    } catch (const Failure& f) {
        std::fprintf(stderr, "tunedesk-admin: %s\n", f.text.toLocal8Bit().constData());
        if (name.isEmpty())
            printUsage();
    } catch (const std::exception& e) {
        std::fprintf(stderr, "tunedesk-admin: %s\n", ErrorText(e).toLocal8Bit().constData());
    }
    return kUsageError;
}

void print(const QString& text)
{
    std::fputs((text + u'\n').toUtf8().constData(), stdout);
}

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

void expectDatabaseFile(const QString& file)
{
    if (IsServerAddress(file))
        return;
    const QFileInfo info(file);
    if (!info.isFile())
        throw Failure{QStringLiteral("no such database file: ") + file};
    // SQLite would take an empty file for an empty database, and write to it.
    if (info.size() == 0)
        throw Failure{QStringLiteral("not a song database, the file is empty: ") + file};
}

std::unique_ptr<Connection> openExisting(const QString& file)
{
    expectDatabaseFile(file);
    return OpenConnection(file);
}

MsgAnswer RunToTheEnd::Ask(const QString& text, MsgButtons buttons, const QString& title)
{
    const MsgAnswer answer = ConsoleJobHost::Ask(text, buttons, title);
    return buttons == MsgButtons::OkCancel ? MsgAnswer::Ok : answer;
}

void RunToTheEndWithProgress::StartProcess(const QString&, const QString& hint, qint64, qint64 max, bool)
{
    hint_ = hint;
    max_ = max;
    shown_ = 0;
}

void RunToTheEndWithProgress::Processing(qint64 value)
{
    if (max_ <= 0 || value * 10 / max_ <= shown_)
        return;
    shown_ = value * 10 / max_;
    std::fprintf(stderr, "%s %lld/%lld\n", hint_.toLocal8Bit().constData(), static_cast<long long>(value),
                 static_cast<long long>(max_));
}

}  // namespace td::admin
