// The songbook window on a generated songbook. Usage: bench_songbook DATA_DIR [SONGBOOK.db]
// Figures: the first fill of the list, searches by singer and by title, choosing the singer search
// type (which lists the singers), and selecting a song; for each the time until it shows and the
// longest time the event loop went without a turn (a 10 ms timer's largest gap).
// Without SONGBOOK.db the 1,000,000-song demo songbook is generated once into DATA_DIR and kept.
#include "BenchSupport.h"
#include "LoopWatch.h"
#include "controls/ctlDataView.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Ini.h"
#include "songbook/frmSong.h"
#include "songdb/SongSearch.h"
#include "songdb/SongSession.h"
#include "songdb/SongStatements.h"
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTimer>
#include <cstdio>
#include <functional>

namespace {

using bench::LoopWatch;
using bench::Print;

int TypeRow(td::frmSong& song, const QString& code)
{
    const int row = song.cboSearchType()->findText(td::SearchTypeCaption(code));
    return row < 0 ? 0 : row;
}

// The search reads in the background and fills the list in slices; the event loop runs meanwhile,
// as it does in the console, until the list has all its rows.
double g_readSeconds = 0;  // of the last LoadAndWait: until the rows were read and the fill began

void LoadAndWait(td::frmSong& song)
{
    QElapsedTimer clock;
    clock.start();
    song.LoadData();
    g_readSeconds = 0;
    while (song.ListLoading()) {
        // Sleeps until an event comes, as the console's own loop does (the watch's timer wakes it).
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        if (g_readSeconds == 0 && song.ctlView()->Loading())
            g_readSeconds = double(clock.nsecsElapsed()) / 1e9;
    }
}

void Search(td::frmSong& song, const QString& code, const QString& value)
{
    song.cboSearchType()->setCurrentIndex(TypeRow(song, code));
    song.cboSearchValue()->setEditText(value);
    LoadAndWait(song);
}

}  // namespace

int main(int argc, char** argv)
{
    bench::PrepareApplication();
    QApplication app(argc, argv);
    const QStringList args = bench::ArgumentsOrUsage(app, 2, "bench_songbook DATA_DIR [SONGBOOK.db]");
    if (args.isEmpty())
        return 2;
    const QString dataDir = args[1];
    const QString book = args.size() > 2 ? args[2] : bench::Songbook(dataDir, 1000000);
    // A program folder of its own, with the songbook's format files from beside the console.
    const QString appDir = QDir(dataDir).filePath(QStringLiteral("songbook_app"));
    QDir().mkpath(appDir + QStringLiteral("/KtvPublic"));
    td::SetAppPath(appDir);
    for (const char* name : {"ListSong.ini", "ListMedia.ini"}) {
        QFile::remove(appDir + u'/' + QString::fromLatin1(name));
        QFile::copy(
            QCoreApplication::applicationDirPath() + QStringLiteral("/../") + QString::fromLatin1(name),
            appDir + u'/' + QString::fromLatin1(name));
    }
    QString local = book;
    td::DatabaseHomePath(QStringLiteral("SongServer"), local, true);
    if (!td::SongOpenDatabase()) {
        std::fprintf(stderr, "cannot open %s\n", qPrintable(book));
        return 1;
    }

    LoopWatch watch;
    td::frmSong song;
    song.tmrLoadData()->stop();
    song.resize(1200, 800);
    song.show();

    Print("songbook_first_fill_1m", watch.run([&] { LoadAndWait(song); }), "s");
    Print("songbook_first_fill_longest_freeze", watch.longestGap(), "s");
    Print("songbook_first_fill_read_part", g_readSeconds, "s");
    Print("songbook_rows_1m", song.ctlView()->MainItems().Count(), "rows");

    std::unique_ptr<td::Recordset> pick;
    td::SongOpenRecordset(QStringLiteral("select singer from song where id=500000"), pick);
    const QString singer = pick->text(0, 0);
    Print("songbook_search_singer", watch.run([&] { Search(song, QStringLiteral("singer"), singer); }), "s");
    Print("songbook_search_singer_longest_freeze", watch.longestGap(), "s");
    Print("songbook_search_singer_rows", song.ctlView()->MainItems().Count(), "rows");
    Print("songbook_search_title",
          watch.run([&] { Search(song, QStringLiteral("song"), QStringLiteral("Love Night")); }), "s");
    Print("songbook_search_title_longest_freeze", watch.longestGap(), "s");
    Print("songbook_search_title_rows", song.ctlView()->MainItems().Count(), "rows");

    Print("songbook_choose_singer_type", watch.run([&] {
        song.cboSearchType()->setCurrentIndex(TypeRow(song, QStringLiteral("singer")));
        song.cboSearchType()->activated(song.cboSearchType()->currentIndex());
        while (song.ValuesLoading())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }),
          "s");
    Print("songbook_choose_singer_type_longest_freeze", watch.longestGap(), "s");
    Print("songbook_singer_values", song.cboSearchValue()->count(), "names");

    Search(song, QStringLiteral("song"), QString());
    Print("songbook_select_song", watch.run([&] { song.ctlView()->MoveTo(654321); }), "s");
    // Select all: every listed song goes into the editor at once.
    Print("songbook_select_all", watch.run([&] { song.ExecuteCommand(QStringLiteral("selectall")); }), "s");
    Print("songbook_select_all_longest_freeze", watch.longestGap(), "s");
    td::SongCloseDatabase();
    return 0;
}
