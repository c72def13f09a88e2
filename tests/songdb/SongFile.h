#pragma once
#include "songdb/Connection.h"
#include <QString>
#include <QTemporaryDir>
#include <memory>

namespace td::test {

// A new song database in a temporary folder, with a connection to it.
class SongFile {
public:
    explicit SongFile(const QString& language = QStringLiteral("English"));
    QString path() const { return path_; }
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
