// Adding a library's media files to the songbook: frmSong::AddFiles of 10,000 files into an empty
// song database, where every row is its own commit, once with the write-ahead log of a local disk and
// once with the rollback journal of a share; beside them the sqlite3 command-line program inserting
// the same 10,000 rows in one transaction into a copy of the same empty database. Last, the cost of
// one row's commit in the store alone, without the window, in either journal (over 1,000 rows).
// Usage: bench_addfiles DATA_DIR [wal|rollback|sqlite3|store]    (all three without the second argument)
// The media files are made once under DATA_DIR and kept.
#include "BenchSupport.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Ini.h"
#include "songbook/frmSong.h"
#include "songdb/Connection.h"
#include "songdb/Schema.h"
#include "songdb/SongSession.h"
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTextStream>
#include <QTimer>
#include <cstdio>

namespace {

using bench::Print;

constexpr int kFiles = 10000;
constexpr int kPerFolder = 100;
constexpr int kStoreRows = 1000;

QString Quoted(QString text)
{
    return u'\'' + text.replace(u'\'', QStringLiteral("''")) + u'\'';
}

// The library: 100 folders of 100 small media files, made once.
QStringList MediaFiles(const QString& root)
{
    QStringList files;
    for (int i = 0; i < kFiles; ++i)
        files << QStringLiteral("%1/Folder%2/Song %3.mp3")
                     .arg(root)
                     .arg(i / kPerFolder, 3, 10, QLatin1Char('0'))
                     .arg(i, 5, 10, QLatin1Char('0'));
    const QString done = root + QStringLiteral("/.complete");
    if (QFileInfo::exists(done))
        return files;
    for (const QString& path : files) {
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile f(path);
        if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write("media") != 5)
            return {};
    }
    QFile(done).open(QIODevice::WriteOnly);
    return files;
}

// An empty song database that knows the library, copied to target; the copy is closed, so whole.
bool CopyOfEmptyDatabase(const QString& empty, const QString& target)
{
    QDir().mkpath(QFileInfo(target).absolutePath());
    for (const char* suffix : {"", "-wal", "-shm", "-journal"})
        QFile::remove(target + QLatin1String(suffix));
    return QFile::copy(empty, target);
}

// frmSong::AddFiles of every file on the database at path; seconds, or -1 when a file was not added.
double AddFiles(const QString& path, const QStringList& media)
{
    QString local = path;
    td::DatabaseHomePath(QStringLiteral("SongServer"), local, true);
    if (!td::SongOpenDatabase()) {
        std::fprintf(stderr, "cannot open %s\n", qPrintable(path));
        return -1;
    }
    double seconds = -1;
    {
        td::frmSong song;
        song.tmrLoadData()->stop();
        song.resize(1200, 800);
        song.show();
        song.LoadData();
        while (song.ListLoading())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        td::TextArray files = td::NewTextArray();
        for (const QString& f : media)
            td::AppendItem(files, f);
        QCoreApplication::processEvents();
        QElapsedTimer t;
        t.start();
        const int added = song.AddFiles(files);
        seconds = double(t.nsecsElapsed()) / 1e9;
        if (added != kFiles) {
            std::fprintf(stderr, "AddFiles added %d of %d files\n", added, kFiles);
            seconds = -1;
        }
    }
    td::SongCloseDatabase();
    return seconds;
}

// The same rows as AddFiles writes, by the sqlite3 program in one transaction; seconds, or -1.
double InsertWithSqlite3(const QString& path, const QString& root, const QStringList& media,
                         const QString& workDir)
{
    const QString script = workDir + QStringLiteral("/insert.sql");
    QFile f(script);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return -1;
    QTextStream out(&f);
    // The song table's text columns sort in GB2312 order; the program learns it from an extension.
    out << ".load " << QStringLiteral(TUNEDESK_GB2312_EXTENSION) << "\nBEGIN;\n";
    for (const QString& file : media) {
        const QString title = QFileInfo(file).fileName().section(u'.', 0, 0);
        out << "INSERT INTO song (\"index\", title, chars, media_file, library) VALUES (0, " << Quoted(title)
            << ", " << title.size() << ", " << Quoted(file.mid(root.size())) << ", " << Quoted(root)
            << ");\n";
    }
    out << "COMMIT;\n";
    out.flush();
    f.close();
    QProcess p;
    p.setStandardInputFile(script);
    QElapsedTimer t;
    t.start();
    p.start(QStringLiteral("sqlite3"), {QStringLiteral("-bail"), path});
    if (!p.waitForFinished(-1) || p.exitCode() != 0) {
        std::fprintf(stderr, "sqlite3: %s\n", p.readAllStandardError().constData());
        return -1;
    }
    return double(t.nsecsElapsed()) / 1e9;
}

// The store alone, without the window: milliseconds per row written as AddFiles writes it, each
// row its own commit.
double StoreMsPerRow(const QString& path, const QString& root, const QStringList& media, int rows)
{
    auto db = td::OpenConnection(path);
    auto rs = db->openRecordset(QStringLiteral("select * from song where id=-1"));
    QElapsedTimer t;
    t.start();
    for (int i = 0; i < rows; ++i) {
        const QString title = QFileInfo(media[i]).fileName().section(u'.', 0, 0);
        rs->AddNew();
        rs->Fields(QStringLiteral("Index")).setValue(0);
        rs->Fields(QStringLiteral("Title")).setValue(title);
        rs->Fields(QStringLiteral("chars")).setValue(int(title.size()));
        rs->Fields(QStringLiteral("media_file")).setValue(media[i].mid(root.size()));
        rs->Fields(QStringLiteral("library")).setValue(root);
        rs->Update();
    }
    return double(t.nsecsElapsed()) / 1e6 / rows;
}

qint64 SongRows(const QString& path)
{
    auto db = td::OpenConnection(path);
    auto rs = db->openRecordset(QStringLiteral("select count(*) from song"));
    return rs->text(0, 0).toLongLong();
}

}  // namespace

int main(int argc, char** argv)
{
    bench::PrepareApplication();
    QApplication app(argc, argv);
    const QStringList args = bench::ArgumentsOrUsage(app, 2, "bench_addfiles DATA_DIR [wal|rollback|sqlite3|store]");
    if (args.isEmpty())
        return 2;
    const QString work = QDir(args[1]).absoluteFilePath(QStringLiteral("addfiles"));
    const QString root = work + QStringLiteral("/lib");
    const QStringList media = MediaFiles(root);
    if (media.isEmpty()) {
        std::fprintf(stderr, "cannot write the media files under %s\n", qPrintable(root));
        return 1;
    }

    // A program folder of its own, with the songbook's format files from beside the console.
    const QString appDir = work + QStringLiteral("/app");
    QDir().mkpath(appDir + QStringLiteral("/KtvPublic"));
    td::SetAppPath(appDir);
    for (const char* name : {"ListSong.ini", "ListMedia.ini"}) {
        QFile::remove(appDir + u'/' + QString::fromLatin1(name));
        QFile::copy(
            QCoreApplication::applicationDirPath() + QStringLiteral("/../") + QString::fromLatin1(name),
            appDir + u'/' + QString::fromLatin1(name));
    }
    // The mount folder of shares: a database below it counts as on a share.
    const QString shares = work + QStringLiteral("/shares");
    td::AppIniWrite(QStringLiteral("NetworkRoot"), shares);

    const QString empty = work + QStringLiteral("/empty.db");
    for (const char* suffix : {"", "-wal", "-shm", "-journal"})
        QFile::remove(empty + QLatin1String(suffix));
    {
        td::CreateSongDatabase(empty, QStringLiteral("English"));
        auto db = td::OpenConnection(empty);
        db->execute(QStringLiteral("insert into library (root_path, name) values (") + Quoted(root) +
                    QStringLiteral(", 'Bench')"));
    }

    const QString walFile = work + QStringLiteral("/local/song.db");
    const QString rollbackFile = shares + QStringLiteral("/Server1/KtvPublic/song.db");
    const QString cliFile = work + QStringLiteral("/sqlite3/song.db");
    const QString storeWalFile = work + QStringLiteral("/local/store.db");
    const QString storeRollbackFile = shares + QStringLiteral("/Server1/KtvPublic/store.db");
    if (!CopyOfEmptyDatabase(empty, walFile) || !CopyOfEmptyDatabase(empty, rollbackFile) ||
        !CopyOfEmptyDatabase(empty, cliFile) || !CopyOfEmptyDatabase(empty, storeWalFile) ||
        !CopyOfEmptyDatabase(empty, storeRollbackFile)) {
        std::fprintf(stderr, "cannot copy %s\n", qPrintable(empty));
        return 1;
    }

    const QString only = args.value(2);
    int status = 0;
    auto report = [&](const char* name, const QString& file, double seconds) {
        const qint64 rows = SongRows(file);
        if (seconds < 0 || rows != kFiles) {
            std::fprintf(stderr, "%s: %s holds %lld songs, not %d\n", name, qPrintable(file),
                         static_cast<long long>(rows), kFiles);
            status = 1;
        }
        Print(name, seconds, "s");
    };
    if (only.isEmpty() || only == QLatin1String("wal"))
        report("addfiles_10k_wal", walFile, AddFiles(walFile, media));
    if (only.isEmpty() || only == QLatin1String("rollback"))
        report("addfiles_10k_rollback_journal", rollbackFile, AddFiles(rollbackFile, media));
    if (only.isEmpty() || only == QLatin1String("sqlite3"))
        report("sqlite3_insert_10k_one_transaction", cliFile, InsertWithSqlite3(cliFile, root, media, work));
    if (only.isEmpty() || only == QLatin1String("store")) {
        Print("store_row_commit_wal", StoreMsPerRow(storeWalFile, root, media, kStoreRows), "ms");
        Print("store_row_commit_rollback_journal", StoreMsPerRow(storeRollbackFile, root, media, kStoreRows),
              "ms");
    }
    return status;
}
