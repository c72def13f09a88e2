// Media files that cannot be decoded: empty, unreadable, a folder under a media name, text or noise under
// a media name, a sound file cut inside its header. The channel detection lists each song for the
// operator's ears and writes nothing to it; the files themselves are never touched.
#include "../exchange/ExchangeTestSupport.h"
#include "songbook/DetectChannels.h"
#include "songdb/Connection.h"
#include "songdb/Schema.h"
#include "support/QtPrint.h"
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

namespace td::test {
namespace {

// A WAV header that promises a minute of sound, and no sound after it.
QByteArray wavHeaderOnly()
{
    QByteArray b("RIFF\x24\x10\xB1\x02WAVEfmt ", 16);
    b += QByteArray("\x10\0\0\0\x01\0\x02\0\x44\xAC\0\0\x10\xB1\x02\0\x04\0\x10\0", 20);
    b += QByteArray("data\0\x10\xB1\x02", 8);
    return b;
}

struct BadFile {
    const char* name;
    QByteArray bytes;
    bool folder;  // a folder of that name instead of a file
    bool hidden;  // mode 000, read as another user
};

const BadFile kBadFiles[] = {
    {"empty.mpg", QByteArray(), false, false},
    {"locked.mpg", QByteArray(4096, 'm'), false, true},
    {"folder.mpg", QByteArray(), true, false},
    {"words.vob", QByteArray("These are the words of a song, not its sound.\n").repeated(50), false, false},
    {"noise.dat", QByteArray(64 * 1024, '\x5A'), false, false},
    {"cut.wav", wavHeaderOnly(), false, false},
};

// Root reads any file; for a mode of 000 to count, the detection reads as nobody.
class AsNobody {
public:
    AsNobody()
    {
        if (::geteuid() == 0) {
            ::setfsuid(65534);
            active_ = ::setfsuid(uid_t(-1)) == 65534;
        }
    }
    ~AsNobody()
    {
        if (active_)
            ::setfsuid(0);
    }

private:
    bool active_ = false;
};

TEST(BadMedia, ChannelDetectionListsEachSongAndWritesNothing)
{
    QTemporaryDir tmp;
    const QString library = tmp.filePath(QStringLiteral("lib"));
    QDir().mkpath(library);
    // Nobody may pass through the folders, as a venue's operator could.
    ::chmod(QFile::encodeName(tmp.path()).constData(), 0755);
    ::chmod(QFile::encodeName(library).constData(), 0755);
    const QString dbFile = tmp.filePath(QStringLiteral("song.db"));
    CreateSongDatabase(dbFile, QStringLiteral("English"));
    auto db = OpenConnection(dbFile);
    QMap<QString, QByteArray> before;
    int index = 1000;
    for (const BadFile& f : kBadFiles) {
        const QString path = library + u'/' + QString::fromLatin1(f.name);
        if (f.folder) {
            QDir().mkpath(path);
        } else {
            QFile out(path);
            ASSERT_TRUE(out.open(QIODevice::WriteOnly));
            out.write(f.bytes);
            out.close();
            ::chmod(QFile::encodeName(path).constData(), f.hidden ? 0000 : 0644);
            before[path] = f.bytes;
        }
        db->execute(
            QStringLiteral(
                "insert into song ([index], title, library, media_file) values (%1, '%2', '%3', '/%2')")
                .arg(++index)
                .arg(QString::fromLatin1(f.name), library));
    }

    RecordingHost host;
    DetectChannelsResult result;
    {
        AsNobody nobody;
        result = DetectChannels(*db, {}, host);
    }

    EXPECT_EQ(result.songs, qint64(std::size(kBadFiles)));
    EXPECT_EQ(result.written, 0);
    EXPECT_FALSE(result.canceled);
    QStringList undecided;
    for (const UndecidedSong& s : result.undecided) {
        undecided << QFileInfo(s.path).fileName();
        EXPECT_EQ(s.verdict.channel, QStringLiteral("unknown")) << qPrintable(s.path);
        EXPECT_FALSE(s.verdict.reason.isEmpty()) << qPrintable(s.path);
    }
    QStringList names;
    for (const BadFile& f : kBadFiles)
        names << QString::fromLatin1(f.name);
    EXPECT_EQ(undecided, names);
    EXPECT_EQ(rowsOf(*db, QStringLiteral("select count(*) from song where channel is not null")),
              QStringList{QStringLiteral("0")});
    for (auto it = before.cbegin(); it != before.cend(); ++it) {
        QFile in(it.key());
        ASSERT_TRUE(in.open(QIODevice::ReadOnly)) << qPrintable(it.key());
        EXPECT_TRUE(in.readAll() == it.value()) << qPrintable(it.key());
    }
}

}  // namespace
}  // namespace td::test
