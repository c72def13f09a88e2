#include "../shell/FakePlatform.h"
#include "SessionFixture.h"
#include "songdb/CatalogueLookups.h"
#include "songdb/SongSearch.h"
#include "songdb/SongStatements.h"
#include "support/QtPrint.h"
#include <QDir>

namespace td {
namespace {

using test::SessionFixture;

class ChineseSearch : public SessionFixture {
protected:
    ChineseSearch() : SessionFixture(QStringLiteral("Chinese Simplified")) {}
    void SetUp() override
    {
        SessionFixture::SetUp();
        SearchMode().clear();
        for (const char* t : {"中国", "ZG Band", "zg lower", "张国荣", "八月", "啊朋友", "3爱", "3八", "IV",
                              "Unicorn", "东方"})
            file.addSong(QString::fromUtf8(t), QStringLiteral("s"));
        ASSERT_TRUE(openSession());
    }
    QStringList titles(const QString& value)
    {
        TextArray names, keys;
        SongSearchTree(1000, QStringLiteral("title"), value, names, keys);
        QStringList out;
        for (int i = 1; i <= UBound(names); ++i)
            out << names[i].section(QStringLiteral("  -"), 0, 0);
        out.sort();
        return out;
    }
};

TEST_F(ChineseSearch, InitialsSelectTheRightTitles)
{
    const std::pair<const char*, const char*> cases[] = {
        {"ZG", "ZG Band,zg lower,中国,张国荣"},
        {"A", "啊朋友"},
        {"B", "八月"},
        {"D", "东方"},
        {"3A", "3爱"},
        {"3B", "3八"},
        {"U", "Unicorn"},  // U's range is empty: only the letter itself
        {"IV", "IV"},
    };
    for (const auto& [value, expected] : cases)
        EXPECT_EQ(titles(QString::fromUtf8(value)).join(u','), QString::fromUtf8(expected)) << value;
}

TEST_F(ChineseSearch, ConditionTexts)
{
    EXPECT_EQ(AlphabetCondition(QStringLiteral("Z3I")),
              QString::fromUtf8(" and (Mid([title],1,1)>='匝' or UCASE(Mid([title],1,1))='Z')"
                                " And Mid([title],2,1)='3' And UCASE(Mid([title],3,1))='I'"));
    EXPECT_EQ(AlphabetCondition(QStringLiteral("A")),
              QString::fromUtf8(
                  " and (Mid([title],1,1)>='啊' And Mid([title],1,1)<'八' or UCASE(Mid([title],1,1))='A')"));
    EXPECT_EQ(AlphabetCondition(QStringLiteral("ab")), QString());
    SearchMode() = QStringLiteral("frmmenu/singer/name");
    EXPECT_TRUE(AlphabetCondition(QStringLiteral("A")).contains(u"Mid([name],1,1)"));
}

// The singer paths leave the search mode alone, so their initials test the titles of the songs.
TEST_F(ChineseSearch, SingerNameInitialsTestTitlesOutsideASingerMode)
{
    file.addSong(QString::fromUtf8("八"), QString::fromUtf8("张学友"));
    const auto singers = [](const char* value) {
        TextArray names, keys;
        SongSearchTree(1000, QStringLiteral("singer/name"), QString::fromUtf8(value), names, keys);
        return QStringList(names.begin() + 1, names.end()).join(u',');
    };
    EXPECT_EQ(singers("Z"), u"s");
    EXPECT_EQ(singers("B"), QString::fromUtf8("s,张学友"));
    EXPECT_TRUE(SearchMode().isEmpty());
    SearchMode() = QStringLiteral("frmmenu/singer/name");  // [name] is the singer table's, by the join
    SongExecute(QString::fromUtf8("insert into singer (name) values ('张学友')"));
    EXPECT_EQ(singers("Z"), QString::fromUtf8("张学友"));
}

TEST_F(ChineseSearch, LowerCaseValueAddsNoCondition)
{
    EXPECT_EQ(titles(QStringLiteral("ab")).size(), 11);
}

class EnglishSearch : public SessionFixture {
protected:
    void SetUp() override
    {
        SessionFixture::SetUp();
        SearchMode().clear();
        file.db().execute(QStringLiteral("insert into region (name) values ('China')"));
        const char* rows[] = {
            "insert into song (title, singer, [language], style, grade, region, order_time) values ('Alpha', "
            "'Ann', 'English', 'Pop', 1, 'China', 100)",
            "insert into song (title, singer, [language], style, grade, region, order_time) values ('Beta', "
            "'Bob', '', 'Rock', 1, null, 50)",
            "insert into song (title, singer, [language], style, grade, region, order_time) values ('Gamma', "
            "'Ann', null, 'Pop', 2000, null, 10)",
            "insert into song (title, singer, [language], style, grade, region, order_time) values ('Delta', "
            "'Cat', 'English', 'Pop', 1, 'Japan', 0)",
            "insert into singer (name, type) values ('Ann', 'female')",
            "insert into singer (name, type) values ('Bob', 'male')",
        };
        for (const char* sql : rows)
            file.db().execute(QString::fromUtf8(sql));
        ASSERT_TRUE(openSession());
    }
    void TearDown() override
    {
        SearchFilterField() = {};
        SearchFilterValue() = {};
        SessionFixture::TearDown();
    }
    QString tree(const QString& path, const QString& value = {})
    {
        TextArray names, keys;
        const int n = SongSearchTree(1000, path, value, names, keys);
        QStringList items;
        for (int i = 1; i <= UBound(names); ++i)
            items << keys.value(i) + u'=' + names[i];
        return QString::number(n) + u':' + items.join(u'|');
    }
};

TEST_F(EnglishSearch, TreePaths)
{
    const std::pair<const char*, const char*> cases[] = {
        {"",
         "5:song=All songs|singer=Search by singer - all|language=Search by language|style=Search by "
         "style|chars=Search by char number"},
        {"language", "2:None=None|English=English"},
        {"style", "2:Pop=Pop|Rock=Rock"},
        {"singer", "2:Ann=Ann|Bob=Bob"},
        {"singer/type",
         "4:All artist=All artist|Search artist by alphabet=Search artist by "
         "alphabet|female=female|male=male"},
        {"title", "2:0=Alpha  -Ann(English)|0=Beta  -Bob"},
        {"nothing", "0:"},
    };
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(tree(QString::fromUtf8(path)), QString::fromUtf8(expected)) << path;
    EXPECT_TRUE(tree(QStringLiteral("chars")).startsWith(u"99:1=1Character|2=2Character"));
}

TEST_F(EnglishSearch, TreeValues)
{
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"song", "Beta", "1:0=Beta  -Bob"},
        {"language", "None",
         "2:0=Alpha  -Ann(English)|0=Beta  -Bob"},  // empty pattern: every non-NULL language
        {"style", "Rock", "1:0=Beta  -Bob"},
        {"singer/type", "singer/female", "1:Ann=Ann"},
        {"singer/male", "Bo", "1:0=Beta  -Bob"},
        {"title", "al", "1:0=Alpha  -Ann(English)"},
        {"popularsongs/language", "None", "2:0=Alpha  -Ann(English)*****|0=Beta  -Bob****"},
        {"singer/type", "singer/All artist", "2:Ann=Ann|Bob=Bob"},
        {"singer/type", "Ann", "1:0=Alpha  -Ann(English)"},
        {"order_time", "60", "1:0=Alpha  -Ann(English)"},
        {"Name", "x", "2:0=Alpha  -Ann(English)|0=Beta  -Bob"},
        {"chars", "0", "2:0=Alpha  -Ann(English)|0=Beta  -Bob"},
    };
    for (const auto& [path, value, expected] : cases)
        EXPECT_EQ(tree(QString::fromUtf8(path), QString::fromUtf8(value)), QString::fromUtf8(expected))
            << path << value;
    EXPECT_EQ(AlphabetCondition(QStringLiteral("ab")), u" and ([title] like 'ab%')");
    EXPECT_EQ(AlphabetCondition(QStringLiteral("a?b")), u" and ([title] like 'a%b%')");
    EXPECT_EQ(tree(QStringLiteral("song"), QStringLiteral("it's")), u"-1:");
}

TEST_F(EnglishSearch, F1SearchAndFilterSlots)
{
    EXPECT_EQ(tree(QStringLiteral("F1:search")), u"2:0=Alpha  -Ann(English)|0=Beta  -Bob");
    EXPECT_EQ(SearchMode(), u"frmmenu/research");
    SearchFilterField()[2] = QStringLiteral("style");
    SearchFilterValue()[2] = QStringLiteral("Rock");
    EXPECT_EQ(tree(QStringLiteral("F1:search")), u"1:0=Beta  -Bob");
    SearchFilterField()[3] = QStringLiteral("title");
    SearchFilterValue()[3] = QStringLiteral("Al");
    EXPECT_EQ(tree(QStringLiteral("F1:search")), u"0:");
    EXPECT_EQ(SearchMode(), u"frmmenu/f1search/song/title");
    EXPECT_EQ(tree(QStringLiteral("style"), QStringLiteral("Pop")), u"0:");
    EXPECT_EQ(SearchMode(), u"frmmenu/song/title");
    SearchFilterValue()[2].clear();
    SearchFilterValue()[3].clear();
    SearchFilterField()[4] = QStringLiteral("chars");
    SearchFilterValue()[4] = QStringLiteral("0x");  // a number only in the F1 search
    EXPECT_EQ(tree(QStringLiteral("F1:search")), u"2:0=Alpha  -Ann(English)|0=Beta  -Bob");
    EXPECT_EQ(tree(QStringLiteral("style"), QStringLiteral("Rock")), u"-1:");
}

TEST(SearchHelpers, RootNeedsNoDatabase)
{
    test::ScriptedDialogs dialogs;
    SongCloseDatabase();
    TextArray names, keys;
    EXPECT_EQ(SongSearchTree(1000, QStringLiteral("*"), QString(), names, keys), 5);
    EXPECT_EQ(UBound(keys), 5);
    EXPECT_TRUE(dialogs.messages().isEmpty());
}

TEST(SearchHelpers, JoinConditionsSkipsEmptyOnes)
{
    EXPECT_EQ(JoinConditions(TextArray{QString(), QStringLiteral("a"), QString(), QStringLiteral("b")}),
              u"a and b");
    EXPECT_EQ(JoinConditions(NewTextArray()), QString());
    EXPECT_EQ(SearchTypeCaption(QStringLiteral("title")), u"Search song by alphabet");
    EXPECT_EQ(SearchTypeCaption(QStringLiteral("other")), QString());
}

class Lookups : public SessionFixture {
protected:
    void SetUp() override
    {
        SessionFixture::SetUp();
        ASSERT_TRUE(openSession());
    }
};

TEST_F(Lookups, IndexBounds)
{
    file.addSong(QStringLiteral("taken"), {}, 1500);
    const std::pair<long long, bool> cases[] = {{0, true},      {-1, false},      {999, false}, {1000, true},
                                                {999999, true}, {1000000, false}, {1500, false}};
    for (const auto& [index, ok] : cases)
        EXPECT_EQ(SongCheckIndex(index), ok) << index;
}

TEST_F(Lookups, LocalPathMatchesRootsExactlyAndCachesThemForAMinute)
{
    static QDateTime clock = QDateTime(QDate(2024, 1, 1), QTime(10, 0, 0));
    SetLookupClock([] { return clock; });
    SongExecute(QStringLiteral("insert into library (root_path) values ('/srv/KTV/')"));
    SongExecute(QStringLiteral("insert into library (root_path) values ('/srv/KTV/inner')"));
    QString path = QStringLiteral("/srv/KTV/inner/a.mpg"), library;
    ASSERT_TRUE(GetLocalPath(path, library, true));
    EXPECT_EQ(library, u"/srv/KTV/");  // the first root in table order wins
    EXPECT_EQ(path, u"/inner/a.mpg");
    for (const char* miss : {"/srv/KTVS/a.mpg", "/srv/ktv/a.mpg", ""}) {
        QString p = QString::fromUtf8(miss), lib = QStringLiteral("kept");
        EXPECT_FALSE(GetLocalPath(p, lib, false)) << miss;
        EXPECT_EQ(lib, u"kept");
    }
    SongExecute(QStringLiteral("insert into library (root_path) values ('/srv/new')"));
    QString fresh = QStringLiteral("/srv/new/b.mpg");
    clock = clock.addSecs(60);
    EXPECT_FALSE(GetLocalPath(fresh, library, false));  // one minute: still the cached roots
    clock = clock.addSecs(60);
    EXPECT_TRUE(GetLocalPath(fresh, library, false));
    SetLookupClock(nullptr);
}

// Each root alone in the table; stored roots may use "\\" and end with or without a separator.
TEST_F(Lookups, LocalPathAgainstOneRoot)
{
    const QString net = app.file(QStringLiteral("net"));
    AppIniWrite(QStringLiteral("NetworkRoot"), net);
    const std::tuple<const char*, QString, const char*> cases[] = {
        {"'/srv/KTV/'", QStringLiteral("/srv/KTV/a.mpg"), "/a.mpg"},
        {"'/srv/KTV'", QStringLiteral("/srv/KTV/a.mpg"), "/a.mpg"},
        {"'\\srv\\KTV\\'", QStringLiteral("/srv/KTV/Pop/a.mpg"), "/Pop/a.mpg"},
        {"'\\\\host\\KTV'", net + QStringLiteral("/host/KTV/a.mpg"), "/a.mpg"},
        {"'/srv/KTV'", QStringLiteral("/srv/KTVS/a.mpg"), nullptr},
        {"'/srv/KTV'", QStringLiteral("/srv/ktv/a.mpg"), nullptr},
        {"''", QStringLiteral("/srv/KTV/a.mpg"), nullptr},
        {"null", QStringLiteral("/srv/KTV/a.mpg"), nullptr},
    };
    for (const auto& [root, full, rest] : cases) {
        SongExecute(QStringLiteral("delete * from library"));
        SongExecute(QStringLiteral("insert into library (root_path) values (") + QString::fromUtf8(root) +
                    u')');
        QString path = full, library = QStringLiteral("kept");
        EXPECT_EQ(GetLocalPath(path, library, true), rest != nullptr) << root << " " << full.toStdString();
        EXPECT_EQ(path, rest ? QString::fromUtf8(rest) : full) << root;
        EXPECT_EQ(library == u"kept", rest == nullptr) << root;
    }
}

TEST_F(Lookups, MediaFileIsFoundLocallyThenOnTheShare)
{
    const QString net = app.file(QStringLiteral("net"));
    AppIniWrite(QStringLiteral("NetworkRoot"), net);
    const QString host = SongServerHost();
    ASSERT_FALSE(host.isEmpty());
    app.write(QStringLiteral("net/") + host + QStringLiteral("/Songs1/Pop/b.mpg"), "b");
    const QString local = app.write(QStringLiteral("lib/Pop/a.mpg"), "a");
    const QString root = app.file(QStringLiteral("lib"));
    SongExecute(QStringLiteral("insert into library (root_path, shared_as) values ('") + root +
                QStringLiteral("', '\\Songs1')"));
    const qint64 a = file.addSong(QStringLiteral("a"));
    const qint64 b = file.addSong(QStringLiteral("b"));
    SongExecute(QStringLiteral("update song set library='") + root +
                QStringLiteral("', media_file='\\Pop\\a.mpg' where id=") + QString::number(a));
    SongExecute(QStringLiteral("update song set library='") + root +
                QStringLiteral("', media_file='\\Pop\\b.mpg' where id=") + QString::number(b));

    EXPECT_EQ(KtvGetFileById(a), local);
    EXPECT_EQ(KtvGetFileById(b), net + u'/' + host + QStringLiteral("/Songs1/Pop/b.mpg"));
    EXPECT_EQ(GetLibraryRemotePath(root), QStringLiteral("//") + host + QStringLiteral("/Songs1"));
    EXPECT_EQ(KtvGetFileById(0), QString());
    EXPECT_TRUE(LibraryExists(root));
    EXPECT_FALSE(LibraryExists(root + u'x'));
}

// Runs each case on its own session, as the host the database lies on.
class RemotePath : public SessionFixture {
protected:
    void SetUp() override
    {
        SKIP_ON_SERVER("the database host taken from the file's path");
        SessionFixture::SetUp();
    }
    QString remoteOf(const QString& sharedAs, const QString& host)
    {
        machine.name = host;
        EXPECT_TRUE(openSession());
        SongExecute(QStringLiteral("delete * from library"));
        SongExecute(QStringLiteral("insert into library (root_path, shared_as) values ('/lib', ") + sharedAs +
                    u')');
        const QString remote = GetLibraryRemotePath(QStringLiteral("/lib"));
        SongCloseDatabase();
        return remote;
    }
    test::FakePlatform machine;
};

TEST_F(RemotePath, OneLeadingSeparatorNamesAShareOnTheDatabaseHost)
{
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"'\\Songs1'", "KTV1", "//KTV1/Songs1"},
        {"'/Songs1'", "KTV1", "//KTV1/Songs1"},
        {"'\\Songs1\\Pop'", "KTV1", "//KTV1/Songs1/Pop"},
        {"'\\\\Other\\Songs1'", "KTV1", ""},  // a full share path is not used
        {"'//Other/Songs1'", "KTV1", ""},
        {"'Songs1'", "KTV1", ""},
        {"null", "KTV1", ""},
        {"'\\Songs1'", "", ""},  // no host: no share
    };
    for (const auto& [sharedAs, host, expected] : cases)
        EXPECT_EQ(remoteOf(QString::fromUtf8(sharedAs), QString::fromUtf8(host)), QString::fromUtf8(expected))
            << sharedAs << " on " << host;
    EXPECT_TRUE(dialogs.messages().isEmpty());
}

TEST_F(RemotePath, FileOnlyOnTheShareIsNotFoundWithoutAHost)
{
    const QString net = app.file(QStringLiteral("net"));
    AppIniWrite(QStringLiteral("NetworkRoot"), net);
    app.write(QStringLiteral("net/Songs1/b.mpg"), "b");  // where a share without a host would point
    machine.name = QString();
    ASSERT_TRUE(openSession());
    ASSERT_TRUE(SongServerHost().isEmpty());
    SongExecute(QStringLiteral("insert into library (root_path, shared_as) values ('/lib', '\\Songs1')"));
    const qint64 id = file.addSong(QStringLiteral("b"));
    SongExecute(QStringLiteral("update song set library='/lib', media_file='\\b.mpg' where id=") +
                QString::number(id));
    EXPECT_EQ(KtvGetFileById(id), QString());
}

}  // namespace
}  // namespace td
