// Long jobs on their own thread: progress, questions in order, cancel within a quarter second, rows
// kept up to a failure, and a stop that never waits for an answer nobody will give.
#include "controls/JobRunner.h"
#include "controls/frmProcess.h"
#include "shell/services/AppError.h"
#include "shell/services/ConsoleJobHost.h"
#include "songdb/Connection.h"
#include "support/QtApp.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include "support/Timing.h"
#include <QApplication>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPushButton>
#include <QTimer>
#include <QWidget>
#include <atomic>
#include <gtest/gtest.h>

using namespace td;

namespace {

class JobRunnerTest : public ::testing::Test {
protected:
    void TearDown() override { frmProcess::EndShown(); }

    // Lets the interface thread work until the runner has finished, as the console's loop would.
    bool waitFor(JobRunner& runner, int ms = 5000)
    {
        QElapsedTimer clock;
        clock.start();
        while (runner.running() && clock.elapsed() < ms)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QCoreApplication::processEvents();
        return !runner.running();
    }

    bool appReady = (test::EnsureQtApp(), true);  // before the window
    // The job's StartProcess has reached the interface thread: the progress window stands.
    static bool progressShown()
    {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w->objectName() == QLatin1String("frmProcess") && w->isVisible())
                return true;
        return false;
    }

    test::TempAppDir dir;
    test::ScriptedDialogs dialogs;
    QWidget window;
};

TEST_F(JobRunnerTest, CancelReachesTheJobWithinAQuarterSecondAndNoResumes)
{
    JobRunner runner(&window);
    std::atomic<qint64> shownAt{-1}, seenAt{-1};
    QElapsedTimer clock;
    clock.start();
    int stops = 0;
    dialogs.answer(MsgAnswer::No);   // first cancel: go on
    dialogs.answer(MsgAnswer::Yes);  // second cancel: stop
    ASSERT_TRUE(runner.start([&](JobHost& host) {
        host.StartProcess(QString(), QStringLiteral("Counting"), 0, 1000000000, true);
        for (qint64 i = 1;; ++i) {
            host.Processing(i);
            const bool canceled = host.IsProcessCanceled();
            if (canceled && seenAt < 0)
                seenAt = clock.elapsed();
            if (canceled && JobStopWanted(host))
                break;
            if (i % 1000 == 0 && stops == 0 && seenAt >= 0) {
                stops = 1;  // resumed after the first No: the flag is down again
                EXPECT_FALSE(host.IsProcessCanceled());
            }
        }
        host.EndProcess();
    }));
    EXPECT_FALSE(window.isEnabled());
    // The operator presses cancel twice while the job counts: once the progress window shows, and
    // again after the first question was answered.
    for (int press = 0; press < 2; ++press) {
        QElapsedTimer wait;
        wait.start();
        while (wait.elapsed() < 5000 && !(progressShown() && dialogs.calls().size() == std::size_t(press)))
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        ASSERT_TRUE(progressShown());
        if (press == 0)
            shownAt = clock.elapsed();
        frmProcess::Instance().cancelButton()->click();
        wait.restart();
        while (wait.elapsed() < 2000 && (press == 0 ? seenAt < 0 : runner.running()))
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    ASSERT_TRUE(waitFor(runner));
    ASSERT_GE(seenAt.load(), 0);
    EXPECT_LT(seenAt - shownAt, test::kPromptMs);
    EXPECT_EQ(dialogs.messages(), QStringList({QStringLiteral("Do you want to cancel the process?"),
                                               QStringLiteral("Do you want to cancel the process?")}));
    EXPECT_TRUE(window.isEnabled());
}

TEST_F(JobRunnerTest, QuestionsAndMessagesComeInTheJobsOrderWithTheirAnswers)
{
    JobRunner runner(&window);
    dialogs.answer(MsgAnswer::No);
    dialogs.answer(MsgAnswer::Cancel);
    std::vector<MsgAnswer> answers;
    runner.start([&](JobHost& host) {
        answers.push_back(host.Ask(QStringLiteral("First?"), MsgButtons::YesNo));
        host.Inform(QStringLiteral("Between"));
        answers.push_back(host.Ask(QStringLiteral("Second?"), MsgButtons::OkCancel));
        host.Fail(QStringLiteral("Broken"));
    });
    ASSERT_TRUE(waitFor(runner));
    EXPECT_EQ(answers, (std::vector<MsgAnswer>{MsgAnswer::No, MsgAnswer::Cancel}));
    ASSERT_EQ(dialogs.calls().size(), 4u);
    const MsgIcon icons[] = {MsgIcon::Question, MsgIcon::Information, MsgIcon::Question, MsgIcon::Critical};
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(dialogs.calls()[i].icon, icons[i]) << i;
    EXPECT_EQ(dialogs.messages(), QStringList({QStringLiteral("First?"), QStringLiteral("Between"),
                                               QStringLiteral("Second?"), QStringLiteral("Broken")}));
}

// A job that writes rows one at a time on its own connection keeps what it wrote before a failure.
void WriteRows(Connection& db, JobHost& host, int count)
{
    host.StartProcess(QString(), QStringLiteral("Writing"), 0, count, true);
    for (int i = 1; i <= count; ++i) {
        try {
            db.execute(QStringLiteral("insert into t (id) values (%1)").arg(i == 4 ? 2 : i));
        } catch (const std::exception& e) {
            host.Fail(QStringLiteral("Write failed!") + ErrSuffix(e));
            if (host.Ask(QStringLiteral("Stop process?"), MsgButtons::YesNo) == MsgAnswer::Yes)
                break;
        }
        host.Processing(i);
        if (JobStopWanted(host))
            break;
    }
    host.EndProcess();
}

TEST_F(JobRunnerTest, RowsBeforeAFailureStayAndTheAnswerDecidesTheRest)
{
    const QString file = dir.file(QStringLiteral("rows.db"));
    {
        auto db = OpenConnection(file, {5000, false, true});
        db->execute(QStringLiteral("create table t (id integer primary key)"));
    }
    struct Case {
        MsgAnswer stop;
        int rows;
    } cases[] = {{MsgAnswer::Yes, 3}, {MsgAnswer::No, 5}};
    for (const Case& c : cases) {
        {
            auto db = OpenConnection(file);
            db->execute(QStringLiteral("delete from t"));
        }
        dialogs.clear();
        dialogs.answer(c.stop);
        JobRunner runner(&window);
        runner.start([&](JobHost& host) {
            auto db = OpenConnection(file);
            WriteRows(*db, host, 6);
        });
        ASSERT_TRUE(waitFor(runner));
        auto db = OpenConnection(file);
        EXPECT_EQ(db->openRecordset(QStringLiteral("select * from t"))->RecordCount(), c.rows);
        ASSERT_EQ(dialogs.messages().size(), 2);
        EXPECT_TRUE(dialogs.messages()[0].startsWith(QStringLiteral("Write failed! Err=")));
    }

    // The same job from the command line: the failure is counted, the question gets its default.
    auto db = OpenConnection(file);
    db->execute(QStringLiteral("delete from t"));
    ConsoleJobHost console;
    WriteRows(*db, console, 6);
    EXPECT_EQ(console.failures(), 1);
    EXPECT_EQ(console.questions(), QStringList{QStringLiteral("Stop process?")});
    EXPECT_EQ(db->openRecordset(QStringLiteral("select * from t"))->RecordCount(), 5);
    ConsoleJobHost stopping;
    stopping.setAnswer(QStringLiteral("Stop"), MsgAnswer::Yes);
    db->execute(QStringLiteral("delete from t"));
    WriteRows(*db, stopping, 6);
    EXPECT_EQ(db->openRecordset(QStringLiteral("select * from t"))->RecordCount(), 3);
}

TEST_F(JobRunnerTest, StopEndsAJobThatWaitsForAnAnswerAndShowsNothingMore)
{
    // The dialog seam never answers while the stop comes: the job waits inside its question.
    class NeverAnswering : public DialogSeam {
    public:
        MsgAnswer message(const QString& text, MsgButtons, MsgIcon, const QString&) override
        {
            shown << text;
            runner->stop();  // the end of the program, chosen while the box is up
            return MsgAnswer::Yes;
        }
        std::optional<QString> inputBox(const QString&, const QString&, const QString&) override
        {
            return {};
        }
        QStringList openFiles(const OpenFileRequest&) override { return {}; }
        QString saveFile(const OpenFileRequest&) override { return {}; }
        QString pickFolder(const QString&, const QString&) override { return {}; }
        JobRunner* runner = nullptr;
        QStringList shown;
    } seam;
    SetDialogs(&seam);
    JobRunner runner(&window);
    seam.runner = &runner;
    std::atomic<int> finished{0};
    QObject::connect(&runner, &JobRunner::Finished, [&] { ++finished; });
    std::vector<MsgAnswer> answers;
    runner.start([&](JobHost& host) {
        answers.push_back(host.Ask(QStringLiteral("Go on?"), MsgButtons::YesNo));
        answers.push_back(host.Ask(QStringLiteral("Really?"), MsgButtons::YesNo));
        EXPECT_TRUE(JobStopWanted(host));
    });
    ASSERT_TRUE(waitFor(runner));
    SetDialogs(&dialogs);
    EXPECT_EQ(seam.shown, QStringList{QStringLiteral("Go on?")});
    EXPECT_EQ(answers, (std::vector<MsgAnswer>{MsgAnswer::No, MsgAnswer::No}));
    EXPECT_EQ(finished.load(), 1);
    EXPECT_TRUE(window.isEnabled());
}

TEST_F(JobRunnerTest, ARunnerTakesOneJobAtATimeAndItsWindowGoingStopsIt)
{
    auto* owner = new QWidget;
    auto* runner = new JobRunner(owner);
    std::atomic<bool> ended{false};
    ASSERT_TRUE(runner->start([&](JobHost& host) {
        while (!JobStopWanted(host))
            host.Processing(0);
        ended = true;
    }));
    EXPECT_FALSE(runner->start([](JobHost&) {}));
    delete owner;  // the window closes under the job
    EXPECT_TRUE(ended);
    QCoreApplication::processEvents();
}

}  // namespace
