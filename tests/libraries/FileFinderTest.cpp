#include "libraries/FileBrowse.h"
#include "libraries/FileFinder.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Platform.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using td::TextArray;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

QStringList L(std::initializer_list<const char*> names)
{
    QStringList out;
    for (const char* n : names)
        out << QString::fromUtf8(n);
    return out;
}

// Files in a temporary folder; results are compared relative to its root.
class FinderTest : public testing::Test {
protected:
    void make(const QStringList& files)
    {
        for (const QString& f : files) {
            QDir(root()).mkpath(QFileInfo(path(f)).path());
            QFile(path(f)).open(QIODevice::WriteOnly);
        }
    }
    QString root() const { return dir.path(); }
    QString path(const QString& relative) const { return dir.filePath(relative); }
    QByteArray native(const char* relative) const
    {
        return QFile::encodeName(path(QString::fromUtf8(relative)));
    }
    QStringList relative(const TextArray& names) const
    {
        return names.mid(1).replaceInStrings(root() + u'/', QString());
    }
    QStringList find(const QString& pattern, int depth, int attributes = 33)
    {
        TextArray names;
        td::FindFiles(root(), pattern, depth, names, attributes);
        return relative(names);
    }
    QTemporaryDir dir;
};

// Hidden by dot name: .dot.txt, .cache; by the ".hidden" list: marked.son, Skipped.
class LibraryTest : public FinderTest {
protected:
    LibraryTest()
    {
        make(L({"b.TXT", "a.txt", "C.mp3", "d.MP3", "readme", ".dot.txt", "marked.son", "Sub1/x.txt",
                "Sub1/deep/y.txt", "Sub1/deep/deeper/z.txt", "alpha/w.txt", "alpha/Beta/v.txt",
                ".cache/c.txt", "Skipped/s.txt"}));
        QFile list(path(QStringLiteral(".hidden")));
        if (list.open(QIODevice::WriteOnly))
            list.write("marked.son\nSkipped\r\n");
    }
};

TEST_F(LibraryTest, DepthPatternsHiddenFilesAndOrder)
{
    const struct {
        const char* pattern;
        int depth;
        int attributes;
        QStringList expected;
    } cases[] = {
        // Breadth first, and names sorted without regard to case in each directory.
        {"*.*", 0, 33, L({"a.txt", "b.TXT", "C.mp3", "d.MP3", "readme"})},
        {"*.*", 1, 33, L({"a.txt", "b.TXT", "C.mp3", "d.MP3", "readme", "alpha/w.txt", "Sub1/x.txt"})},
        {"*.*", -1, 33,
         L({"a.txt", "b.TXT", "C.mp3", "d.MP3", "readme", "alpha/w.txt", "Sub1/x.txt", "alpha/Beta/v.txt",
            "Sub1/deep/y.txt", "Sub1/deep/deeper/z.txt"})},
        // Patterns without regard to case; empty means all; they apply to files, not to directories walked.
        {"", 0, 0, L({"a.txt", "b.TXT", "C.mp3", "d.MP3", "readme"})},
        {"*.TXT;*.mp3", 0, 33, L({"a.txt", "b.TXT", "C.mp3", "d.MP3"})},
        {" *.mp3 ; README ", 0, 33, L({"C.mp3", "d.MP3", "readme"})},
        {"?.txt", 1, 33, L({"a.txt", "b.TXT", "alpha/w.txt", "Sub1/x.txt"})},
        {"read*.*", 0, 33, L({"readme"})},
        // Hidden files and directories, by dot name or by the ".hidden" list, only with flag 2.
        {"*.son", 0, 33, {}},
        {"*.son", 0, 3, L({"marked.son"})},
        {"*.txt", 1, 3,
         L({".dot.txt", "a.txt", "b.TXT", ".cache/c.txt", "alpha/w.txt", "Skipped/s.txt", "Sub1/x.txt"})},
        // Directories only: the direct subdirectories, whatever the depth.
        {"*.txt", 5, 16, L({"alpha", "Sub1"})},
        {"", 0, 18, L({".cache", "alpha", "Skipped", "Sub1"})},
    };
    for (const auto& c : cases)
        EXPECT_EQ(find(QString::fromUtf8(c.pattern), c.depth, c.attributes), c.expected)
            << "pattern \"" << c.pattern << "\" depth " << c.depth << " attributes " << c.attributes;
}

TEST_F(LibraryTest, MissingPathOrFileGivesEmptyList)
{
    for (const QString& p : {path(QStringLiteral("nothing")), path(QStringLiteral("a.txt")), QString()}) {
        TextArray names = L({"", "stale"});
        int attributes = 33;
        EXPECT_FALSE(td::FindFiles(p, {}, -1, names, attributes)) << p.toStdString();
        EXPECT_EQ(td::UBound(names), 0);
    }
}

TEST_F(LibraryTest, TrailingSlashAndMarkingByTheProgram)
{
    ASSERT_TRUE(td::SetFileHidden(path(QStringLiteral("Sub1/x.txt"))));
    TextArray names;
    int attributes = 33;
    td::FindFiles(root() + u'/', QStringLiteral("x.txt"), 1, names, attributes);
    EXPECT_EQ(td::UBound(names), 0);
    attributes = 3;
    td::FindFiles(root() + u'/', QStringLiteral("x.txt"), 1, names, attributes);
    EXPECT_THAT(names, ElementsAre(QString(), path(QStringLiteral("Sub1/x.txt"))));
}

// Records each step of a walk and runs an action there, as a progress dialog would.
struct RecordingProgress : td::FindProgress {
    RecordingProgress() { td::SetFindProgress(this); }
    ~RecordingProgress() override { td::SetFindProgress(nullptr); }
    void step(qsizetype position, qsizetype queued, const QString& dir, qsizetype found) override
    {
        steps
            << QStringLiteral("%1/%2 %3 %4").arg(position).arg(queued).arg(dir.section(u'/', -1)).arg(found);
        if (onStep)
            onStep();
    }
    QStringList steps;
    std::function<void()> onStep;
};

TEST_F(LibraryTest, ProgressAfterEachDirectoryAndCancelKeepsWhatWasFound)
{
    RecordingProgress progress;
    find({}, -1);
    EXPECT_EQ(progress.steps, L({"1/3 alpha 6", "2/4 Sub1 7", "3/4 Beta 8", "4/5 deep 9", "5/5 deeper 10"}));

    progress.onStep = [] { td::FindCancelMark() = true; };
    EXPECT_EQ(find({}, -1), L({"a.txt", "b.TXT", "C.mp3", "d.MP3", "readme", "alpha/w.txt"}));
    progress.onStep = nullptr;
    EXPECT_EQ(find({}, -1).size(), 10);  // the next walk starts afresh
}

TEST_F(LibraryTest, DirFileNamesGivesMarkedDirectoriesFirst)
{
    for (int attributes : {33, 16}) {
        TextArray names;
        EXPECT_TRUE(td::DirFileNames(root(), QStringLiteral("*.TXT"), names, attributes));
        EXPECT_EQ(names.mid(1),
                  attributes == 16 ? L({"/alpha", "/Sub1"}) : L({"/alpha", "/Sub1", "a.txt", "b.TXT"}));
    }
}

TEST_F(FinderTest, ReadOnlyAndSpecialFilesFollowTheirFlags)
{
    make(L({"locked.txt", "open.txt"}));
    ASSERT_EQ(::chmod(native("locked.txt").constData(), 0444), 0);
    ASSERT_EQ(::mkfifo(native("pipe").constData(), 0644), 0);
    EXPECT_EQ(find({}, 0, 33), L({"locked.txt", "open.txt"}));
    EXPECT_EQ(find({}, 0, 32), L({"open.txt"}));
    EXPECT_EQ(find({}, 0, 37), L({"locked.txt", "open.txt", "pipe"}));
}

TEST_F(FinderTest, LinksCountAsWhatTheyPointToAndLoopsEnd)
{
    make(L({"a/f.txt"}));
    ASSERT_EQ(::symlink("..", native("a/up").constData()), 0);
    ASSERT_EQ(::symlink("a/f.txt", native("link.txt").constData()), 0);
    EXPECT_EQ(find({}, -1), L({"link.txt", "a/f.txt"}));
}

class FixedDrives : public td::PlatformSeam {
public:
    FixedDrives() { td::SetPlatform(this); }
    ~FixedDrives() override { td::SetPlatform(nullptr); }
    QString computerName() override { return {}; }
    td::OsVersion osVersion() override { return {}; }
    QString desktopFontName() override { return {}; }
    QStringList drives() override { return L({"/", "/media/usb"}); }
    QStringList opticalDrives() override { return {}; }
};

TEST(FinderDrives, MountPointsStandInForDrives)
{
    FixedDrives platform;
    TextArray drives;
    int attributes = 33;
    EXPECT_TRUE(td::DirFileNames({}, {}, drives, attributes));
    EXPECT_EQ(drives, L({"", "/", "/media/usb"}));
    EXPECT_TRUE(td::IsDriver(QStringLiteral("/media/usb/")));
    EXPECT_FALSE(td::IsDriver(QStringLiteral("/media")));
}

TEST(FinderParentPath, OneLevelUpWithoutTrailingSlash)
{
    const std::pair<const char*, const char*> cases[] = {
        {"/srv/songs/pop", "/srv/songs"},
        {"/srv/songs/pop/", "/srv/songs"},
        {"/srv//songs/./pop", "/srv/songs"},
        {"/srv", "/"},
        {"/", ""},
        {"", ""},
    };
    for (const auto& [path, parent] : cases)
        EXPECT_EQ(td::GetParentPath(QString::fromUtf8(path)), QString::fromUtf8(parent)) << path;
}

TEST(FinderBrowse, FilesAndFolderThroughTheDialogSeam)
{
    td::test::TempAppDir app;  // no region: titles stay English
    td::test::ScriptedDialogs dialogs;
    dialogs.files(L({"/srv/a.mpg", "/srv/b.mpg"}));
    dialogs.folder(QStringLiteral("/srv/songs"));
    TextArray names;
    EXPECT_TRUE(td::BrowseFile(QStringLiteral("/srv"), {}, names));
    EXPECT_EQ(names, L({"", "/srv/a.mpg", "/srv/b.mpg"}));
    EXPECT_FALSE(td::BrowseFile({}, QStringLiteral("Video(*.mpg)|*.mpg"), names));
    EXPECT_EQ(td::UBound(names), 0);
    EXPECT_EQ(td::BrowsePath(nullptr), QStringLiteral("/srv/songs"));

    ASSERT_EQ(dialogs.calls().size(), 3u);
    // The double records an open dialog's filter as its title.
    EXPECT_EQ(dialogs.calls()[0].text, QStringLiteral("Select Files"));
    EXPECT_EQ(dialogs.calls()[0].title, QStringLiteral("All Files(*.*)|*.*"));
    EXPECT_EQ(dialogs.calls()[1].title, QStringLiteral("Video(*.mpg)|*.mpg"));
    EXPECT_EQ(dialogs.calls()[2].kind, QStringLiteral("folder"));
    EXPECT_EQ(dialogs.calls()[2].text, QStringLiteral("Please choose directory"));
}

}  // namespace
