#include "SongFile.h"
#include "songdb/Schema.h"
#include <QDir>

namespace td::test {

namespace {
SongLocationMaker& locationMaker()
{
    static SongLocationMaker maker;
    return maker;
}
}  // namespace

void SetSongLocationMaker(SongLocationMaker maker)
{
    locationMaker() = std::move(maker);
}

bool SongFilesOnServer()
{
    return bool(locationMaker());
}

QString NewSongLocation(const QString& dir)
{
    return locationMaker() ? locationMaker()(dir) : QDir(dir).filePath(QStringLiteral("song.db"));
}

SongFile::SongFile(const QString& language) : path_(NewSongLocation(dir_.path()))
{
    CreateSongDatabase(path_, language);
    db_ = OpenConnection(path_);
}

std::unique_ptr<Connection> SongFile::second() const
{
    return OpenConnection(path_);
}

qint64 SongFile::addSong(const QString& title, const QString& singer, int index, const QString& language)
{
    auto rs = db_->openRecordset(QStringLiteral("select * from song where id=-1"));
    rs->AddNew();
    rs->Fields(QStringLiteral("title")).setValue(title);
    rs->Fields(QStringLiteral("singer")).setValue(singer);
    rs->Fields(QStringLiteral("index")).setValue(index);
    rs->Fields(QStringLiteral("language")).setValue(language);
    rs->Update();
    return rs->Fields(QStringLiteral("id")).Value().toLongLong();
}

}  // namespace td::test
