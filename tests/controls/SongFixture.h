#pragma once
#include "songdb/Connection.h"
#include "support/TempAppDir.h"
#include <QString>
#include <memory>

namespace td::test {

// A song database in a temporary program folder: table song(id, title, singer, chars, grade, flag, remark)
// with rows titled "Song 1" ... "Song n". A second connection stands for another console.
class SongFixture {
public:
    explicit SongFixture(int rows);
    ~SongFixture();

    const TempAppDir& dir() const { return dir_; }
    Connection& connection() { return *connection_; }
    std::unique_ptr<Recordset> open(const QString& sql = QStringLiteral("select * from song order by id"));
    // Runs a statement through another connection to the same file.
    void otherConsole(const QString& sql);
    // Writes a format file below the program folder and answers its path.
    QString format(const QString& name, const QByteArray& text) const;

private:
    TempAppDir dir_;
    QString file_;
    std::unique_ptr<Connection> connection_;
};

}  // namespace td::test
