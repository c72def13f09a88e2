// Two consoles on one songbook, on each store: what one saves the other sees, a row one deleted
// is reported to the other and never written again, a lost race says so, and two processes
// editing in loops lose and duplicate nothing.
#include "PostgresServer.h"
#include "shell/services/AppError.h"
#include "songdb/Connection.h"
#include "songdb/Schema.h"
#include "support/QtPrint.h"
#include <QDeadlineTimer>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

namespace td {
namespace {

const QString kRowGone = QStringLiteral(
    "Row cannot be located for updating. Some values may have been changed since it was last read.");

class TwoConsoles : public ::testing::TestWithParam<const char*> {
protected:
    void SetUp() override
    {
        location = postgres() ? test::PostgresServer::instance().newDatabase()
                              : dir.filePath(QStringLiteral("song.db"));
        CreateSongDatabase(location, QStringLiteral("English"));
        a = OpenConnection(location);
        b = OpenConnection(location);
    }
    bool postgres() const { return QLatin1String(GetParam()) == QLatin1String("postgres"); }

    static qint64 addSong(Connection& db, const QString& title)
    {
        auto rs = db.openRecordset(QStringLiteral("select * from song where id=-1"));
        rs->AddNew();
        rs->Fields(QStringLiteral("title")) = title;
        rs->Update();
        return rs->bookmark();
    }
    static qint64 count(Connection& db, const QString& where = QStringLiteral("1=1"))
    {
        return db.openRecordset(QStringLiteral("select count(*) as n from song where ") + where)
            ->Fields(0)
            .Value()
            .toLongLong();
    }

    QTemporaryDir dir;
    QString location;
    std::unique_ptr<Connection> a, b;
};

TEST_P(TwoConsoles, WhatOneSavesTheOthersRefreshShows)
{
    const qint64 first = addSong(*a, QStringLiteral("First"));
    auto list = b->openRecordset(QStringLiteral("select * from song order by id"));
    ASSERT_EQ(list->RecordCount(), 1);

    auto edit = a->openRecordset(QStringLiteral("select * from song order by id"));
    edit->Fields(QStringLiteral("title")) = QStringLiteral("First, renamed");
    edit->Update();
    const qint64 second = addSong(*a, QStringLiteral("Second"));

    list->Requery();
    ASSERT_EQ(list->RecordCount(), 2);
    ASSERT_TRUE(list->setBookmark(first));
    EXPECT_EQ(list->Fields(QStringLiteral("title")).Text(), u"First, renamed");
    ASSERT_TRUE(list->setBookmark(second));
    EXPECT_EQ(list->Fields(QStringLiteral("Title")).Text(), u"Second");

    a->execute(QStringLiteral("delete * from song where id=") + QString::number(first));
    list->Requery();
    EXPECT_EQ(list->RecordCount(), 1);
    EXPECT_FALSE(list->setBookmark(first));  // a refresh finds the row gone by its bookmark
}

TEST_P(TwoConsoles, ARowTheOtherDeletedIsReportedAndNeverWrittenAgain)
{
    const qint64 id = addSong(*a, QStringLiteral("Doomed"));
    auto rs = a->openRecordset(QStringLiteral("select * from song"));
    b->execute(QStringLiteral("delete * from song where id=") + QString::number(id));

    rs->Fields(QStringLiteral("remark")) = QStringLiteral("saved after the delete");
    try {
        rs->Update();
        ADD_FAILURE() << "the save of a deleted row succeeded";
    } catch (const AppError& e) {
        EXPECT_EQ(ErrorText(e), kRowGone);
    }
    rs->CancelUpdate();
    EXPECT_THROW(rs->Delete(), AppError);
    EXPECT_EQ(count(*a), 0);
    EXPECT_EQ(count(*b), 0);
}

TEST_P(TwoConsoles, AnOptimisticWriteThatLostTheRaceSaysSo)
{
    addSong(*a, QStringLiteral("Original"));
    auto mine = a->openRecordset(QStringLiteral("select * from song"));
    auto theirs = b->openRecordset(QStringLiteral("select * from song"));

    theirs->Fields(QStringLiteral("title")) = QStringLiteral("Theirs");
    theirs->Update();
    mine->Fields(QStringLiteral("title")) = QStringLiteral("Mine");
    try {
        mine->Update();
        ADD_FAILURE() << "the second write of the same field won silently";
    } catch (const AppError& e) {
        EXPECT_EQ(ErrorText(e), kRowGone);
    }
    mine->CancelUpdate();
    // A field the other console did not touch still saves.
    mine->Fields(QStringLiteral("remark")) = QStringLiteral("note");
    mine->Update();
    auto check = b->openRecordset(QStringLiteral("select title, remark from song"));
    EXPECT_EQ(check->Fields(0).Text(), u"Theirs");
    EXPECT_EQ(check->Fields(1).Text(), u"note");
}

// One process's part of the loop: adds its own songs, saves songs of both, deletes some of its
// own, and writes to `alive` the titles of its songs that should remain. Answers the exit code.
int editInLoops(const QString& location, int process, const QString& alive, int milliseconds)
{
    try {
        auto db = OpenConnection(location);
        std::mt19937 rng(unsigned(process) * 7919u + 1u);
        QStringList mine;
        const QString prefix = QStringLiteral("P%1-").arg(process);
        QDeadlineTimer deadline(milliseconds);
        for (int n = 0; !deadline.hasExpired(); ++n) {
            const QString title = prefix + QString::number(n);
            auto add = db->openRecordset(QStringLiteral("select * from song where id=-1"));
            add->AddNew();
            add->Fields(QStringLiteral("title")) = title;
            add->Update();
            mine << title;

            auto all = db->openRecordset(QStringLiteral("select * from song"));
            if (all->RecordCount() > 0) {
                all->setAbsolutePosition(qsizetype(rng() % quint32(all->RecordCount())) + 1);
                all->Fields(QStringLiteral("remark")) = QStringLiteral("saved by %1 at %2").arg(process).arg(n);
                try {
                    all->Update();  // the other may have deleted it or saved it first
                } catch (const AppError&) {
                    all->CancelUpdate();
                }
            }
            if (rng() % 3 == 0 && !mine.isEmpty()) {
                const QString victim = mine.takeAt(qsizetype(rng() % quint32(mine.size())));
                auto del = db->openRecordset(QStringLiteral("select * from song where title='") + victim + u'\'');
                if (del->RecordCount() != 1)
                    return 3;
                del->Delete();
            }
        }
        QFile out(alive);
        if (!out.open(QIODevice::WriteOnly))
            return 4;
        out.write(mine.join(u'\n').toUtf8());
        return 0;
    } catch (const std::exception& e) {
        fprintf(stderr, "process %d: %s\n", process, ErrorText(e).toUtf8().constData());
        return 5;
    }
}

TEST_P(TwoConsoles, TwoProcessesEditingInLoopsLoseAndDuplicateNothing)
{
    a.reset();
    b.reset();
    std::vector<pid_t> children;
    for (int process = 0; process < 2; ++process) {
        const pid_t pid = fork();
        ASSERT_GE(pid, 0);
        if (pid == 0)
            _exit(editInLoops(location, process, dir.filePath(QStringLiteral("alive%1").arg(process)), 1500));
        children.push_back(pid);
    }
    for (const pid_t pid : children) {
        int status = 0;
        ASSERT_EQ(waitpid(pid, &status, 0), pid);
        ASSERT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), 0) << "child " << pid;
    }
    QStringList expected;
    for (int process = 0; process < 2; ++process) {
        QFile in(dir.filePath(QStringLiteral("alive%1").arg(process)));
        ASSERT_TRUE(in.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(in.readAll());
        if (!text.isEmpty())
            expected << text.split(u'\n');
    }
    auto db = OpenConnection(location);
    auto rs = db->openRecordset(QStringLiteral("select title from song order by id"));
    QStringList found;
    for (qsizetype i = 0; i < rs->RecordCount(); ++i)
        found << rs->text(i, 0);
    EXPECT_EQ(QSet<QString>(found.begin(), found.end()).size(), found.size()) << "a row was duplicated";
    expected.sort();
    found.sort();
    EXPECT_EQ(found, expected);
    EXPECT_GT(found.size(), 10) << "the loops did hardly any work";
}

INSTANTIATE_TEST_SUITE_P(Stores, TwoConsoles, ::testing::Values("sqlite", "postgres"),
                         [](const auto& info) { return std::string(info.param); });

}  // namespace
}  // namespace td
