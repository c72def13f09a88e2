#include "songdb/Schema.h"
#include "shell/services/AppError.h"
#include "songdb/Connection.h"
#include <QFileInfo>

namespace td {

namespace {

// Text columns compare in GB2312 order, as the songbook's Chinese titles and names must.
const char* const kTables[] = {
    R"(CREATE TABLE song (
        id INTEGER PRIMARY KEY AUTOINCREMENT,
        "index" INTEGER DEFAULT 0,
        title TEXT COLLATE GB2312,
        chars SMALLINT DEFAULT 0,
        singer TEXT COLLATE GB2312,
        language TEXT COLLATE GB2312,
        style TEXT COLLATE GB2312,
        grade SMALLINT DEFAULT 0,
        channel TEXT COLLATE GB2312,
        order_time INTEGER DEFAULT 0,
        region TEXT COLLATE GB2312,
        media_file TEXT COLLATE GB2312,
        library TEXT COLLATE GB2312,
        lupd_by TEXT COLLATE GB2312,
        lupd_time DATETIME,
        remark TEXT COLLATE GB2312))",
    R"(CREATE INDEX song_index ON song ("index"))",
    R"(CREATE INDEX song_library_media ON song (library, media_file))",
    R"(CREATE INDEX song_singer ON song (singer))",
    R"(CREATE TABLE singer (
        name TEXT COLLATE GB2312,
        type TEXT COLLATE GB2312,
        region TEXT COLLATE GB2312,
        image BLOB,
        image_len INTEGER DEFAULT 0,
        description TEXT COLLATE GB2312,
        remark TEXT COLLATE GB2312))",
    R"(CREATE INDEX singer_name ON singer (name))",
    R"(CREATE TABLE library (
        root_path TEXT COLLATE GB2312,
        shared_as TEXT COLLATE GB2312,
        name TEXT COLLATE GB2312,
        remark TEXT COLLATE GB2312,
        lupd_by TEXT COLLATE GB2312,
        lupd_time DATETIME))",
    R"(CREATE INDEX library_root_path ON library (root_path))",
    R"(CREATE TABLE region (name TEXT COLLATE GB2312))",
    R"(CREATE TABLE media (
        name TEXT COLLATE GB2312,
        Position TEXT COLLATE GB2312,
        Size INTEGER,
        Modified DATETIME))",
    R"(CREATE TABLE config (
        section TEXT COLLATE GB2312,
        "key" TEXT COLLATE GB2312,
        value TEXT COLLATE GB2312))",
    R"(CREATE INDEX config_section_key ON config (section, "key"))",
};

std::unique_ptr<Connection> createFile(const QString& path)
{
    if (QFileInfo::exists(path))
        throw AppError(QStringLiteral("File already exists: ") + path);
    OpenOptions options;
    options.create = true;
    return OpenConnection(path, options);
}

QString configRow(const QString& key, const QString& value)
{
    QString v = value;
    v.replace(u'\'', QStringLiteral("''"));
    return QStringLiteral("insert into config ([section], [key], [value]) values ('Database', '") + key +
           QStringLiteral("', '") + v + QStringLiteral("')");
}

}  // namespace

void CreateSongDatabase(const QString& path, const QString& language)
{
    auto db = createFile(path);
    db->execute(QStringLiteral("begin"));
    for (const char* sql : kTables)
        db->backend().execute(QString::fromUtf8(sql));
    db->execute(configRow(QStringLiteral("Format"), kSongDatabaseFormat));
    db->execute(configRow(QStringLiteral("Version"), kSongDatabaseVersion));
    db->execute(configRow(QStringLiteral("Language"), language));
    db->execute(QStringLiteral("commit"));
}

void CreateTemplateDatabase(const QString& path)
{
    auto db = createFile(path);
    // A file of zero bytes is also an empty database, but one with a header is recognisable as one.
    db->backend().execute(QStringLiteral("PRAGMA user_version = 1"));
}

}  // namespace td
