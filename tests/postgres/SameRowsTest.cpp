// The initial-letter search finds exactly the same songs on a PostgreSQL server as in a SQLite file.
#include "PostgresServer.h"
#include "songdb/DemoSongbook.h"
#include "songdb/SongSearch.h"
#include "songdb/SongSession.h"
#include "support/QtPrint.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QTemporaryDir>

namespace td {
namespace {

QStringList searchRows(const QString& location, const QString& value)
{
    QString home = location;
    DatabaseHomePath(QStringLiteral("SongServer"), home, true);
    EXPECT_TRUE(SongOpenDatabase()) << location.toStdString();
    TextArray names, keys;
    SongSearchTree(1000, QStringLiteral("title"), value, names, keys);
    SongCloseDatabase();
    QStringList rows;
    for (int i = 1; i <= UBound(names); ++i)
        rows << keys.value(i) + u'\t' + names[i];
    rows.sort();  // songs of equal titles may come in either order
    return rows;
}

TEST(SameRows, InitialLetterSearchOnBothStores)
{
    test::TempAppDir app;
    test::ScriptedDialogs dialogs;
    QTemporaryDir dir;
    DemoOptions options;
    options.songs = 3000;
    options.media = false;
    const QString file = CreateDemoSongbook(dir.filePath(QStringLiteral("file")), options);
    options.database = test::PostgresServer::instance().newDatabase();
    const QString server = CreateDemoSongbook(dir.filePath(QStringLiteral("server")), options);
    int found = 0;
    for (const char* value : {"A", "B", "C", "D", "G", "H", "J", "L", "M", "Q", "S", "T", "U", "W", "X", "Y",
                              "Z", "ZG", "ZGX", "XC", "YL", "IV", "3", "LD", "DB"}) {
        const QStringList rows = searchRows(file, QString::fromLatin1(value));
        EXPECT_EQ(searchRows(server, QString::fromLatin1(value)), rows) << value;
        found += int(rows.size());
    }
    EXPECT_GT(found, 1000) << "the demo songbook should give the initials plenty to find";
    EXPECT_TRUE(dialogs.messages().isEmpty()) << dialogs.messages().join(u'\n').toStdString();
}

}  // namespace
}  // namespace td
