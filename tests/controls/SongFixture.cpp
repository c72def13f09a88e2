#include "SongFixture.h"
#include <sqlite3.h>
#include <stdexcept>

namespace td::test {

namespace {
void Exec(const QString& file, const QString& sql)
{
    sqlite3* db = nullptr;
    sqlite3_open(file.toUtf8().constData(), &db);
    char* error = nullptr;
    const int rc = sqlite3_exec(db, sql.toUtf8().constData(), nullptr, nullptr, &error);
    const std::string message = error ? error : "";
    sqlite3_free(error);
    sqlite3_close(db);
    if (rc != SQLITE_OK)
        throw std::runtime_error(message);
}
}  // namespace

SongFixture::SongFixture(int rows) : file_(dir_.file(QStringLiteral("song.db")))
{
    QString sql = QStringLiteral(
        "create table song (id integer primary key autoincrement, title text, singer text, chars integer, "
        "grade smallint, flag boolean, remark text);begin;");
    for (int i = 1; i <= rows; ++i)
        sql += QStringLiteral(
                   "insert into song (title, singer, chars, grade, flag) values ('Song %1', 'Singer %2', %3, "
                   "0, 0);")
                   .arg(i)
                   .arg(i % 7)
                   .arg(i % 10);
    sql += QStringLiteral("commit;");
    Exec(file_, sql);
    connection_ = OpenConnection(file_);
}

SongFixture::~SongFixture()
{
    connection_->close();
}

std::unique_ptr<Recordset> SongFixture::open(const QString& sql)
{
    return connection_->openRecordset(sql);
}

void SongFixture::otherConsole(const QString& sql)
{
    Exec(file_, sql);
}

QString SongFixture::format(const QString& name, const QByteArray& text) const
{
    return dir_.write(name, text);
}

}  // namespace td::test
