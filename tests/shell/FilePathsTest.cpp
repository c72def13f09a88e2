#include "FakePlatform.h"
#include "shell/services/AppError.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Ini.h"
#include "shell/services/Wildcard.h"
#include "support/TempAppDir.h"
#include <QDir>
#include <gtest/gtest.h>

using namespace td;

namespace {

QString S(const char* s)
{
    return QString::fromUtf8(s);
}

TEST(FilePaths, Helpers)
{
    struct Case {
        const char *in, *parent, *name, *base, *ext;
    } cases[] = {
        {"/lib/Pop/song.1.mpg", "/lib/Pop", "song.1.mpg", "song", ".mpg"},
        {"\\Pop\\0001.dat", "\\Pop", "0001.dat", "0001", ".dat"},
        {"C:\\a\\b", "C:\\a", "b", "b", ""},
        {"C:\\a\\", "C:\\a", "", "", ""},
        {"/a/", "/a", "", "", ""},
        {"mixed\\dir/file.vob", "mixed\\dir", "file.vob", "file", ".vob"},
        {"plain.jpg", "", "plain.jpg", "plain", ".jpg"},
        {"", "", "", "", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ParentPath(S(c.in)), S(c.parent)) << c.in;
        EXPECT_EQ(FileNameOf(S(c.in)), S(c.name)) << c.in;
        EXPECT_EQ(BaseNameOf(S(c.in)), S(c.base)) << c.in;
    }
    EXPECT_EQ(ExtensionOf(S("song.1.mpg")), S(".mpg"));
    EXPECT_EQ(ExtensionOf(S("noext")), S(""));
    EXPECT_EQ(FileNameOf(S("/x/name.txt") + QChar(0) + QChar(0)), S("name.txt"));
}

TEST(FilePaths, LinkFileByPathJoinsWithOneSeparator)
{
    struct Case {
        const char *dir, *file, *out;
    } cases[] = {
        {"/songs", "\\Pop\\0001.dat", "/songs/Pop/0001.dat"},
        {"/songs/", "/Pop/a.vob", "/songs/Pop/a.vob"},
        {"/songs//", "a.vob", "/songs//a.vob"},  // one separator goes, not all
        {"D:\\KTV", "a.vob", "D:/KTV/a.vob"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(LinkFileByPath(S(c.dir), S(c.file)), S(c.out)) << c.dir << " + " << c.file;
}

TEST(FilePaths, SharesMapUnderTheNetworkRoot)
{
    test::TempAppDir dir;
    EXPECT_EQ(NativePath(S("\\\\SERVER\\KtvPublic\\database_home.ini")),
              S("/net/SERVER/KtvPublic/database_home.ini"));
    EXPECT_EQ(NativePath(S("//server/KtvPublic/x")), S("/net/server/KtvPublic/x"));
    EXPECT_EQ(NativePath(S("\\Pop\\0001.dat")), S("/Pop/0001.dat"));
    AppIniWrite(S("NetworkRoot"), S("/mnt/ktv/"));
    EXPECT_EQ(NativePath(S("\\\\host\\share")), S("/mnt/ktv/host/share"));
    EXPECT_EQ(ShareHostOf(S("/mnt/ktv/host/share/a")), S("host"));
    EXPECT_EQ(ShareHostOf(S("\\\\other\\KtvPublic")), S("other"));
    EXPECT_EQ(ShareHostOf(S("/home/ktv/song.db")), S(""));
}

TEST(FilePaths, FileKindHasThreeAnswers)
{
    test::TempAppDir dir;
    EXPECT_EQ(FileKind(dir.path()), S("p"));
    EXPECT_EQ(FileKind(dir.write(S("a.txt"), "x")), S("f"));
    EXPECT_EQ(FileKind(dir.file(S("none"))), S(""));
    EXPECT_EQ(FileKind(QString()), S(""));
}

TEST(FilePaths, MachineFacts)
{
    test::FakePlatform platform;
    platform.name = S("A-VERY-LONG-CONSOLE-NAME");
    platform.optical = {S("/media/cdrom0")};
    EXPECT_EQ(ComputerName(), S("A-VERY-LONG-CON"));
    EXPECT_TRUE(IsCdromDrive(S("/media/cdrom0/")));
    EXPECT_FALSE(IsCdromDrive(S("/")));
}

TEST(Wildcard, MatchesAsTheFileDialogsDo)
{
    struct Case {
        const char *pattern, *name;
        bool match;
    } cases[] = {
        {"*.*", "README", true},
        {"*.VOB", "song.vob", true},
        {"*.vob;*.DAT", "AVSEQ01.dat", true},
        {"*.vob", "song.vob.son", false},
        {"*.son", "song.vob.son", true},
        {"song?.mpg", "SONG1.MPG", true},
        {"song?.mpg", "song12.mpg", false},
        {"a*b*c", "aXXbYYc", true},
        {"*", ".hidden", true},
        {"", "anything", true},
        {"ktv*.mdb", "KTV2004.MDB", true},
        {"*.", "noext", true},
        {"*.", "has.ext", false},
        {"abc.*", "abc", true},
        {"*.mp3", "mp3", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Wildcard(S(c.pattern)).matches(S(c.name)), c.match) << c.pattern << " ~ " << c.name;
}

TEST(NumericValue, NumberAtTheStartOrZero)
{
    struct Case {
        const char* text;
        double value;
    } cases[] = {{"12abc", 12}, {"  42", 42}, {"-5", -5}, {"3.5x", 3.5}, {"abc", 0}, {"", 0},
                 {"1e3", 1000}, {"1e", 1},    {"+7", 7},  {".5", 0.5},   {"-", 0}};
    for (const auto& c : cases)
        EXPECT_DOUBLE_EQ(NumericValue(S(c.text)), c.value) << c.text;
    EXPECT_EQ(IntegerValue(S("007")), 7);
}

}  // namespace
