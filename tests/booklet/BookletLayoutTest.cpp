// The booklet's order and page layout, computed before anything is drawn: initial letters as the
// initial-letter search files them, groups in print order, and where each line falls.
#include "booklet/BookletLayout.h"
#include "support/QtPrint.h"
#include <QStringList>
#include <gtest/gtest.h>
#include <random>

using namespace td;

namespace {

struct LetterCase {
    const char* text;
    char letter;
};

void PrintTo(const LetterCase& c, std::ostream* os)
{
    *os << c.text;
}

class InitialLetterTest : public testing::TestWithParam<LetterCase> {};

TEST_P(InitialLetterTest, FilesTheTextUnderItsLetter)
{
    EXPECT_EQ(InitialLetter(QString::fromUtf8(GetParam().text)), QChar(QLatin1Char(GetParam().letter)))
        << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Texts, InitialLetterTest,
    testing::Values(LetterCase{"周杰伦", 'Z'}, LetterCase{"阿杜", 'A'}, LetterCase{"白光", 'B'},
                    LetterCase{"蔡琴", 'C'}, LetterCase{"王菲", 'W'}, LetterCase{"刘德华", 'L'},
                    // the ends of the search's ranges: 八 opens B, 挖 opens W (not U), 匝 opens Z, 座 ends it
                    LetterCase{"八", 'B'}, LetterCase{"挖", 'W'}, LetterCase{"匝", 'Z'},
                    LetterCase{"座", 'Z'}, LetterCase{"昔", 'X'}, LetterCase{"撒", 'S'},
                    // Traditional and second-level hanzi by their pinyin
                    LetterCase{"鄧麗君", 'D'}, LetterCase{"張學友", 'Z'}, LetterCase{"犇", 'B'},
                    LetterCase{"beyond", 'B'}, LetterCase{"Ｆ４", 'F'}, LetterCase{"  (Live) 爱", 'L'},
                    LetterCase{"《童年》", 'T'}, LetterCase{"123", '#'}, LetterCase{"", '#'},
                    LetterCase{"さくら", '#'}));

QStringList sortedByInitial(QStringList texts)
{
    std::stable_sort(texts.begin(), texts.end(), [](const QString& a, const QString& b) {
        return InitialOrderKey(a) < InitialOrderKey(b);
    });
    return texts;
}

QStringList utf8(std::initializer_list<const char*> texts)
{
    QStringList out;
    for (const char* t : texts)
        out << QString::fromUtf8(t);
    return out;
}

TEST(InitialOrderTest, LettersFirstThenGb2312WithinALetterOthersLast)
{
    const QStringList expected = utf8({"Amei", "阿杜", "爱你", "beyond", "Blue", "白光", "陈奕迅", "刀郎",
                                       "Zoo", "张学友", "周杰伦", "123", "さくら"});
    QStringList shuffled = expected;
    std::reverse(shuffled.begin(), shuffled.end());
    std::swap(shuffled[2], shuffled[7]);
    EXPECT_EQ(sortedByInitial(shuffled), expected);
}

TEST(InitialOrderTest, CaseBlanksAndPunctuationDoNotCount)
{
    EXPECT_EQ(InitialOrderKey(QStringLiteral("Blue Moon")), InitialOrderKey(QStringLiteral("bluemoon")));
    EXPECT_EQ(InitialOrderKey(QString::fromUtf8("《童年》")), InitialOrderKey(QString::fromUtf8("童年")));
    EXPECT_LT(InitialOrderKey(QStringLiteral("Blue")), InitialOrderKey(QStringLiteral("Blue Moon")));
}

BookletSong song(qint64 index, const char* title, const char* singer = "", const char* language = "",
                 int chars = 0)
{
    return {index, QString::fromUtf8(title), QString::fromUtf8(singer), QString::fromUtf8(language), chars};
}

// Each section as "heading: index index ...".
QStringList describe(const QList<BookletSection>& sections)
{
    QStringList out;
    for (const BookletSection& s : sections) {
        QString line = (s.chars ? QString::number(s.chars) : s.name) + u':';
        for (const BookletSong& song : s.songs)
            line += u' ' + QString::number(song.index);
        out << line;
    }
    return out;
}

TEST(GroupBookletSongsTest, BySingerInInitialOrderSongsByTitleUnknownSingerLast)
{
    const QList<BookletSong> songs = {song(1, "童年", "罗大佑"),      song(2, "Hello", ""),
                                      song(3, "爱的代价", "张艾嘉"),  song(4, "光阴的故事", "罗大佑"),
                                      song(5, "恋曲1990", "罗大佑"),  song(6, "光阴的故事", "罗大佑"),
                                      song(7, "Yesterday", "Beatles")};
    EXPECT_EQ(describe(GroupBookletSongs(songs, BookletGroup::Singer)),
              utf8({"Beatles: 7", "罗大佑: 4 6 5 1", "张艾嘉: 3", ": 2"}));
}

TEST(GroupBookletSongsTest, ByTitleLengthThenInitialLengthCountedWhenNotKept)
{
    const QList<BookletSong> songs = {song(1, "童年", "", "", 2),           song(2, "大海", "", "", 0),
                                      song(3, "月亮代表我的心", "", "", 7), song(4, "朋友", "", "", 2),
                                      song(5, "甜蜜蜜", "", "", 0),         song(6, "中国心", "", "", 3)};
    EXPECT_EQ(describe(GroupBookletSongs(songs, BookletGroup::Length)), utf8({"2: 2 4 1", "3: 5 6", "7: 3"}));
}

TEST(GroupBookletSongsTest, ByLanguageSongsWithoutOneLast)
{
    const QList<BookletSong> songs = {song(1, "B", "", "Mandarin"), song(2, "A", "", "English"),
                                      song(3, "C", "", ""), song(4, "A", "", "Mandarin"),
                                      song(5, "D", "", "Cantonese")};
    EXPECT_EQ(describe(GroupBookletSongs(songs, BookletGroup::Language)),
              utf8({"Cantonese: 5", "English: 2", "Mandarin: 4 1", ": 3"}));
}

// Sections of the given sizes, songs numbered within each.
QList<BookletSection> sectionsOf(const QList<int>& sizes)
{
    QList<BookletSection> sections;
    for (int size : sizes) {
        BookletSection s;
        for (int i = 0; i < size; ++i)
            s.songs << BookletSong{i, {}, {}, {}, 0};
        sections << s;
    }
    return sections;
}

// Pages as "H0 0.0 0.1 | C0 0.2 / ..." (H heading, C continued, s.i a song; | between columns, / pages).
QString describe(const QList<BookletPage>& pages)
{
    QStringList pageTexts;
    for (const BookletPage& page : pages) {
        QStringList columns;
        for (const BookletColumn& column : page.columns) {
            QStringList lines;
            for (const BookletLine& l : column)
                lines << (l.kind == BookletLine::Song ? QStringLiteral("%1.%2").arg(l.section).arg(l.song)
                          : l.kind == BookletLine::Heading ? QStringLiteral("H%1").arg(l.section)
                                                           : QStringLiteral("C%1").arg(l.section));
            columns << lines.join(u' ');
        }
        pageTexts << columns.join(QStringLiteral(" | "));
    }
    return pageTexts.join(QStringLiteral(" / "));
}

struct LayoutCase {
    const char* name;
    QList<int> sizes;
    BookletFrame frame;
    const char* expected;
};

void PrintTo(const LayoutCase& c, std::ostream* os)
{
    *os << c.name;
}

class LayOutBookletTest : public testing::TestWithParam<LayoutCase> {};

TEST_P(LayOutBookletTest, PlacesEveryLine)
{
    EXPECT_EQ(describe(LayOutBooklet(sectionsOf(GetParam().sizes), GetParam().frame)),
              QString::fromLatin1(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, LayOutBookletTest,
    testing::Values(
        LayoutCase{"AllInOneColumn", {2, 1}, {2, 10, 2}, "H0 0.0 0.1 H1 1.0"},
        // 4 of 5 lines used: the next heading and its first song need 3, so both go to the next column
        LayoutCase{"HeadingNeverAloneAtTheFoot", {2, 3}, {2, 5, 2}, "H0 0.0 0.1 | H1 1.0 1.1 1.2"},
        LayoutCase{"HeadingWithOneSongFillsTheColumn", {1, 3}, {2, 6, 2}, "H0 0.0 H1 1.0 | C1 1.1 1.2"},
        LayoutCase{
            "ContinuedOverColumnsAndPages", {7}, {2, 4, 2}, "H0 0.0 0.1 | C0 0.2 0.3 / C0 0.4 0.5 | C0 0.6"},
        LayoutCase{"NewPageStartsWithTheNextHeading", {3, 2}, {1, 5, 2}, "H0 0.0 0.1 0.2 / H1 1.0 1.1"},
        LayoutCase{"OneLineHeadings", {3, 1}, {3, 3, 1}, "H0 0.0 0.1 | C0 0.2 | H1 1.0"},
        LayoutCase{"EmptyGroupsLeftOut", {0, 1, 0}, {2, 10, 2}, "H1 1.0"},
        LayoutCase{"NothingToPrintIsOneEmptyPage", {}, {3, 10, 2}, ""},
        LayoutCase{"TooShortAColumnStillTakesAHeadingAndASong", {2}, {2, 1, 2}, "H0 0.0 | C0 0.1"}),
    [](const testing::TestParamInfo<LayoutCase>& info) { return std::string(info.param.name); });

// Over many random songbooks and page sizes: no column overflows, every song comes once and in order,
// every heading has a song of its group right below it in the same column, and a column starts with a
// continued heading exactly when its first group began in an earlier column.
TEST(LayOutBookletTest, KeepsItsRulesOnRandomSongbooks)
{
    std::mt19937 rng(7);
    for (int round = 0; round < 200; ++round) {
        QList<int> sizes;
        for (int s = int(rng() % 40); s > 0; --s)
            sizes << int(rng() % 3 == 0 ? rng() % 60 : rng() % 5);
        const BookletFrame frame{2 + int(rng() % 3), 3 + int(rng() % 40), 1 + int(rng() % 2)};
        const QList<BookletPage> pages = LayOutBooklet(sectionsOf(sizes), frame);
        ASSERT_FALSE(pages.isEmpty());
        int nextSection = 0, nextSong = 0;
        for (const BookletPage& page : pages) {
            ASSERT_LE(page.columns.size(), frame.columns);
            for (const BookletColumn& column : page.columns) {
                const bool carriedOver =
                    nextSection < sizes.size() && nextSong > 0 && nextSong < sizes[nextSection];
                EXPECT_EQ(!column.isEmpty() && column.first().kind == BookletLine::Continued, carriedOver)
                    << "round " << round;
                int used = 0;
                for (qsizetype l = 0; l < column.size(); ++l) {
                    const BookletLine& line = column[l];
                    used += line.kind == BookletLine::Song ? 1 : frame.headingLines;
                    if (line.kind == BookletLine::Song) {
                        while (nextSection < sizes.size() && nextSong == sizes[nextSection]) {
                            ++nextSection;
                            nextSong = 0;
                        }
                        ASSERT_EQ(line.section, nextSection) << "round " << round;
                        ASSERT_EQ(line.song, nextSong++) << "round " << round;
                        continue;
                    }
                    ASSERT_LT(l + 1, column.size()) << "heading alone at a column foot, round " << round;
                    EXPECT_EQ(column[l + 1].kind, BookletLine::Song);
                    EXPECT_EQ(column[l + 1].section, line.section);
                    if (line.kind == BookletLine::Continued) {
                        EXPECT_TRUE(l == 0 && line.section == nextSection) << "round " << round;
                    }
                }
                EXPECT_LE(used, frame.lines) << "round " << round;
            }
        }
        while (nextSection < sizes.size() && nextSong == sizes[nextSection]) {
            ++nextSection;
            nextSong = 0;
        }
        EXPECT_EQ(nextSection, sizes.size()) << "songs left out, round " << round;
    }
}

}  // namespace
