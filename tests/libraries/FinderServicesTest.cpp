#include "FinderTree.h"
#include "libraries/FileFinder.h"
#include "shell/services/Platform.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <functional>

using td::TextArray;
using td::test::FinderTree;
using testing::ElementsAre;

namespace {

FinderTree Library()
{
    return FinderTree({QStringLiteral("a.txt"), QStringLiteral("B.mp3"), QStringLiteral("alpha/w.txt"),
                       QStringLiteral("alpha/Beta/v.txt"), QStringLiteral("Sub1/x.txt"), QStringLiteral("Sub1/y.txt")});
}

// Records each step of a walk and runs an action there, as a progress dialog would.
struct RecordingProgress : td::FindProgress {
    RecordingProgress() { td::SetFindProgress(this); }
    ~RecordingProgress() override { td::SetFindProgress(nullptr); }
    void step(qsizetype position, qsizetype queued, const QString& dir, qsizetype found) override
    {
        steps << QStringLiteral("%1/%2 %3 %4").arg(position).arg(queued).arg(dir.section(u'/', -1)).arg(found);
        if (onStep)
            onStep();
    }
    QStringList steps;
    std::function<void()> onStep;
};

TEST(FindFilesWalk, ReportsEachDirectoryInQueueOrder)
{
    FinderTree tree = Library();
    RecordingProgress progress;
    TextArray names;
    int attributes = 33;
    td::FindFiles(tree.root(), {}, -1, names, attributes);
    EXPECT_THAT(progress.steps, ElementsAre(QStringLiteral("1/3 alpha 3"), QStringLiteral("2/3 Sub1 5"),
                                            QStringLiteral("3/3 Beta 6")));
}

TEST(FindFilesWalk, CancelKeepsWhatWasFoundAndTheNextWalkStartsAfresh)
{
    FinderTree tree = Library();
    RecordingProgress progress;
    progress.onStep = [] { td::FindCancelMark() = true; };
    TextArray names;
    int attributes = 33;
    EXPECT_TRUE(td::FindFiles(tree.root(), {}, -1, names, attributes));
    EXPECT_THAT(tree.relative(names), ElementsAre(QStringLiteral("a.txt"), QStringLiteral("B.mp3"),
                                                  QStringLiteral("alpha/w.txt")));

    progress.onStep = nullptr;
    td::FindFiles(tree.root(), {}, -1, names, attributes);
    EXPECT_EQ(td::UBound(names), 6);
}

TEST(DirFileNames, DirectoriesFirstMarkedBySlashThenFiles)
{
    FinderTree tree = Library();
    const struct {
        int attributes;
        QStringList expected;
    } cases[] = {
        {33, {QStringLiteral("/alpha"), QStringLiteral("/Sub1"), QStringLiteral("a.txt")}},
        {16, {QStringLiteral("/alpha"), QStringLiteral("/Sub1")}},
    };
    for (const auto& c : cases) {
        TextArray names;
        int attributes = c.attributes;
        EXPECT_TRUE(td::DirFileNames(tree.root(), QStringLiteral("*.TXT"), names, attributes));
        EXPECT_EQ(names.mid(1), c.expected) << "attributes " << c.attributes;
    }
}

class FixedDrives : public td::PlatformSeam {
public:
    FixedDrives() { td::SetPlatform(this); }
    ~FixedDrives() override { td::SetPlatform(nullptr); }
    QString computerName() override { return {}; }
    td::OsVersion osVersion() override { return {}; }
    QString desktopFontName() override { return {}; }
    QStringList drives() override { return {QStringLiteral("/"), QStringLiteral("/media/usb")}; }
    QStringList opticalDrives() override { return {}; }
};

TEST(Drives, MountPointsStandInForDrives)
{
    FixedDrives platform;
    TextArray drives;
    EXPECT_TRUE(td::FindDrivers(drives));
    EXPECT_THAT(drives, ElementsAre(QString(), QStringLiteral("/"), QStringLiteral("/media/usb")));

    int attributes = 33;
    td::DirFileNames({}, {}, drives, attributes);
    EXPECT_THAT(drives, ElementsAre(QString(), QStringLiteral("/"), QStringLiteral("/media/usb")));

    EXPECT_TRUE(td::IsDriver(QStringLiteral("/media/usb/")));
    EXPECT_TRUE(td::IsDriver(QStringLiteral("/")));
    EXPECT_FALSE(td::IsDriver(QStringLiteral("/media")));
}

TEST(GetParentPath, OneLevelUpWithoutTrailingSlash)
{
    const std::pair<const char*, const char*> cases[] = {
        {"/srv/songs/pop", "/srv/songs"}, {"/srv/songs/pop/", "/srv/songs"}, {"/srv//songs/./pop", "/srv/songs"},
        {"/srv", "/"},                    {"/", ""},                         {"", ""},
    };
    for (const auto& [path, parent] : cases)
        EXPECT_EQ(td::GetParentPath(QString::fromUtf8(path)), QString::fromUtf8(parent)) << path;
}

TEST(BrowseFile, AsksForSeveralFilesAndGivesTheirPaths)
{
    td::test::ScriptedDialogs dialogs;
    dialogs.files({QStringLiteral("/srv/a.mpg"), QStringLiteral("/srv/b.mpg")});
    TextArray names;
    EXPECT_TRUE(td::BrowseFile(QStringLiteral("/srv"), {}, names));
    EXPECT_THAT(names, ElementsAre(QString(), QStringLiteral("/srv/a.mpg"), QStringLiteral("/srv/b.mpg")));
    ASSERT_EQ(dialogs.calls().size(), 1u);
    EXPECT_EQ(dialogs.calls()[0].kind, QStringLiteral("open"));
    EXPECT_EQ(dialogs.calls()[0].text, QStringLiteral("Select Files"));
    EXPECT_EQ(dialogs.calls()[0].title, QStringLiteral("All Files(*.*)|*.*"));
}

TEST(BrowseFile, CancelGivesNothingAndAFilterIsPassedOn)
{
    td::test::ScriptedDialogs dialogs;
    TextArray names = {QString(), QStringLiteral("stale")};
    EXPECT_FALSE(td::BrowseFile({}, QStringLiteral("Video(*.mpg)|*.mpg"), names));
    EXPECT_EQ(td::UBound(names), 0);
    EXPECT_EQ(dialogs.calls().at(0).title, QStringLiteral("Video(*.mpg)|*.mpg"));
}

TEST(BrowsePath, ShowsTheFolderPickerWithItsTitle)
{
    td::test::TempAppDir app;
    td::test::ScriptedDialogs dialogs;
    dialogs.folder(QStringLiteral("/srv/songs"));
    EXPECT_EQ(td::BrowsePath(nullptr), QStringLiteral("/srv/songs"));
    ASSERT_EQ(dialogs.calls().size(), 1u);
    EXPECT_EQ(dialogs.calls()[0].kind, QStringLiteral("folder"));
    EXPECT_EQ(dialogs.calls()[0].text, QStringLiteral("Please choose directory"));
}

}  // namespace
