// The data view over generated songbooks. Usage: bench_dataview DATA_DIR load|fill [SONGBOOK.db]
//   load: LoadViewData of every song at 100,000 and 1,000,000 rows with the recordset open, and
//         RefreshViewData of the unchanged 1,000,000-row list.
//   fill: the whole "open recordset + fill the list" path at 1,000,000 rows beside the sqlite3
//         command-line dump of the same table, and the peak memory of this process.
// Without SONGBOOK.db the demo songbooks are generated once into DATA_DIR and kept; give the
// song database benchmark's DATA_DIR to share its songbooks.
#include "BenchSupport.h"
#include "controls/ctlDataView.h"
#include "shell/services/AppPaths.h"
#include "songdb/Connection.h"
#include "songdb/DemoSongbook.h"
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <cstdio>
#include <functional>
#include <sys/resource.h>

namespace {

const char* kFormat =
    "[View]\nMultiSelect=1\n"
    "[ColPosition]\nCol_index=0\nCol_title=0\nCol_singer=0\nCol_language=0\nCol_style=0\nCol_order_time=0\n"
    "[Col_index]\nCaption=Number\nWidth=900\n[Col_title]\nCaption=Title\nWidth=3000\n"
    "[Col_singer]\nCaption=Singer\n[Col_language]\nCaption=Language\n[Col_style]\nCaption=Style\n"
    "[Col_order_time]\nCaption=Ordered\n";

using bench::Print;
using bench::Songbook;

double PeakMegabytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) / 1024.0;
}

struct Window {
    explicit Window(const QString& format)
    {
        view.setIniFile(format);
        view.LoadViewFormat();
        view.resize(900, 600);
        view.show();
    }
    td::ctlDataView view;
};

double Seconds(const std::function<void()>& work)
{
    QElapsedTimer t;
    t.start();
    work();
    return double(t.nsecsElapsed()) / 1e9;
}

void RunLoad(const QString& format, const QString& small, const QString& big)
{
    for (const auto& [file, name] :
         {std::pair{small, "dataview_load_100k"}, std::pair{big, "dataview_load_1m"}}) {
        auto connection = td::OpenConnection(file);
        std::shared_ptr<td::Recordset> rs = connection->openRecordset(QStringLiteral("select * from song"));
        Window w(format);
        w.view.setMrsMain(rs);
        Print(name, Seconds([&] { w.view.LoadViewData(); }), "s");
        if (file == big) {
            Print("dataview_rows_memory_1m", double(w.view.model()->rows().memoryUsed()) / 1048576.0, "MB");
            Print("recordset_memory_1m", double(rs->memoryUsed()) / 1048576.0, "MB");
            // The peak so far, so that the end figure shows what requery and refresh add to it.
            Print("dataview_load_1m_peak_memory", PeakMegabytes(), "MB");
            Print("recordset_requery_1m", Seconds([&] { rs->Requery(); }), "s");
            Print("dataview_refresh_1m_unchanged", Seconds([&] { w.view.RefreshViewData(); }), "s");
        }
        w.view.setIniFile(QString());
    }
    Print("dataview_load_peak_memory", PeakMegabytes(), "MB");
}

void RunFill(const QString& format, const QString& big)
{
    QProcess dump;
    dump.setStandardOutputFile(QProcess::nullDevice());
    const double sqliteSeconds = Seconds([&] {
        dump.start(QStringLiteral("sqlite3"), {big, QStringLiteral("select * from song")});
        dump.waitForFinished(-1);
    });
    std::unique_ptr<td::Connection> connection;
    std::shared_ptr<td::Recordset> rs;
    Window w(format);
    const double fillSeconds = Seconds([&] {
        connection = td::OpenConnection(big);
        rs = connection->openRecordset(QStringLiteral("select * from song"));
        w.view.setMrsMain(rs);
        w.view.LoadViewData();
    });
    Print("dataview_open_fill_1m", fillSeconds, "s");
    Print("sqlite3_dump_1m", sqliteSeconds, "s");
    Print("dataview_open_fill_vs_sqlite3", fillSeconds / sqliteSeconds, "x");
    Print("dataview_open_fill_peak_memory", PeakMegabytes(), "MB");
    w.view.setIniFile(QString());
}

}  // namespace

int main(int argc, char** argv)
{
    bench::PrepareApplication();
    QApplication app(argc, argv);
    const QStringList args = bench::ArgumentsOrUsage(app, 3, "bench_dataview DATA_DIR load|fill [SONGBOOK.db]");
    if (args.isEmpty())
        return 2;
    const QString dir = args[1];
    QDir().mkpath(dir);
    td::SetAppPath(dir);
    const QString format = dir + QStringLiteral("/ListBench.ini");
    QFile f(format);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(kFormat);
    f.close();
    const QString big = args.size() > 3 ? args[3] : Songbook(dir, 1000000);
    if (args[2] == u"fill") {
        RunFill(format, big);
    } else {
        RunLoad(format, Songbook(dir, 100000), big);
    }
    return 0;
}
