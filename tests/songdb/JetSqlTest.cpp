#include "shell/services/AppError.h"
#include "songdb/JetSql.h"
#include "support/QtPrint.h"
#include <gtest/gtest.h>

namespace td {
namespace {

const SqlDialect kDialect{QStringLiteral("rowid"), QStringLiteral(" COLLATE GB2312"),
                          QStringLiteral("upper")};

QString native(const QString& jet)
{
    return TranslateJetSql(jet, kDialect).sql;
}

struct Case {
    const char* jet;
    const char* sql;
};

class Translation : public ::testing::TestWithParam<Case> {};

TEST_P(Translation, GivesNativeStatement)
{
    EXPECT_EQ(native(QString::fromUtf8(GetParam().jet)), QString::fromUtf8(GetParam().sql));
}

INSTANTIATE_TEST_SUITE_P(
    JetSql, Translation,
    ::testing::Values(
        Case{"delete * from media", "delete from media"},
        Case{"delete * from Config where [Section]='GlobeRegion'",
             "delete from Config where \"Section\"='GlobeRegion'"},
        Case{"select * from song where index=12", "select * from song where \"index\"=12"},
        Case{"select [value] from config where [section]='Default' and [key]='MinIndex'",
             "select \"value\" from config where \"section\"='Default' and \"key\"='MinIndex'"},
        Case{"select distinct [singer.type] from singer", "select distinct \"singer\".\"type\" from singer"},
        Case{"x UCASE(Mid([title],1,1))='Z'", "x upper(substr(\"title\",1,1) COLLATE GB2312)='Z'"},
        Case{"select * from song where Mid([title],2,1)>='啊' And Mid([title],2,1)<'八'",
             "select * from song where substr(\"title\",2,1) COLLATE GB2312>='啊' And substr(\"title\",2,1) "
             "COLLATE GB2312<'八'"},
        Case{"select Len(title), LCase(singer) from song", "select length(title), lower(singer) from song"},
        Case{"select * from song where Left(title, 2)='ab'",
             "select * from song where substr(title, 1, 2) COLLATE GB2312='ab'"},
        Case{"select * from song where title like '%中%';", "select * from song where title like '%中%'"},
        Case{"select * from song where title = \"it's\"", "select * from song where title = 'it''s'"},
        Case{"select title & ' - ' & singer from song", "select title || ' - ' || singer from song"},
        Case{"select top 10 * from song order by order_time desc",
             "select * from song order by order_time desc LIMIT 10"},
        Case{"update Song set grade=0", "update Song set grade=0"},
        Case{"insert into song (title, [index]) values ('a;b', 3)",
             "insert into song (title, \"index\") values ('a;b', 3)"},
        Case{"select * from song where remark='delete * from x; [y] index'",
             "select * from song where remark='delete * from x; [y] index'"},
        Case{"select count(*) from song where title in (select name from region)",
             "select count(*) from song where title in (select name from region)"}));

TEST(JetSql, TextAfterSemicolonIsRefused)
{
    for (const char* sql : {"delete * from song; drop table song", "select 1;;", "select 1; select 2"}) {
        try {
            native(QString::fromUtf8(sql));
            ADD_FAILURE() << sql;
        } catch (const AppError& e) {
            EXPECT_TRUE(e.description().contains(u"one statement")) << e.description().toStdString();
        }
    }
}

TEST(JetSql, UnsupportedConstructsAreNamed)
{
    const std::pair<const char*, const char*> cases[] = {
        {"select IIf(grade>1,'a','b') from song", "IIf"},
        {"select * from song where lupd_time > #1/1/2003#", "#1/1/2003#"},
        {"TRANSFORM count(*) select singer from song group by singer pivot style", "TRANSFORM"},
        {"select distinctrow title from song", "DISTINCTROW"},
        {"select Format(lupd_time, 'yyyy') from song", "Format"},
    };
    for (const auto& [sql, name] : cases) {
        try {
            native(QString::fromUtf8(sql));
            ADD_FAILURE() << sql;
        } catch (const AppError& e) {
            EXPECT_TRUE(e.description().startsWith(u"Unsupported Jet SQL"));
            EXPECT_TRUE(e.description().contains(QString::fromUtf8(name))) << e.description().toStdString();
        }
    }
}

TEST(JetSql, UnterminatedLiteralFails)
{
    EXPECT_THROW(native(QStringLiteral("select * from song where title='abc")), AppError);
    EXPECT_THROW(native(QStringLiteral("select [title from song")), AppError);
}

TEST(JetSql, SelectIntoAnotherFile)
{
    const auto st = TranslateJetSql(
        QStringLiteral("select * into song in '/tmp/it''s/x.db' from song where id=-1"), kDialect);
    EXPECT_EQ(st.kind, TranslatedStatement::Kind::SelectInto);
    EXPECT_EQ(st.intoTable, u"song");
    EXPECT_EQ(st.intoFile, u"/tmp/it's/x.db");
    EXPECT_EQ(st.sql, u"select * from song where id=-1");
}

TEST(JetSql, OnlyOneTableSelectsAreKeyed)
{
    const auto keyed = TranslateJetSql(
        QStringLiteral("select title from Song s where grade<=1000 order by title"), kDialect);
    EXPECT_EQ(keyed.baseTable, u"Song");
    EXPECT_EQ(keyed.keyedSql, u"select rowid AS td_key, title from Song s where grade<=1000 order by title");
    for (const char* sql : {"select distinct singer from song", "select count(*) from song",
                            "select singer, type from song left join singer on song.singer = singer.name",
                            "select * from song, singer", "select language from song group by language"})
        EXPECT_TRUE(TranslateJetSql(QString::fromUtf8(sql), kDialect).keyedSql.isEmpty()) << sql;
}

const SqlDialect kCharDialect{QStringLiteral("rowid"), QStringLiteral(" COLLATE GB2312"),
                              QStringLiteral("upper"), QStringLiteral("c_")};

class CharacterTests : public ::testing::TestWithParam<Case> {};

TEST_P(CharacterTests, BecomeOneCallWhereTheMeaningStays)
{
    EXPECT_EQ(TranslateJetSql(QString::fromUtf8(GetParam().jet), kCharDialect).sql,
              QString::fromUtf8(GetParam().sql));
}

// The general form of a Mid comparison, as the cases that must not be fused expect it.
#define M1 "substr(\"title\",1,1) COLLATE GB2312"
#define M2 "substr(\"title\",2,1) COLLATE GB2312"
INSTANTIATE_TEST_SUITE_P(
    JetSql, CharacterTests,
    ::testing::Values(
        Case{"select * from song where grade<=1 and (Mid([title],2,1)>='噶' And Mid([title],2,1)<'哈' or "
             "UCASE(Mid([title],2,1))='G') order by title",
             "select * from song where grade<=1 and (c_in_or_upper_is(\"title\",2,'噶','哈','G'))"
             " order by title"},
        Case{"select * from song where (Mid(title,1,1)>='匝' or UCASE(Mid(title,1,1))='Z')",
             "select * from song where (c_in_or_upper_is(title,1,'匝',NULL,'Z'))"},
        Case{"select * from song where Mid([name],3,1)>='啊' And Mid([name],3,1)<'八'",
             "select * from song where c_in(\"name\",3,'啊','八')"},
        Case{"select * from song where x=1 And UCASE(Mid([title],1,1))='I' And Mid([title],2,1)='3'",
             "select * from song where x=1 And c_upper_is(\"title\",1,'I') And " M2 "='3'"},
        Case{"select * from song where not (UCASE(Mid([title],1,1))='I' or Mid([title],1,1)>=\"a\")",
             "select * from song where not (c_upper_is(\"title\",1,'I') or c_in(\"title\",1,'a',NULL))"},
        // NOT binds tighter than AND: only the first comparison is negated.
        Case{"select * from song where not Mid([title],1,1)>='a' And Mid([title],1,1)<'b'",
             "select * from song where not " M1 ">='a' And " M1 "<'b'"},
        Case{"select * from song where Mid([title],1,1)>='a' And Mid([title],2,1)<'b'",
             "select * from song where c_in(\"title\",1,'a',NULL) And " M2 "<'b'"},
        Case{"select * from song where x & Mid([title],1,1)>='a'",
             "select * from song where x || " M1 ">='a'"},
        Case{"select * from song where Mid([title],1,1)>='ab' or Mid([title],1,2)>='a' or "
             "Mid([title],0,1)>='a'",
             "select * from song where " M1 ">='ab' or substr(\"title\",1,2) COLLATE GB2312>='a' or "
             "substr(\"title\",0,1) COLLATE GB2312>='a'"},
        Case{"select * from song where UCASE(Mid([title],1,1))<>'Z' or UCASE(Mid([title],1,1))='Z' = 0",
             "select * from song where upper(" M1 ")<>'Z' or upper(" M1 ")='Z' = 0"},
        Case{"select * from song where grade between 1 and Mid([title],1,1)>='a'",
             "select * from song where grade between 1 and " M1 ">='a'"}));
#undef M1
#undef M2

}  // namespace
}  // namespace td
