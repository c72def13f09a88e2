// A disk that fills up while the console writes: each file it replaces keeps its old content, no
// half-written temporary is left beside it, and the songbook on such a disk stays whole.
#include "shell/services/AppLog.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Ini.h"
#include "shell/services/TextStore.h"
#include "songdb/Connection.h"
#include "songdb/Schema.h"
#include "support/CaseName.h"
#include "support/MountedFolder.h"
#include "support/QtPrint.h"
#include "support/TempAppDir.h"
#include <QDir>
#include <QFile>
#include <functional>
#include <gtest/gtest.h>

namespace td::test {
namespace {

QByteArray bytesOf(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

struct Writer {
    const char* name;
    const char* file;  // below the full disk
    // Writes a value into the file; answers what the writer answers (true for writers without an answer).
    std::function<bool(const QString& path, const QString& value)> write;
    bool answers = true;  // whether the writer tells its caller of a failure
};

const Writer kWriters[] = {
    {"INI value", "tunedesk.ini",
     [](const QString& path, const QString& value) {
         return IniWrite(path, QStringLiteral("Default"), QStringLiteral("Key"), value);
     }},
    {"song information file", "Pop/song.mpg.son",
     [](const QString& path, const QString& value) {
         try {
             return WriteTextStore(path,
                                   QStringLiteral("\r\n[China]\r\ntitle=") + value + QStringLiteral("\r\n"));
         } catch (const std::exception&) {
             return false;  // its failure is an error to the job that writes it
         }
     }},
    {"event log line", "event.log",
     [](const QString&, const QString& value) {
         AppLogEvent(value);
         return true;
     },
     false},
};

class FullDisk : public ::testing::TestWithParam<Writer> {};

TEST_P(FullDisk, AFailedWriteKeepsTheFileAsItWas)
{
    const Writer& w = GetParam();
    TempAppDir app;
    MountedFolder disk(app.path(), MountedFolder::Kind::SmallDisk, 256 * 1024);
    SKIP_UNLESS_MOUNTED(disk);
    const QString path = app.file(QString::fromLatin1(w.file));
    QDir().mkpath(QFileInfo(path).absolutePath());
    ASSERT_TRUE(w.write(path, QStringLiteral("first")));
    const QByteArray before = bytesOf(path);
    const QStringList entries = QDir(QFileInfo(path).absolutePath()).entryList(QDir::Files);

    const QString filler = FillDisk(app.path());
    const bool written = w.write(path, QString(20000, u'x'));
    EXPECT_TRUE(!written || !w.answers);
    EXPECT_EQ(bytesOf(path), before);
    QFile::remove(filler);
    EXPECT_EQ(QDir(QFileInfo(path).absolutePath()).entryList(QDir::Files), entries) << "a temporary was left";

    // Once there is room again, the same write goes through.
    ASSERT_TRUE(w.write(path, QStringLiteral("again")));
    EXPECT_NE(bytesOf(path), before);
}

INSTANTIATE_TEST_SUITE_P(Writers, FullDisk, ::testing::ValuesIn(kWriters), kNamedCase);

}  // namespace
}  // namespace td::test
