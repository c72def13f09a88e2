#pragma once
#include "songdb/Connection.h"
#include <QString>
#include <QTemporaryDir>
#include <functional>
#include <memory>

namespace td::test {

// Where a test makes its new song database: by default a file in the test's temporary folder; a
// test program for another store sets this once, before its first test, to give a new address.
using SongLocationMaker = std::function<QString(const QString& dir)>;
void SetSongLocationMaker(SongLocationMaker maker);
// Whether the tests' songbooks lie on a database server; cases about what only a SQLite file does
// skip themselves there.
bool SongFilesOnServer();
// Where a new song database goes for a test whose folder is dir: song.db in it, or a server's address.
QString NewSongLocation(const QString& dir);
#define SKIP_ON_SERVER(why)                         \
    if (::td::test::SongFilesOnServer())            \
    GTEST_SKIP() << "only a SQLite file does this: " << why

// A new song database in a temporary folder (or where the location maker says), with a connection.
class SongFile {
public:
    explicit SongFile(const QString& language = QStringLiteral("English"));
    QString path() const { return path_; }  // a file path or a server address
    QString dir() const { return dir_.path(); }
    Connection& db() { return *db_; }
    std::unique_ptr<Connection> second() const;  // another console on the same file
    // Adds a song and answers its id.
    qint64 addSong(const QString& title, const QString& singer = {}, int index = 0,
                   const QString& language = {});

private:
    QTemporaryDir dir_;
    QString path_;
    std::unique_ptr<Connection> db_;
};

}  // namespace td::test
