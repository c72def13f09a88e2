#include "shell/services/FilePaths.h"
#include "support/TempAppDir.h"
#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace td;

namespace {

QString S(const char* s)
{
    return QString::fromUtf8(s);
}

class FileOperationTest : public ::testing::Test {
protected:
    test::TempAppDir dir;
    QString p(const char* rel) { return dir.file(S(rel)); }
    void SetUp() override
    {
        dir.write(S("src/a.vob"), "A");
        dir.write(S("src/b.DAT"), "B");
        dir.write(S("src/sub/c.mpg"), "C");
        dir.write(S("src/歌曲.mp3"), "D");
    }
    QStringList entries(const char* rel)
    {
        return QDir(p(rel)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name);
    }
};

TEST_F(FileOperationTest, CopyWithWildcardCreatesTheTargetFolder)
{
    ASSERT_TRUE(FileOperation(FO_COPY, p("src/*.*"), p("new/deeper")));
    EXPECT_EQ(entries("new/deeper"), (QStringList{S("a.vob"), S("b.DAT"), S("sub"), S("歌曲.mp3")}));
    EXPECT_EQ(FileKind(p("new/deeper/sub/c.mpg")), S("f"));
    EXPECT_EQ(entries("src").size(), 4);
}

TEST_F(FileOperationTest, CopyPatternIsCaseInsensitive)
{
    ASSERT_TRUE(FileOperation(FO_COPY, p("src/*.dat"), p("out")));
    EXPECT_EQ(entries("out"), QStringList{S("b.DAT")});
}

TEST_F(FileOperationTest, CopySingleFileToNewNameOrIntoFolder)
{
    ASSERT_TRUE(FileOperation(FO_COPY, p("src/a.vob"), p("x/renamed.vob")));
    EXPECT_EQ(FileKind(p("x/renamed.vob")), S("f"));
    ASSERT_TRUE(FileOperation(FO_COPY, p("src/a.vob"), p("x")));
    EXPECT_EQ(FileKind(p("x/a.vob")), S("f"));
    // Copying over an existing file replaces it.
    dir.write(S("src/a.vob"), "NEW");
    ASSERT_TRUE(FileOperation(FO_COPY, p("src/a.vob"), p("x")));
    QFile f(p("x/a.vob"));
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), QByteArray("NEW"));
}

TEST_F(FileOperationTest, MoveRenameDelete)
{
    ASSERT_TRUE(FileOperation(FO_MOVE, p("src/*.vob"), p("moved")));
    EXPECT_EQ(FileKind(p("src/a.vob")), S(""));
    EXPECT_EQ(FileKind(p("moved/a.vob")), S("f"));

    ASSERT_TRUE(FileOperation(FO_RENAME, p("moved/a.vob"), S("z.vob")));
    EXPECT_EQ(FileKind(p("moved/z.vob")), S("f"));
    EXPECT_FALSE(FileOperation(FO_RENAME, p("src/b.DAT"), p("moved/z.vob")));  // target exists

    ASSERT_TRUE(FileOperation(FO_DELETE, p("src/*.*"), QString()));
    EXPECT_TRUE(entries("src").isEmpty());
    ASSERT_TRUE(FileOperation(FO_DELETE, p("moved"), QString()));
    EXPECT_EQ(FileKind(p("moved")), S(""));
}

TEST_F(FileOperationTest, MissingSourceOrNoMatchFails)
{
    EXPECT_FALSE(FileOperation(FO_COPY, p("none.vob"), p("out")));
    EXPECT_FALSE(FileOperation(FO_COPY, p("src/*.avi"), p("out")));
    EXPECT_FALSE(FileOperation(FO_DELETE, p("none"), QString()));
    EXPECT_FALSE(FileOperation(99, p("src/a.vob"), p("out")));
}

TEST_F(FileOperationTest, HiddenMarksTravelWithTheirFiles)
{
    dir.write(S("lib/a.vob.son"), "S");
    dir.write(S("lib/a.vob"), "V");
    ASSERT_TRUE(SetFileHidden(p("lib/a.vob.son")));
    EXPECT_TRUE(IsFileHidden(p("lib/a.vob.son")));
    EXPECT_FALSE(IsFileHidden(p("lib/a.vob")));
    EXPECT_TRUE(IsFileHidden(p("lib/.dotfile")));

    ASSERT_TRUE(FileOperation(FO_COPY, p("lib/*.*"), p("copy")));
    EXPECT_TRUE(IsFileHidden(p("copy/a.vob.son")));
    EXPECT_FALSE(IsFileHidden(p("copy/a.vob")));

    ASSERT_TRUE(QDir().mkpath(p("moved")));
    ASSERT_TRUE(FileOperation(FO_MOVE, p("lib/a.vob.son"), p("moved")));
    EXPECT_TRUE(IsFileHidden(p("moved/a.vob.son")));
    EXPECT_FALSE(QFile::exists(p("lib/.hidden")));  // the last mark went, and its list with it

    ASSERT_TRUE(SetFileHidden(p("copy/a.vob.son"), false));
    EXPECT_FALSE(IsFileHidden(p("copy/a.vob.son")));
}

}  // namespace
