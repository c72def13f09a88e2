// Format-file grammar of the list, the editor and the button bar: defaults and odd values.
#include "controls/ButtonFormat.h"
#include "controls/FieldFormat.h"
#include "controls/ViewFormat.h"
#include "shell/services/Ini.h"
#include "support/TempAppDir.h"
#include <gtest/gtest.h>

using namespace td;

namespace {

QString Write(const test::TempAppDir& dir, const char* text)
{
    return dir.write(QStringLiteral("List.ini"), QByteArray(text));
}

TEST(ViewFormat, ColumnsFollowColPositionWithDefaults)
{
    test::TempAppDir dir;
    const QString file = Write(dir,
                               "[ColPosition]\n"
                               "Col_title=0\n"
                               "; a comment line is no column\n"
                               "Col_singer=\n"
                               "Xyz_index=abc\n"
                               "[Col_title]\nCaption=Title\nField=title\nWidth=2000\nTable=song\n"
                               "[Col_singer]\n"
                               "[Xyz_index]\nWidth=1440.5\n");
    const ViewFormat f = ReadViewFormat(file);
    ASSERT_EQ(f.Columns.size(), 3u);
    EXPECT_EQ(f.Columns[0].Key, QStringLiteral("Col_title"));
    EXPECT_EQ(f.Columns[0].Caption, QStringLiteral("Title"));
    EXPECT_EQ(f.Columns[0].Table, QStringLiteral("song"));
    EXPECT_EQ(f.Columns[0].Width, 2000);
    // Caption and field default to the text after the first four characters, whatever they are.
    EXPECT_EQ(f.Columns[1].Caption, QStringLiteral("singer"));
    EXPECT_EQ(f.Columns[1].Field, QStringLiteral("singer"));
    EXPECT_EQ(f.Columns[1].Width, 1440);
    EXPECT_EQ(f.Columns[2].Field, QStringLiteral("index"));
    EXPECT_EQ(f.Columns[2].Width, 1440);  // half to even
    for (const ViewColumn& c : f.Columns)
        EXPECT_EQ(c.Position, 0) << c.Key.toStdString();
}

TEST(ViewFormat, OnlyOneMeansMultiSelect)
{
    test::TempAppDir dir;
    const struct {
        const char* text;
        bool multi;
    } cases[] = {
        {"[View]\nMultiSelect=1\n", true},
        {"[View]\nMultiSelect=True\n", false},
        {"[View]\nMultiSelect=01\n", false},
        {"[View]\n", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ReadViewFormat(Write(dir, c.text)).MultiSelect, c.multi) << c.text;
}

TEST(ViewFormat, NumbersRoundHalfToEven)
{
    const struct {
        const char* text;
        int value;
    } cases[] = {{"1440", 1440}, {"1440.5", 1440}, {"1441.5", 1442}, {"  12abc", 12},
                 {"abc", 0},     {"", 0},          {"-3", -3}};
    for (const auto& c : cases)
        EXPECT_EQ(FormatInteger(QString::fromLatin1(c.text)), c.value) << c.text;
}

TEST(ViewFormat, LayoutIsWrittenBackWithoutTouchingCaptions)
{
    test::TempAppDir dir;
    const QString file = Write(dir, "[ColPosition]\nCol_a=0\nCol_b=0\n[Col_a]\nCaption=A\n");
    WriteViewLayout(file, {{QStringLiteral("Col_a"), 2, 1500.5}, {QStringLiteral("Col_b"), 1, 900}});
    EXPECT_EQ(IniRead(file, QStringLiteral("ColPosition"), QStringLiteral("Col_a"), {}), QStringLiteral("2"));
    EXPECT_EQ(IniRead(file, QStringLiteral("Col_a"), QStringLiteral("Width"), {}), QStringLiteral("1500.5"));
    EXPECT_EQ(IniRead(file, QStringLiteral("Col_b"), QStringLiteral("Width"), {}), QStringLiteral("900"));
    EXPECT_EQ(IniRead(file, QStringLiteral("Col_a"), QStringLiteral("Caption"), {}), QStringLiteral("A"));

    WriteViewLayout(file, {});  // no columns: ColPosition stays
    TextArray keys;
    EXPECT_EQ(IniReadSection(file, QStringLiteral("ColPosition"), keys), 2);
}

TEST(FieldFormat, LinkColAndDefaults)
{
    test::TempAppDir dir;
    const QString file = Write(dir,
                               "[Fields]\nCount=3\nCaptionVisible=0\n"
                               "[Field1]\nLinkCol=Col_name\nCaption=ignored\n"
                               "[Col_name]\n"
                               "[Field2]\nCaption=Number\nField=index\nClass=text\nClassEx=password\nEnabled="
                               "0\nCmd=Pick\nHint=digits\n"
                               "[Field3]\n");
    const FieldFormat f = ReadFieldFormat(file);
    EXPECT_FALSE(f.CaptionVisible);
    EXPECT_TRUE(f.ButtonVisible);
    ASSERT_EQ(f.Fields.size(), 3u);
    EXPECT_EQ(f.Fields[0].Caption, QStringLiteral("name"));
    EXPECT_EQ(f.Fields[0].Field, QStringLiteral("name"));
    EXPECT_EQ(f.Fields[1].Field, QStringLiteral("index"));
    EXPECT_FALSE(f.Fields[1].Enabled);
    EXPECT_EQ(f.Fields[1].Cmd, QStringLiteral("Pick"));
    EXPECT_EQ(f.Fields[1].Hint, QStringLiteral("digits"));
    // An empty section: no caption, no field, a combo, enabled.
    EXPECT_TRUE(f.Fields[2].Caption.isEmpty());
    EXPECT_TRUE(f.Fields[2].Class.isEmpty());
    EXPECT_TRUE(f.Fields[2].Enabled);

    EXPECT_TRUE(ReadFieldFormat(Write(dir, "[Other]\n")).Fields.empty());
}

TEST(ButtonFormat, FlagsAndColours)
{
    test::TempAppDir dir;
    const QString file = Write(dir,
                               "[Buttons]\nCount=4\n"
                               "[Button1]\nClass=save\nCaption=Save\nBackColor=255\n"
                               "[Button2]\nClass=add\nCaption=Add\nEnabled=0\nVisible=0\nBackColor=\n"
                               "[Button3]\nBackColor=&H00FF00\n"
                               "[Button4]\nEnabled=True\n");
    const std::vector<ButtonItem> b = ReadButtonFormat(file);
    ASSERT_EQ(b.size(), 4u);
    EXPECT_EQ(b[0].BackColor, 255);
    EXPECT_TRUE(b[0].Enabled);
    EXPECT_FALSE(b[1].Enabled);
    EXPECT_FALSE(b[1].Visible);
    EXPECT_EQ(b[1].BackColor, kSysButtonFace);  // present but empty
    EXPECT_EQ(b[2].BackColor, 0xFF00);
    EXPECT_EQ(b[3].BackColor, kSysButtonFace);  // absent
    EXPECT_FALSE(b[3].Enabled);                 // "True" reads as 0
    EXPECT_TRUE(ReadButtonFormat(dir.file(QStringLiteral("missing.ini"))).empty());
}

}  // namespace
