#pragma once
// The commands of tunedesk-admin. Each command lives in a file of its own and registers itself here,
// so adding one touches no other file.
#include "shell/services/ConsoleJobHost.h"
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

namespace td {
class Connection;
}

namespace td::admin {

constexpr int kUsageError = 2;

// Thrown for bad arguments or an input the command cannot use: one line on stderr, exit 2.
struct Failure {
    QString text;
};

using CommandFunction = std::function<int(QStringList args)>;

// Registers a command (`name`, its usage lines after "tunedesk-admin ") at program start.
struct CommandRegistration {
    CommandRegistration(const char* name, const char* usage, CommandFunction run);
};

// Runs the command named by the first argument; answers the exit code.
int RunCommand(QStringList args);

void print(const QString& text);
// The value after an option such as --songs (removed from args), or the default.
QString option(QStringList& args, const QString& name, const QString& def);
bool flag(QStringList& args, const QString& name);
void expectArgs(const QStringList& args, qsizetype min, qsizetype max);
// Fails unless file is a server address or a file that may hold a songbook (it exists, it is not empty).
void expectDatabaseFile(const QString& file);
// Opens an existing song database file, or fails with "no such database file".
std::unique_ptr<Connection> openExisting(const QString& file);

// Venue support runs a job to its end: the job's OK/Cancel questions (go on with so many songs, go on
// after a failed one) are answered OK, each failure having printed its line.
class RunToTheEnd : public ConsoleJobHost {
public:
    MsgAnswer Ask(const QString& text, MsgButtons buttons, const QString& title = {}) override;
};

// RunToTheEnd that also prints progress on stderr at every tenth of the way.
class RunToTheEndWithProgress : public RunToTheEnd {
public:
    void StartProcess(const QString&, const QString& hint, qint64, qint64 max, bool) override;
    void Processing(qint64 value) override;

private:
    QString hint_;
    qint64 max_ = 0;
    qint64 shown_ = 0;
};

}  // namespace td::admin
