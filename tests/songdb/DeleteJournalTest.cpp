#include "SongFile.h"
#include "shell/services/AppError.h"
#include "shell/services/Ini.h"
#include "songdb/DeleteJournal.h"
#include "support/QtPrint.h"
#include "support/ScriptedDialogs.h"
#include "support/TableRows.h"
#include "support/TempAppDir.h"
#include <gtest/gtest.h>

namespace td {
namespace {

using test::SongFile;

const QByteArray kPhoto = [] {
    QByteArray bytes;
    for (int i = 0; i < 70000; ++i)
        bytes.append(char(i * 7 % 256));  // every byte value, NUL included
    return bytes;
}();

class DeleteJournal : public ::testing::Test {
protected:
    Connection& db() { return file.db(); }

    // A song with every field filled, texts with quotes, Chinese and a line break.
    qint64 addSong(int index, const QString& title)
    {
        auto rs = db().openRecordset(QStringLiteral("select * from song where id=-1"));
        rs->AddNew();
        const std::pair<const char*, QVariant> fields[] = {
            {"index", index},
            {"title", title},
            {"chars", int(title.size())},
            {"singer", QStringLiteral("王菲 'Faye'")},
            {"language", QStringLiteral("Mandarin")},
            {"style", QStringLiteral("Pop\r\nBallad")},
            {"grade", 3},
            {"channel", QStringLiteral("L")},
            {"order_time", 17},
            {"region", QStringLiteral("China")},
            {"media_file", QStringLiteral("/Pop/%1.dat").arg(index)},
            {"library", QStringLiteral("/media/lib1")},
            {"lupd_by", QStringLiteral("KTV01")},
            {"lupd_time", QDateTime(QDate(2025, 3, 4), QTime(5, 6, 7))},
        };
        for (const auto& [name, value] : fields)
            rs->Fields(QString::fromLatin1(name)).setValue(value);
        rs->Update();  // remark stays NULL
        return rs->Fields(QStringLiteral("id")).Value().toLongLong();
    }
    void addSinger(const QString& name, const QByteArray& photo)
    {
        auto rs = db().openRecordset(QStringLiteral("select * from singer where name='-'"));
        rs->AddNew();
        rs->Fields(QStringLiteral("name")).setValue(name);
        rs->Fields(QStringLiteral("type")).setValue(QStringLiteral("Female"));
        rs->Fields(QStringLiteral("region")).setValue(QStringLiteral("Taiwan"));
        rs->Fields(QStringLiteral("image")).AppendChunk(photo);
        rs->Fields(QStringLiteral("image_len")).setValue(int(photo.size()));
        rs->Fields(QStringLiteral("description")).setValue(QStringLiteral("說明\n\"quoted\""));
        rs->Update();
    }
    QStringList rows(const QString& select) { return test::TableRows(db(), select); }
    qint64 count(const QString& table)
    {
        return db().openRecordset(QStringLiteral("select count(*) from ") + table)->value(0, 0).toLongLong();
    }
    QStringList deleteLines() const { return test::EventLogLines(app.path(), QStringLiteral("Event:Deleted")); }
    // Moves what the journal holds now back in time, as if it had been deleted days ago.
    void ageJournal(int days)
    {
        const QString then =
            QDateTime::currentDateTimeUtc().addDays(-days).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
        db().execute(QStringLiteral("update deleted_song set deleted_at = '") + then + u'\'');
        db().execute(QStringLiteral("update deleted_singer set deleted_at = '") + then + u'\'');
    }

    test::TempAppDir app;
    test::ScriptedDialogs dialogs;
    SongFile file;
};

TEST(DeleteJournalText, TableOfADeletingStatement)
{
    const std::pair<const char*, const char*> cases[] = {
        {"DELETE FROM song WHERE id=1", "song"},
        {"  delete from \"singer\"", "singer"},
        {"delete * from [Song] where library = 'x'", "song"},
        {"delete from SINGER", "singer"},
        {"DELETE FROM song_reading WHERE song_id = 3", ""},
        {"delete from songs", ""},
        {"delete from media", ""},
        {"update song set title = 'delete from song'", ""},
        {"select * from song", ""},
    };
    for (const auto& [sql, table] : cases)
        EXPECT_EQ(KeptTableOfDelete(QString::fromUtf8(sql)), QString::fromUtf8(table)) << sql;
}

TEST(DeleteJournalText, TimesTheOperatorWrites)
{
    const std::pair<const char*, QDateTime> cases[] = {
        {"2026-11-24 18:30:15", QDateTime(QDate(2026, 11, 24), QTime(18, 30, 15))},
        {"2026-11-24 18:30", QDateTime(QDate(2026, 11, 24), QTime(18, 30))},
        {"2026-11-24T18:30", QDateTime(QDate(2026, 11, 24), QTime(18, 30))},
        {" 2026-11-24 ", QDateTime(QDate(2026, 11, 24), QTime(0, 0))},
        {"2026-13-01", QDateTime()},
        {"yesterday", QDateTime()},
        {"", QDateTime()},
        {"24/11/2026", QDateTime()},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(ParseJournalTime(QString::fromUtf8(text)), expected) << text;
}

TEST(DeleteJournalText, DaysKeptComeFromTheApplicationIni)
{
    test::TempAppDir app;
    const std::pair<const char*, int> cases[] = {
        {"", kKeepDeletedDaysDefault}, {"7", 7},  {" 90 ", 90}, {"0", 0},
        {"-5", 0},                     {"x", kKeepDeletedDaysDefault},
    };
    for (const auto& [text, days] : cases) {
        AppIniWrite(kKeepDeletedDaysKey, QString::fromUtf8(text));
        EXPECT_EQ(KeepDeletedDays(), days) << text;
    }
}

TEST_F(DeleteJournal, EverythingDeletedByStatementsComesBackFieldForField)
{
    addSong(101, QStringLiteral("月亮代表我的心"));
    addSong(102, QStringLiteral("It's \"quoted\""));
    addSinger(QStringLiteral("鄧麗君"), kPhoto);
    addSinger(QStringLiteral("No photo"), {});
    const QStringList songs = rows(QStringLiteral("select * from song order by id"));
    const QStringList singers = rows(QStringLiteral("select * from singer order by name"));
    ASSERT_TRUE(singers.join(u'\n').contains(QString::fromLatin1(kPhoto.toHex())));

    EXPECT_EQ(db().execute(QStringLiteral("delete * from song")), 2);
    EXPECT_EQ(db().execute(QStringLiteral("delete * from singer")), 2);
    ASSERT_EQ(count(QStringLiteral("song")) + count(QStringLiteral("singer")), 0);

    const RestoreOutcome outcome = RestoreDeleted(db());
    EXPECT_EQ(outcome.songs, 2);
    EXPECT_EQ(outcome.singers, 2);
    EXPECT_TRUE(outcome.refused.isEmpty()) << outcome.refused.join(u'\n').toStdString();
    EXPECT_EQ(rows(QStringLiteral("select * from song order by id")), songs);
    EXPECT_EQ(rows(QStringLiteral("select * from singer order by name")), singers);
    EXPECT_EQ(count(QStringLiteral("deleted_song")) + count(QStringLiteral("deleted_singer")), 0);
    EXPECT_TRUE(dialogs.messages().isEmpty()) << dialogs.messages().join(u'\n').toStdString();
}

TEST_F(DeleteJournal, RowsDeletedOneByOneAreOneBatchInTheEventLog)
{
    for (int i = 1; i <= 3; ++i)
        addSong(i, QStringLiteral("Song %1").arg(i));
    addSinger(QStringLiteral("A"), kPhoto);
    {
        DeleteBatch batch;
        for (const QString& table : {QStringLiteral("song"), QStringLiteral("singer")}) {
            auto rs = db().openRecordset(QStringLiteral("select * from ") + table);
            while (rs->RecordCount() > 0) {
                rs->MoveFirst();
                rs->Delete();
            }
        }
        EXPECT_TRUE(deleteLines().isEmpty()) << "written before the batch ends";
    }
    const QStringList lines = deleteLines();
    ASSERT_EQ(lines.size(), 1) << lines.join(u'\n').toStdString();
    EXPECT_TRUE(lines[0].contains(u"Deleted 3 song(s) and 1 singer(s) on console ")) << lines[0].toStdString();
    EXPECT_EQ(count(QStringLiteral("deleted_song")), 3);
    EXPECT_EQ(count(QStringLiteral("deleted_singer")), 1);
}

TEST_F(DeleteJournal, EachStatementOutsideABatchIsOneLineAndNothingDeletedNone)
{
    addSong(1, QStringLiteral("One"));
    addSong(2, QStringLiteral("Two"));
    db().execute(QStringLiteral("delete * from song where [index] = 1"));
    db().execute(QStringLiteral("delete * from song where [index] = 99"));
    db().execute(QStringLiteral("delete * from song"));
    const QStringList lines = deleteLines();
    ASSERT_EQ(lines.size(), 2) << lines.join(u'\n').toStdString();
    EXPECT_TRUE(lines[0].contains(u"Deleted 1 song(s)"));
    EXPECT_TRUE(lines[1].contains(u"Deleted 1 song(s)"));
}

TEST_F(DeleteJournal, AnotherConsolesDeletesAreKeptToo)
{
    addSong(1, QStringLiteral("One"));
    db().execute(QStringLiteral("delete * from song where [index] = 0"));  // makes the journal, deletes none
    addSong(2, QStringLiteral("Two"));
    auto other = file.second();
    other->backend().execute(QStringLiteral("DELETE FROM song"));  // a statement that bypasses the console
    EXPECT_EQ(count(QStringLiteral("deleted_song")), 2);
    EXPECT_EQ(RestoreDeleted(*other).songs, 2);
    EXPECT_EQ(count(QStringLiteral("song")), 2);
}

TEST_F(DeleteJournal, TakenIndexAndNameAreReportedAndNotOverwritten)
{
    addSong(100, QStringLiteral("Old hundred"));
    addSong(200, QStringLiteral("Two hundred"));
    addSinger(QStringLiteral("Same name"), kPhoto);
    db().execute(QStringLiteral("delete * from song"));
    db().execute(QStringLiteral("delete * from singer"));
    addSong(100, QStringLiteral("New hundred"));
    addSinger(QStringLiteral("Same name"), QByteArray("other"));
    const QStringList before = rows(QStringLiteral("select * from song order by id")) +
                               rows(QStringLiteral("select * from singer"));

    const RestoreOutcome outcome = RestoreDeleted(db());
    EXPECT_EQ(outcome.songs, 1);
    EXPECT_EQ(outcome.singers, 0);
    EXPECT_EQ(outcome.refused,
              (QStringList{QStringLiteral("song 100 \"Old hundred\" not restored: index 100 belongs to \"New hundred\""),
                           QStringLiteral("singer \"Same name\" not restored: the name is taken")}));
    const QStringList after = rows(QStringLiteral("select * from song order by id")) +
                              rows(QStringLiteral("select * from singer"));
    for (const QString& row : before)
        EXPECT_TRUE(after.contains(row)) << "overwritten: " << row.toStdString();
    EXPECT_EQ(db().openRecordset(QStringLiteral("select title from song where [index] = 200"))->text(0, 0),
              QStringLiteral("Two hundred"));
    // What was refused stays for a later restore, once the number is free again.
    EXPECT_EQ(count(QStringLiteral("deleted_song")), 1);
    EXPECT_EQ(count(QStringLiteral("deleted_singer")), 1);
    db().execute(QStringLiteral("delete * from song where [index] = 100"));
    EXPECT_EQ(RestoreDeleted(db()).refused.size(), 2);
    // Of two kept songs with one number, the one deleted last comes back.
    EXPECT_EQ(db().openRecordset(QStringLiteral("select title from song where [index] = 100"))->text(0, 0),
              QStringLiteral("New hundred"));
}

TEST_F(DeleteJournal, SinceBringsBackOnlyWhatWasDeletedFromThen)
{
    addSong(1, QStringLiteral("Long ago"));
    addSinger(QStringLiteral("Long ago"), kPhoto);
    db().execute(QStringLiteral("delete * from song"));
    db().execute(QStringLiteral("delete * from singer"));
    ageJournal(3);
    addSong(2, QStringLiteral("Just now"));
    db().execute(QStringLiteral("delete * from song"));

    const RestoreOutcome outcome = RestoreDeleted(db(), QDateTime::currentDateTime().addDays(-1));
    EXPECT_EQ(outcome.songs, 1);
    EXPECT_EQ(outcome.singers, 0);
    EXPECT_EQ(rows(QStringLiteral("select title from song")), QStringList{QStringLiteral("Just now")});
    EXPECT_EQ(RestoreDeleted(db(), QDateTime::currentDateTime().addDays(-4)).songs, 1);
    EXPECT_EQ(count(QStringLiteral("song")), 2);
    EXPECT_EQ(count(QStringLiteral("singer")), 1);
}

TEST_F(DeleteJournal, RowsPastTheirDaysGoWithTheFirstBatchOfAConnection)
{
    AppIniWrite(kKeepDeletedDaysKey, QStringLiteral("5"));
    addSong(1, QStringLiteral("Ten days ago"));
    addSinger(QStringLiteral("Ten days ago"), kPhoto);
    addSong(2, QStringLiteral("Four days ago"));
    db().execute(QStringLiteral("delete * from singer"));
    db().execute(QStringLiteral("delete * from song where [index] = 1"));
    ageJournal(10);
    db().execute(QStringLiteral("delete * from song where [index] = 2"));
    db().execute(QStringLiteral("update deleted_song set deleted_at = '") +
                 QDateTime::currentDateTimeUtc().addDays(-4).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) +
                 QStringLiteral("' where title = 'Four days ago'"));
    addSong(3, QStringLiteral("Now"));
    const QString kept = QStringLiteral("select title from deleted_song order by title");
    EXPECT_EQ(rows(kept).size(), 2) << "this connection pruned at its first batch, and not again so soon";

    auto console = file.second();
    console->execute(QStringLiteral("delete * from song"));
    EXPECT_EQ(rows(kept), (QStringList{QStringLiteral("Four days ago"), QStringLiteral("Now")}));
    EXPECT_EQ(count(QStringLiteral("deleted_singer")), 0);
}

TEST_F(DeleteJournal, ADeleteThatCannotBeKeptDoesNotRun)
{
    addSong(1, QStringLiteral("Stays"));
    db().execute(QStringLiteral("delete * from song where [index] = 0"));
    db().backend().execute(QStringLiteral("DROP TABLE deleted_song"));
    db().backend().execute(QStringLiteral("CREATE TABLE deleted_song (junk integer)"));
    EXPECT_THROW(db().execute(QStringLiteral("delete * from song")), AppError);
    EXPECT_EQ(count(QStringLiteral("song")), 1);
}

}  // namespace
}  // namespace td
