// Venue support runs tunedesk-admin on whatever file it is given. On a file that holds no songbook every
// command says so in one line on stderr and exits 2; none dies of a signal.
#include "songdb/Schema.h"
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <ostream>

namespace td::test {
namespace {

enum class Bad { Empty, RandomBytes, CutDatabase, Folder };

const char* badName(Bad bad)
{
    switch (bad) {
    case Bad::Empty:
        return "Empty";
    case Bad::RandomBytes:
        return "RandomBytes";
    case Bad::CutDatabase:
        return "CutDatabase";
    case Bad::Folder:
        return "Folder";
    }
    return "";
}

// One command line; BAD stands for the bad file, GOOD for a sound songbook, DIR for a scratch folder.
struct CommandLine {
    const char* name;
    const char* args;
    bool takesFolder = false;  // the bad argument names a folder to make, so a folder is no bad input
};

const CommandLine kCommands[] = {
    {"sql", "sql|BAD|select * from song"},
    {"search", "search|BAD|songbook"},
    {"library_update", "library|update|BAD|DIR"},
    {"library_import", "library|import|BAD|DIR"},
    {"singers_export", "singers|export|BAD|DIR/singers"},
    {"singers_import", "singers|import|BAD|DIR"},
    {"import_into", "import|BAD|GOOD"},
    {"import_from", "import|GOOD|BAD"},
    {"export", "export|BAD|DIR/export.db"},
    {"check", "check|BAD|--report|DIR"},
    {"print", "print|BAD|--xlsx|DIR/list.xlsx"},
    {"channels", "channels|BAD"},
    {"readings", "readings|BAD"},
    {"booklet", "booklet|BAD|DIR/booklet.pdf"},
    {"restore", "restore|BAD"},
    {"create", "create|BAD"},
    {"demo", "demo|BAD", true},
};

void PrintTo(const CommandLine& command, std::ostream* out)
{
    *out << command.args;
}

void PrintTo(Bad bad, std::ostream* out)
{
    *out << badName(bad);
}

class AdminOnBadFile : public ::testing::TestWithParam<std::tuple<CommandLine, Bad>> {
protected:
    // Makes the bad input below the scratch folder and answers its path.
    QString makeBad(Bad bad) const
    {
        const QString path = dir_.filePath(QStringLiteral("bad.db"));
        QFile f(path);
        switch (bad) {
        case Bad::Empty:
            f.open(QIODevice::WriteOnly);
            break;
        case Bad::RandomBytes: {
            QByteArray bytes(8192, '\0');
            QRandomGenerator random(17);
            for (char& c : bytes)
                c = char(random.bounded(256));
            f.open(QIODevice::WriteOnly);
            f.write(bytes);
            break;
        }
        case Bad::CutDatabase: {
            CreateSongDatabase(dir_.filePath(QStringLiteral("whole.db")), QStringLiteral("English"));
            QFile whole(dir_.filePath(QStringLiteral("whole.db")));
            whole.open(QIODevice::ReadOnly);
            f.open(QIODevice::WriteOnly);
            f.write(whole.read(whole.size() / 4));
            break;
        }
        case Bad::Folder:
            QDir().mkpath(path);
            break;
        }
        return path;
    }

    QTemporaryDir dir_;
};

TEST_P(AdminOnBadFile, SaysSoInOneLineAndExitsTwo)
{
    const auto& [command, bad] = GetParam();
    if (bad == Bad::Folder && command.takesFolder)
        GTEST_SKIP() << "a folder is what this command wants";
    ASSERT_TRUE(dir_.isValid());
    const QString good = dir_.filePath(QStringLiteral("good.db"));
    CreateSongDatabase(good, QStringLiteral("English"));
    const QString badPath = makeBad(bad);
    QStringList args = QString::fromLatin1(command.args).split(u'|');
    for (QString& a : args)
        a.replace(QStringLiteral("BAD"), badPath).replace(QStringLiteral("GOOD"), good).replace(
            QStringLiteral("DIR"), dir_.path());

    QProcess admin;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    // As under cron: no runtime folder, which Qt would otherwise complain of on stderr.
    env.remove(QStringLiteral("XDG_RUNTIME_DIR"));
    env.insert(QStringLiteral("TMPDIR"), dir_.path());
    admin.setProcessEnvironment(env);
    admin.setWorkingDirectory(dir_.path());
    admin.start(QStringLiteral(TUNEDESK_BINARY_DIR "/tunedesk-admin"), args);
    ASSERT_TRUE(admin.waitForFinished(60000));
    const QString err = QString::fromUtf8(admin.readAllStandardError());
    EXPECT_EQ(admin.exitStatus(), QProcess::NormalExit) << "died of a signal: " << err.toStdString();
    EXPECT_EQ(admin.exitCode(), 2) << err.toStdString();
    EXPECT_EQ(err.split(u'\n', Qt::SkipEmptyParts).size(), 1) << err.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Commands, AdminOnBadFile,
    ::testing::Combine(::testing::ValuesIn(kCommands),
                       ::testing::Values(Bad::Empty, Bad::RandomBytes, Bad::CutDatabase, Bad::Folder)),
    [](const ::testing::TestParamInfo<std::tuple<CommandLine, Bad>>& info) {
        return std::string(std::get<0>(info.param).name) + "_" + badName(std::get<1>(info.param));
    });

}  // namespace
}  // namespace td::test
