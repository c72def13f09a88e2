// tunedesk-admin booklet as venue support runs it: a PDF and its summary line, or exit 2 with the reason.
#include "songdb/DemoSongbook.h"
#include "support/QtPrint.h"
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

struct Outcome {
    int exit = -1;
    QString out, err;
};

class BookletCommandTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!QFile::exists(admin))
            GTEST_SKIP() << "tunedesk-admin is not built";
        td::DemoOptions demo;
        demo.songs = 40;
        demo.media = false;
        songbook = td::CreateDemoSongbook(tmp.path(), demo);
    }
    Outcome run(const QStringList& args)
    {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), tmp.path());
        p.setProcessEnvironment(env);
        p.start(admin, QStringList{QStringLiteral("booklet")} + args);
        p.waitForFinished(60000);
        return {p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()).trimmed(),
                QString::fromUtf8(p.readAllStandardError()).trimmed()};
    }
    const QString admin = QStringLiteral(TUNEDESK_BINARY_DIR "/tunedesk-admin");
    QTemporaryDir tmp;
    QString songbook;
};

TEST_F(BookletCommandTest, WritesThePdfAndSaysHowManySongsOnHowManyPages)
{
    const QString pdf = tmp.filePath(QStringLiteral("b.pdf"));
    const Outcome r = run({songbook, pdf, QStringLiteral("--group"), QStringLiteral("length"),
                           QStringLiteral("--columns"), QStringLiteral("2"), QStringLiteral("--paper"),
                           QStringLiteral("letter"), QStringLiteral("--venue"), QStringLiteral("KTV")});
    EXPECT_EQ(r.exit, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains(QRegularExpression(QStringLiteral("^\\d+ song\\(s\\) on 1 page\\(s\\)$"))))
        << r.out.toStdString();
    EXPECT_TRUE(QFile::exists(pdf));
}

struct BadArguments {
    QStringList args;
    const char* says;
};

TEST_F(BookletCommandTest, BadArgumentsAreOneLineAndExitTwo)
{
    const QString pdf = tmp.filePath(QStringLiteral("b.pdf"));
    const BadArguments cases[] = {
        {{songbook, pdf, QStringLiteral("--columns"), QStringLiteral("5")}, "--columns is 2, 3 or 4, not 5"},
        {{songbook, pdf, QStringLiteral("--columns"), QStringLiteral("x")}, "--columns is 2, 3 or 4, not x"},
        {{songbook, pdf, QStringLiteral("--group"), QStringLiteral("genre")},
         "--group is singer, length or language, not genre"},
        {{songbook, pdf, QStringLiteral("--paper"), QStringLiteral("a3")}, "--paper is a4 or letter, not a3"},
        {{tmp.filePath(QStringLiteral("none.db")), pdf}, "no such database file"},
        {{songbook, tmp.filePath(QStringLiteral("no/dir/b.pdf"))}, "Can't write file - <"},
    };
    for (const BadArguments& c : cases) {
        const Outcome r = run(c.args);
        EXPECT_EQ(r.exit, 2) << c.says;
        EXPECT_EQ(r.err.count(u'\n'), 0) << r.err.toStdString();
        EXPECT_TRUE(r.err.contains(QString::fromUtf8(c.says))) << r.err.toStdString();
    }
    EXPECT_FALSE(QFile::exists(pdf));
}

}  // namespace
