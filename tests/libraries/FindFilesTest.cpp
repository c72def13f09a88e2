#include "FinderTree.h"
#include "libraries/FileFinder.h"
#include "shell/services/FilePaths.h"

#include <QFile>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using td::TextArray;
using td::UBound;
using td::test::FinderTree;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Hidden by dot name: .dot.txt, .hidden, .cache; hidden by the ".hidden" list: marked.son, Skipped.
const QStringList kLibrary = {
    QStringLiteral("b.TXT"),          QStringLiteral("a.txt"),          QStringLiteral("C.mp3"),
    QStringLiteral("d.MP3"),          QStringLiteral("readme"),         QStringLiteral(".dot.txt"),
    QStringLiteral("marked.son"),     QStringLiteral("Sub1/x.txt"),     QStringLiteral("Sub1/deep/y.txt"),
    QStringLiteral("Sub1/deep/deeper/z.txt"), QStringLiteral("alpha/w.txt"), QStringLiteral("alpha/Beta/v.txt"),
    QStringLiteral(".cache/c.txt"),   QStringLiteral("Skipped/s.txt"),
};

class FindFilesTest : public testing::Test {
protected:
    FindFilesTest() : tree(kLibrary) { tree.write(QStringLiteral(".hidden"), "marked.son\nSkipped\r\n"); }

    QStringList find(const QString& pattern, int depth, int attributes = 33)
    {
        TextArray names;
        td::FindFiles(tree.root(), pattern, depth, names, attributes);
        return tree.relative(names);
    }

    FinderTree tree;
};

struct Case {
    const char* pattern;
    int depth;
    int attributes;
    QStringList expected;
};

QStringList L(std::initializer_list<const char*> names)
{
    QStringList out;
    for (const char* n : names)
        out << QString::fromUtf8(n);
    return out;
}

TEST_F(FindFilesTest, DepthPatternsAndHiddenFiles)
{
    const Case cases[] = {
        // Depth: breadth first, and names sorted without regard to case in each directory.
        {"*.*", 0, 33, L({"a.txt", "b.TXT", "C.mp3", "d.MP3", "readme"})},
        {"*.*", 1, 33, L({"a.txt", "b.TXT", "C.mp3", "d.MP3", "readme", "alpha/w.txt", "Sub1/x.txt"})},
        {"*.*", 2, 33, L({"a.txt", "b.TXT", "C.mp3", "d.MP3", "readme", "alpha/w.txt", "Sub1/x.txt",
                          "alpha/Beta/v.txt", "Sub1/deep/y.txt"})},
        {"*.*", -1, 33, L({"a.txt", "b.TXT", "C.mp3", "d.MP3", "readme", "alpha/w.txt", "Sub1/x.txt",
                           "alpha/Beta/v.txt", "Sub1/deep/y.txt", "Sub1/deep/deeper/z.txt"})},
        // Patterns, matched without regard to case; an empty pattern finds every file.
        {"", 0, 33, L({"a.txt", "b.TXT", "C.mp3", "d.MP3", "readme"})},
        {"*.txt", 0, 33, L({"a.txt", "b.TXT"})},
        {"*.MP3", 0, 33, L({"C.mp3", "d.MP3"})},
        {"*.txt;*.mp3", 0, 33, L({"a.txt", "b.TXT", "C.mp3", "d.MP3"})},
        {" *.mp3 ; README ", 0, 33, L({"C.mp3", "d.MP3", "readme"})},
        {"?.txt", 0, 33, L({"a.txt", "b.TXT"})},
        {"read*.*", 0, 33, L({"readme"})},
        {"*.wav", -1, 33, {}},
        // Patterns apply to files only: directories are walked whatever their names.
        {"*.txt", 1, 33, L({"a.txt", "b.TXT", "alpha/w.txt", "Sub1/x.txt"})},
        // Hidden files, by dot name and by the ".hidden" list, need flag 2; so do hidden directories.
        {"*.son", 0, 33, {}},
        {"*.son", 0, 3, L({"marked.son"})},
        {"*.txt", 1, 3, L({".dot.txt", "a.txt", "b.TXT", ".cache/c.txt", "alpha/w.txt", "Skipped/s.txt",
                           "Sub1/x.txt"})},
        // 0 stands for 33.
        {"*.*", 0, 0, L({"a.txt", "b.TXT", "C.mp3", "d.MP3", "readme"})},
        // Directories only: the direct subdirectories, whatever the depth.
        {"*.txt", 5, 16, L({"alpha", "Sub1"})},
        {"", 0, 18, L({".cache", "alpha", "Skipped", "Sub1"})},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "pattern \"" << c.pattern << "\" depth " << c.depth << " attributes "
                                        << c.attributes);
        EXPECT_EQ(find(QString::fromUtf8(c.pattern), c.depth, c.attributes), c.expected);
    }
}

TEST_F(FindFilesTest, ZeroAttributesComeBackAs33)
{
    TextArray names;
    int attributes = 0;
    EXPECT_TRUE(td::FindFiles(tree.root(), {}, 0, names, attributes));
    EXPECT_EQ(attributes, 33);
}

TEST_F(FindFilesTest, PathWithTrailingSlashGivesSingleSlashes)
{
    TextArray names;
    int attributes = 33;
    td::FindFiles(tree.root() + u'/', QStringLiteral("w.txt"), 1, names, attributes);
    EXPECT_THAT(names, ElementsAre(QString(), tree.path(QStringLiteral("alpha/w.txt"))));
}

TEST_F(FindFilesTest, MissingPathOrFileGivesEmptyList)
{
    for (const QString& path : {tree.path(QStringLiteral("nothing")), tree.path(QStringLiteral("a.txt")), QString()}) {
        TextArray names = {QString(), QStringLiteral("stale")};
        int attributes = 33;
        EXPECT_FALSE(td::FindFiles(path, {}, -1, names, attributes)) << path.toStdString();
        EXPECT_EQ(UBound(names), 0);
    }
}

TEST_F(FindFilesTest, FileMarkedHiddenByTheProgramNeedsFlag2)
{
    ASSERT_TRUE(td::SetFileHidden(tree.path(QStringLiteral("Sub1/x.txt"))));
    EXPECT_THAT(find(QStringLiteral("x.txt"), 1), IsEmpty());
    EXPECT_THAT(find(QStringLiteral("x.txt"), 1, 3), ElementsAre(QStringLiteral("Sub1/x.txt")));
}

TEST_F(FindFilesTest, FileNamesWithoutTheirPaths)
{
    TextArray names;
    int attributes = 33;
    EXPECT_TRUE(td::FindFileNames(tree.root(), QStringLiteral("*.txt"), 1, names, attributes));
    EXPECT_THAT(names, ElementsAre(QString(), QStringLiteral("a.txt"), QStringLiteral("b.TXT"),
                                   QStringLiteral("w.txt"), QStringLiteral("x.txt")));
}

TEST(FindFilesKinds, ReadOnlyAndSpecialFilesFollowTheirFlags)
{
    FinderTree tree({QStringLiteral("locked.txt"), QStringLiteral("open.txt")});
    ASSERT_EQ(::chmod(QFile::encodeName(tree.path(QStringLiteral("locked.txt"))).constData(), 0444), 0);
    ASSERT_EQ(::mkfifo(QFile::encodeName(tree.path(QStringLiteral("pipe"))).constData(), 0644), 0);
    const struct {
        int attributes;
        QStringList expected;
    } cases[] = {
        {33, L({"locked.txt", "open.txt"})},
        {32, L({"open.txt"})},
        {37, L({"locked.txt", "open.txt", "pipe"})},
    };
    for (const auto& c : cases) {
        TextArray names;
        int attributes = c.attributes;
        td::FindFiles(tree.root(), {}, 0, names, attributes);
        EXPECT_EQ(tree.relative(names), c.expected) << "attributes " << c.attributes;
    }
}

TEST(FindFilesLinks, LinksCountAsWhatTheyPointToAndLoopsEnd)
{
    FinderTree tree({QStringLiteral("a/f.txt")});
    ASSERT_EQ(::symlink("..", QFile::encodeName(tree.path(QStringLiteral("a/up"))).constData()), 0);
    ASSERT_EQ(::symlink("a/f.txt", QFile::encodeName(tree.path(QStringLiteral("link.txt"))).constData()), 0);
    TextArray names;
    int attributes = 33;
    EXPECT_TRUE(td::FindFiles(tree.root(), {}, -1, names, attributes));
    EXPECT_THAT(tree.relative(names), ElementsAre(QStringLiteral("link.txt"), QStringLiteral("a/f.txt")));
}

}  // namespace
