// The pinyin search of the songbook through the search tree, and the readings table that follows every
// write to song, whichever connection makes it.
#include "../songdb/SongFile.h"
#include "shell/services/ConsoleJobHost.h"
#include "songdb/Connection.h"
#include "songdb/Schema.h"
#include "songdb/SongReadings.h"
#include "songdb/SongSearch.h"
#include "songdb/SongSession.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <gtest/gtest.h>
#include <utility>

namespace td {
namespace {

const char* const kTitles[] = {"童話", "聽海", "重來", "愛情故事", "夢中人", "你們", "甚麼",
                               "ZG Band", "Love 愛", "3 夢", "中国", "长大"};

class PinyinSearch : public ::testing::Test {
protected:
    void SetUp() override
    {
        CreateSongDatabase(location, QStringLiteral("English"));
        QString home = location;
        DatabaseHomePath(QStringLiteral("SongServer"), home, true);
        ASSERT_TRUE(SongOpenDatabase());
        for (const char* t : kTitles)
            add(*SongConnection(), t);
    }
    void TearDown() override { SongCloseDatabase(); }

    static void add(Connection& db, const char* title)
    {
        db.execute(QStringLiteral("insert into song (title, singer) values ('%1', 's')").arg(QString::fromUtf8(title)));
    }
    std::unique_ptr<Connection> other() const { return OpenConnection(location); }

    QString titles(const QString& value)
    {
        TextArray names, keys;
        if (SongSearchTree(1000, QStringLiteral("pinyin"), value, names, keys) < 0)
            return QStringLiteral("failed");
        QStringList out;
        for (int i = 1; i <= UBound(names); ++i)
            out << names[i].section(QStringLiteral("  -"), 0, 0);
        out.sort();
        return out.join(u',');
    }
    qint64 rows(const QString& where)
    {
        return SongConnection()
            ->openRecordset(QStringLiteral("select count(*) from song_reading where ") + where)
            ->value(0, 0)
            .toLongLong();
    }

    // Rows of a native statement's single answer.
    static qint64 nativeCount(const char* sql)
    {
        return SongConnection()->backend().query(QString::fromUtf8(sql), false, nullptr)->integer(0, 0);
    }

    test::TempAppDir app;
    test::ScriptedDialogs dialogs;
    const QString location = test::NewSongLocation(app.path());
};

TEST_F(PinyinSearch, InitialsAndSyllablesFindEveryChineseTitle)
{
    const std::pair<const char*, const char*> cases[] = {
        {"TH", "童話,聽海"},
        {"th", "童話,聽海"},
        {"tonghua", "童話"},
        {"tongh", "童話"},
        {"ting hai", "聽海"},
        {"CL", "重來"},  // 重 read chong
        {"ZL", "重來"},  // and zhong
        {"chonglai", "重來"},
        {"zhonglai", "重來"},
        {"AQ", "愛情故事"},
        {"aqgs", "愛情故事"},
        {"aiqing", "愛情故事"},
        {"MZR", "夢中人"},
        {"NM", "你們"},
        {"SM", "甚麼"},
        {"shenme", "甚麼"},
        {"ZG", "ZG Band,中国"},
        {"zgb", "ZG Band"},
        {"LoveA", "Love 愛"},
        {"3M", "3 夢"},
        {"3meng", "3 夢"},
        {"CD", "长大"},
        {"ZD", "长大"},
        {"Q", ""},
        {"愛", ""},
        {"a'", ""},
    };
    for (const auto& [value, expected] : cases)
        EXPECT_EQ(titles(QString::fromUtf8(value)), QString::fromUtf8(expected)) << value;
    EXPECT_EQ(titles(QString()).count(u',') + 1, int(std::size(kTitles)));
    EXPECT_TRUE(dialogs.messages().isEmpty());
}

TEST_F(PinyinSearch, ReadingsFollowAnotherConsolesWrites)
{
    ASSERT_EQ(titles(QStringLiteral("TH")), QString::fromUtf8("童話,聽海"));
    auto second = other();
    add(*second, "天后");
    second->execute(QString::fromUtf8("update song set title='海闊天空' where title='聽海'"));
    second->execute(QString::fromUtf8("delete * from song where title='童話'"));
    second->execute(QString::fromUtf8("update song set singer='x' where title='重來'"));  // title as it was
    EXPECT_EQ(rows(QStringLiteral("initials is null")), 2);
    EXPECT_EQ(titles(QStringLiteral("TH")), QString::fromUtf8("天后"));
    EXPECT_EQ(titles(QStringLiteral("hkt")), QString::fromUtf8("海闊天空"));
    EXPECT_EQ(titles(QStringLiteral("tinghai")), QString());
    EXPECT_EQ(titles(QStringLiteral("CL")), QString::fromUtf8("重來"));
    EXPECT_EQ(rows(QStringLiteral("initials is null")), 0);
    EXPECT_EQ(rows(QStringLiteral("song_id not in (select id from song)")), 0);
}

TEST_F(PinyinSearch, ASongbookWithoutReadingsIsReadOnceWithProgress)
{
    Connection& db = *SongConnection();
    EXPECT_FALSE(SongReadingsExist(db));
    EXPECT_EQ(SongReadingsWaiting(db), qint64(std::size(kTitles)));

    class Counting : public ConsoleJobHost {
    public:
        void StartProcess(const QString&, const QString&, qint64, qint64 m, bool) override { max = m; }
        void Processing(qint64 v) override { last = v; }
        qint64 max = -1, last = -1;
    } host;
    EXPECT_TRUE(UpdateSongReadings(db, &host));
    EXPECT_EQ(host.max, qint64(std::size(kTitles)));
    EXPECT_EQ(host.last, host.max);
    EXPECT_TRUE(SongReadingsExist(db));
    EXPECT_EQ(SongReadingsWaiting(db), 0);
    EXPECT_EQ(rows(QStringLiteral("song_id = (select id from song where title='") + QString::fromUtf8("重來") +
                   QStringLiteral("')")),
              2);
    // Nothing waits: a second update reads nothing.
    host.last = -1;
    EXPECT_TRUE(UpdateSongReadings(db, &host));
    EXPECT_EQ(host.last, -1);
}

TEST_F(PinyinSearch, TheInitialLetterSearchIsLeftAsItWas)
{
    TextArray names, keys;
    EXPECT_EQ(SongSearchTree(1000, QStringLiteral("*"), QString(), names, keys), 5);
    EXPECT_FALSE(keys.contains(QStringLiteral("pinyin")));
    EXPECT_EQ(SearchTypeCaption(QStringLiteral("pinyin")), u"Search song by pinyin");
    EXPECT_EQ(PinyinCondition(QString()), QString());
}

TEST_F(PinyinSearch, TwoConsolesReadingEveryTitleAtOnceWriteEachReadingOnce)
{
    // More songs than one batch, so that the other console starts between two batches of this one.
    constexpr int kSongs = 20005;
    SongConnection()->backend().execute(
        test::SongFilesOnServer()
            ? QStringLiteral("INSERT INTO song (title, singer) SELECT 'Song ' || i, 's' "
                             "FROM generate_series(1, %1) i")
                  .arg(kSongs)
            : QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) "
                             "INSERT INTO song (title, singer) SELECT 'Song ' || i, 's' FROM n")
                  .arg(kSongs));
    class OtherConsoleBetweenBatches : public ConsoleJobHost {
    public:
        explicit OtherConsoleBetweenBatches(std::unique_ptr<Connection> db) : other(std::move(db)) {}
        void Processing(qint64) override
        {
            if (std::exchange(first, false))
                finished = UpdateSongReadings(*other);
        }
        std::unique_ptr<Connection> other;
        bool first = true, finished = false;
    } host(other());
    EXPECT_TRUE(UpdateSongReadings(*SongConnection(), &host));
    EXPECT_TRUE(host.finished);
    EXPECT_EQ(nativeCount("SELECT count(*) FROM (SELECT song_id, initials, spelling FROM song_reading "
                          "GROUP BY song_id, initials, spelling HAVING count(*) > 1) twice"),
              0);
    EXPECT_EQ(nativeCount("SELECT count(*) FROM song WHERE id NOT IN (SELECT song_id FROM song_reading)"), 0);
    EXPECT_EQ(SongReadingsWaiting(*SongConnection()), 0);
    EXPECT_EQ(titles(QStringLiteral("song20005")), QStringLiteral("Song 20005"));
}

}  // namespace
}  // namespace td
