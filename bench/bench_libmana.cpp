// The library manager on a generated library of 100,000 songs: moving the library to a new root (every
// song's library changes) and removing it with its songs, each with the time until done and the longest
// time the window went without a turn of its event loop. Usage: bench_libmana DATA_DIR [SONGS]
#include "BenchSupport.h"
#include "LoopWatch.h"
#include "controls/ctlDataFields.h"
#include "controls/ctlDataView.h"
#include "libraries/frmLibMana.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Ini.h"
#include "songdb/Connection.h"
#include "songdb/SongSession.h"
#include <QApplication>
#include <QDir>
#include <QFile>
#include <optional>

namespace {

using bench::LoopWatch;
using bench::Print;

// Every question answered No (remove the songs without writing their files first), nothing shown.
class QuietDialogs : public td::DialogSeam {
public:
    td::MsgAnswer message(const QString&, td::MsgButtons buttons, td::MsgIcon, const QString&) override
    {
        return buttons == td::MsgButtons::Ok ? td::MsgAnswer::Ok : td::MsgAnswer::No;
    }
    std::optional<QString> inputBox(const QString&, const QString&, const QString&) override { return {}; }
    QStringList openFiles(const td::OpenFileRequest&) override { return {}; }
    QString saveFile(const td::OpenFileRequest&) override { return {}; }
    QString pickFolder(const QString&, const QString&) override { return {}; }
};

void waitFor(const std::function<bool()>& done)
{
    while (!done())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

// A copy of the generated songbook, so that each run moves and removes the same library.
QString freshSongbook(const QString& dataDir, int songs, QString& appDir)
{
    appDir = QDir(dataDir).filePath(QStringLiteral("libmana_app"));
    QDir(appDir).removeRecursively();
    QDir().mkpath(appDir + QStringLiteral("/KtvPublic"));
    const QString book = appDir + QStringLiteral("/song.db");
    QFile::copy(bench::Songbook(dataDir, songs), book);
    QFile::copy(QCoreApplication::applicationDirPath() + QStringLiteral("/../ListLibMana.ini"),
                appDir + QStringLiteral("/ListLibMana.ini"));
    return book;
}

void selectFirstLibrary(td::frmLibMana& window)
{
    window.ctlView()->MainItems().setSelected(1, true);
    window.LoadFieldDatas({0, 1});
}

}  // namespace

int main(int argc, char** argv)
{
    bench::PrepareApplication();
    QApplication app(argc, argv);
    const QStringList args = bench::ArgumentsOrUsage(app, 2, "bench_libmana DATA_DIR [SONGS]");
    if (args.isEmpty())
        return 2;
    const int songs = bench::SongCounts(args, 2, {100000}).first();
    QString appDir;
    QString book = freshSongbook(args[1], songs, appDir);
    td::SetAppPath(appDir);
    td::DatabaseHomePath(QStringLiteral("SongServer"), book, true);
    QuietDialogs dialogs;
    td::SetDialogs(&dialogs);
    if (!td::SongOpenDatabase()) {
        std::fprintf(stderr, "cannot open %s\n", qPrintable(book));
        return 1;
    }
    LoopWatch watch;
    td::frmLibMana window;
    window.resize(900, 500);
    window.show();
    waitFor([&] { return !window.ListLoading(); });

    selectFirstLibrary(window);
    const QString moved = appDir + QStringLiteral("/moved");
    QDir().mkpath(moved);
    td::ctlDataFields* fields = window.ctlFields();
    const int rootField = fields->GetFieldIndex(QStringLiteral("root_path"));
    fields->SetField(rootField, QStringLiteral("value"), moved);
    fields->SetField(rootField, QStringLiteral("changed"), true);
    std::optional<bool> saved;
    const double moveSeconds = watch.run([&] {
        window.SaveLibrary([&](bool ok) { saved = ok; });
        waitFor([&] { return saved.has_value(); });
    });
    const qint64 movedSongs = td::SongConnection()
                                  ->openRecordset(QStringLiteral("select count(*) from song where library='") +
                                                  moved + u'\'')
                                  ->Fields(0)
                                  .Text()
                                  .toLongLong();
    if (!saved.value_or(false) || movedSongs != songs) {
        std::fprintf(stderr, "the move did not go through (%lld songs moved)\n", movedSongs);
        return 1;
    }
    Print("libmana_move_seconds", moveSeconds, "s");
    Print("libmana_move_longest_freeze", watch.longestGap(), "s");

    selectFirstLibrary(window);
    std::optional<bool> removed;
    const double removeSeconds = watch.run([&] {
        window.RemoveLibrary([&](bool ok) { removed = ok; });
        waitFor([&] { return removed.has_value(); });
    });
    if (!removed.value_or(false)) {
        std::fprintf(stderr, "the removal did not go through\n");
        return 1;
    }
    Print("libmana_remove_seconds", removeSeconds, "s");
    Print("libmana_remove_longest_freeze", watch.longestGap(), "s");
    td::SetDialogs(nullptr);
    return 0;
}
