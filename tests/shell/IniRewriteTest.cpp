// A write to an INI file rewrites the whole file: whatever the file held before, the key written reads
// back, the file reads as it did everywhere else, and a byte-order mark stays where it was.
#include "shell/services/Ini.h"
#include "support/TempAppDir.h"
#include <QFile>
#include <gtest/gtest.h>

using namespace td;

namespace {

struct RewriteCase {
    const char* name;
    QByteArray before;
};

const QByteArray kBom("\xEF\xBB\xBF");

const RewriteCase kCases[] = {
    {"Plain", "[Other]\nKept=yes\n"},
    {"WithMark", kBom + "[Other]\nKept=yes\n"},
    // Two files joined: the second mark is part of the first line, which is then no section header.
    {"TwoMarks", kBom + kBom + "[ default ]\nIndex=old\n[Other]\nKept=yes\n"},
    {"ThreeMarksBeforeTheSection", kBom + kBom + kBom + "[ default ]\n  in]\xff\xff\xbf[ default ]\n  ex\n"},
    {"WindowsLineEnds", kBom + "[Other]\r\nKept=yes\r\n[Default]\r\nIndex=1\r\n"},
    {"NoLineEndAtTheEnd", "[Default]\nIndex=1"},
};

class IniRewrite : public ::testing::TestWithParam<RewriteCase> {};

TEST_P(IniRewrite, WrittenKeyReadsBackAndTheRestReadsAsBefore)
{
    const RewriteCase& c = GetParam();
    test::TempAppDir dir;
    const QString file = dir.write(QStringLiteral("a.ini"), c.before);
    const auto read = [&](const char* section, const char* key) {
        return IniRead(file, QString::fromLatin1(section), QString::fromLatin1(key), QStringLiteral("-"));
    };
    const QString kept = read("Other", "Kept");

    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(IniWrite(file, QStringLiteral("Default"), QStringLiteral("Index"), QStringLiteral("042")));
        EXPECT_EQ(read("Default", "Index"), QStringLiteral("042")) << "round " << round;
        EXPECT_EQ(read("Other", "Kept"), kept) << "round " << round;
    }
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QByteArray after = f.readAll();
    EXPECT_EQ(after.startsWith(kBom), c.before.startsWith(kBom));
    EXPECT_EQ(after.startsWith(kBom + kBom), c.before.startsWith(kBom + kBom));
}

INSTANTIATE_TEST_SUITE_P(Files, IniRewrite, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<RewriteCase>& info) {
                             return std::string(info.param.name);
                         });

}  // namespace
