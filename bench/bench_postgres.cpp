// A songbook on a PostgreSQL server of the benchmark's own: the whole song table opened as a recordset
// beside psql printing the same table, and the "ZG" initial-letter title search beside psql running the
// statement the search sends. Same server, same run, output of psql thrown away.
//   bench_postgres DATA_DIR [SONGS...]    (default 1,000,000 songs)
#include "BenchSupport.h"
#include "shell/services/Dialogs.h"
#include "shell/services/HeadlessDialogs.h"
#include "songdb/Connection.h"
#include "songdb/SongSearch.h"
#include "songdb/SongSession.h"
#include "support/LocalPostgres.h"
#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QProcess>
#include <QTemporaryDir>
#include <functional>

using namespace td;

namespace {

bool psql(const test::LocalPostgres& server, const QString& database, const QString& sql)
{
    QProcess p;
    p.setStandardOutputFile(QProcess::nullDevice());
    p.start(server.binDir() + QStringLiteral("/psql"),
            server.psqlArguments(database) + QStringList{QStringLiteral("-c"), sql});
    p.waitForFinished(-1);
    if (p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0)
        return true;
    std::fprintf(stderr, "psql: %s\n", p.readAllStandardError().constData());
    return false;
}

// The statements the server was sent while work ran.
QStringList statementsOf(const std::function<void()>& work)
{
    static QStringList* sent = nullptr;
    QStringList statements;
    sent = &statements;
    QLoggingCategory::setFilterRules(QStringLiteral("tunedesk.songdb.debug=true"));
    const auto old = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
        if (sent && text.startsWith(u"query: "))
            sent->append(text.mid(7));
    });
    work();
    qInstallMessageHandler(old);
    QLoggingCategory::setFilterRules(QString());
    sent = nullptr;
    return statements;
}

int run(const test::LocalPostgres& server, const QString& dataDir, int songs)
{
    const QString tag = songs % 1000000 == 0 ? QStringLiteral("%1m").arg(songs / 1000000)
                                             : QStringLiteral("%1k").arg(songs / 1000);
    const QString database = QStringLiteral("songs_") + tag;
    const QString address = server.address(database);
    QElapsedTimer load;
    load.start();
    CopySongbookToServer(bench::Songbook(dataDir, songs), address, QStringLiteral("Chinese Simplified"));
    OpenConnection(address)->backend().execute(QStringLiteral("VACUUM ANALYZE"));
    bench::Print(QStringLiteral("pg_load_") + tag + QStringLiteral("_ms"), double(load.nsecsElapsed()) / 1e6,
                 "ms");

    const QString all = QStringLiteral("select * from song");
    const double open = bench::BestMilliseconds(
        [&] { return OpenConnection(address)->openRecordset(all)->RecordCount() == songs; });
    const double select = bench::BestMilliseconds([&] { return psql(server, database, all); });
    if (open < 0 || select < 0)
        return 1;
    bench::Print(QStringLiteral("pg_recordset_") + tag + QStringLiteral("_ms"), open, "ms");
    bench::Print(QStringLiteral("psql_select_") + tag + QStringLiteral("_ms"), select, "ms");
    bench::Print(QStringLiteral("pg_recordset_ratio"), open / select, "x");

    QTemporaryDir scratch;
    if (!bench::OpenSession(scratch, address))
        return 1;
    int found = -1;
    const auto search = [&] {
        TextArray names, keys;
        found = SongSearchTree(1000, QStringLiteral("title"), QStringLiteral("ZG"), names, keys);
        return found >= 0;
    };
    QString statement;
    for (const QString& sql : statementsOf(search))
        if (sql.contains(u"td_char_"))
            statement = sql;
    const double ours = bench::BestMilliseconds(search);
    SongCloseDatabase();
    const double theirs =
        statement.isEmpty() ? -1 : bench::BestMilliseconds([&] { return psql(server, database, statement); });
    if (ours < 0 || theirs < 0)
        return 1;
    bench::Print(QStringLiteral("pg_search_zg_") + tag + QStringLiteral("_ms"), ours, "ms");
    bench::Print(QStringLiteral("psql_search_zg_") + tag + QStringLiteral("_ms"), theirs, "ms");
    bench::Print(QStringLiteral("pg_search_zg_") + tag + QStringLiteral("_items"), found, "items");
    bench::Print(QStringLiteral("pg_search_zg_ratio"), ours / theirs, "x");
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = bench::ArgumentsOrUsage(app, 2, "bench_postgres DATA_DIR [SONGS...]");
    if (args.isEmpty())
        return 2;
    test::LocalPostgres server;
    if (const QString error = server.start(); !error.isEmpty()) {
        std::fprintf(stderr, "%s\n", error.toLocal8Bit().constData());
        return 1;
    }
    HeadlessDialogs dialogs;
    SetDialogs(&dialogs);
    int status = 0;
    for (int songs : bench::SongCounts(args, 2, {1000000}))
        status |= run(server, args[1], songs);
    SetDialogs(nullptr);
    return status;
}
