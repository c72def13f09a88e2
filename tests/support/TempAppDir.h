#pragma once
#include <QString>
#include <QTemporaryDir>

namespace td::test {

// Points the program directory at a fresh temporary folder for the life of a test, and forgets the
// application INI and interface language that an earlier test may have loaded.
class TempAppDir {
public:
    TempAppDir();
    ~TempAppDir();
    QString path() const { return dir_.path(); }
    QString file(const QString& relative) const { return dir_.filePath(relative); }
    // Writes a UTF-8 file below the folder, creating parent folders.
    QString write(const QString& relative, const QByteArray& content) const;
    // Makes an empty song database song.db here, points database_home.ini at it and opens it.
    bool openSongDatabase() const;

private:
    QTemporaryDir dir_;
    QString oldAppPath_;
};

}  // namespace td::test
