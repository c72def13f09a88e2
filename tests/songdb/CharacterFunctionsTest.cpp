#include "SessionFixture.h"
#include "shell/services/AppError.h"
#include "songdb/JetSql.h"
#include "songdb/SongSearch.h"
#include "songdb/SqliteBackend.h"
#include "support/QtPrint.h"
#include <QStringDecoder>
#include <random>
#include <sqlite3.h>

namespace td {
namespace {

using test::SessionFixture;

// Every initial-letter condition must select the same rows through the character functions as
// through the general Mid/UCASE form, on titles made to sit on and beside every bound.
class CharacterFunctions : public SessionFixture {
protected:
    CharacterFunctions() : SessionFixture(QStringLiteral("Chinese Simplified")) {}

    void SetUp() override
    {
        SessionFixture::SetUp();
        SearchMode().clear();
        ASSERT_TRUE(openSession());
        sqlite3* db = dynamic_cast<SqliteBackend&>(file.db().backend()).handle();
        const std::vector<QByteArray> pool = characterPool();
        std::mt19937 random(7);
        const auto insert = [db](const char* valueSql, const QByteArray* bytes) {
            sqlite3_stmt* st = nullptr;
            const QByteArray sql = QByteArray("insert into song (title) values (") + valueSql + ')';
            ASSERT_EQ(sqlite3_prepare_v2(db, sql.constData(), -1, &st, nullptr), SQLITE_OK);
            if (bytes)
                sqlite3_bind_text(st, 1, bytes->constData(), int(bytes->size()), SQLITE_TRANSIENT);
            EXPECT_EQ(sqlite3_step(st), SQLITE_DONE);
            sqlite3_finalize(st);
        };
        sqlite3_exec(db, "begin", nullptr, nullptr, nullptr);
        for (int n = 0; n < 3000; ++n) {
            QByteArray title;
            for (int k = int(random() % 5); k > 0; --k)
                title += pool[random() % pool.size()];
            insert("?", &title);
        }
        // A NULL, an empty blob, blobs, a number, text that is no valid UTF-8, an embedded NUL.
        for (const char* value :
             {"null", "x''", "x'5a'", "x'e58c9d41'", "123", "cast(x'e58c' as text)",
              "cast(x'c3' as text) || 'Z'", "cast(x'5a00e58c9d' as text)", "'z' || char(0x10400)"})
            insert(value, nullptr);
        sqlite3_exec(db, "commit", nullptr, nullptr, nullptr);
    }

    // The bounds of the initials, the characters just below and above each, ASCII letters and
    // digits, and characters whose upper case is special (ß, ſ, ı, full-width and Deseret letters).
    static std::vector<QByteArray> characterPool()
    {
        std::vector<QByteArray> pool;
        const QString bounds = QString::fromUtf8("啊八擦搭蛾发噶哈击喀垃妈拿哦啪期然撒塌挖昔压匝中国");
        for (const QChar c : bounds) {
            QByteArray gb = QStringEncoder("GB18030").encode(QString(c));
            for (int step : {-1, 0, 1}) {
                QByteArray near = gb;
                near[1] = char(quint8(near[1]) + step);
                pool.push_back(QString(QStringDecoder("GB18030").decode(near)).toUtf8());
            }
        }
        for (char c : QByteArray("AGIUVZagiuvz039 -"))
            pool.push_back(QByteArray(1, c));
        for (const char* s : {"ß", "ſ", "ı", "Ｚ", "ｚ", "𐐨", "é", "ǅ"})
            pool.push_back(QByteArray(s));
        return pool;
    }

    std::vector<qint64> ids(const QString& jet, const SqlDialect& dialect)
    {
        const QString sql = TranslateJetSql(jet, dialect).sql;
        EXPECT_EQ(sql.contains(u"td_char_"), !dialect.characterFunctions.isEmpty()) << sql.toStdString();
        std::vector<qint64> out;
        const auto rows = file.db().backend().query(sql, false, nullptr);
        for (qsizetype r = 0; r < rows->rowCount(); ++r)
            out.push_back(rows->integer(r, 0));
        return out;
    }
};

TEST_F(CharacterFunctions, SelectTheRowsOfTheGeneralForm)
{
    const SqlDialect& fused = file.db().backend().dialect();
    SqlDialect general = fused;
    general.characterFunctions.clear();
    std::size_t selected = 0;  // by the conditions themselves, so that agreement means something
    QStringList values;
    for (char c = 'A'; c <= 'Z'; ++c)
        values << QString(QLatin1Char(c)) << QStringLiteral("a") + QLatin1Char(c) + QStringLiteral("Z");
    values << QStringLiteral("ZG") << QStringLiteral("3A") << QStringLiteral("IV") << QStringLiteral("Z?G");
    QStringList conditions;
    for (const QString& value : values)
        conditions << AlphabetCondition(value);
    // Characters whose upper case is not their simple upper case (ß is "SS") or lies outside ASCII.
    for (const char* c : {"ß", "Ｚ", "ǅ", "Σ"})
        conditions << QString::fromUtf8(" and (UCASE(Mid([title],1,1))='%1' or UCASE(Mid([title],2,1))='%1')")
                          .arg(QString::fromUtf8(c));
    for (const QString& condition : conditions) {
        // Under "not", a NULL that became false would turn into rows selected.
        const QString plain = QStringLiteral("select id from song where id>0") + condition;
        const QString negated = QStringLiteral("select id from song where not (id>0") + condition + u')';
        for (const QString& jet : {plain, negated})
            EXPECT_EQ(ids(jet, fused), ids(jet, general)) << jet.toStdString();
        selected += ids(plain, general).size();
    }
    EXPECT_GT(selected, 1000u);
}

TEST_F(CharacterFunctions, BadPositionIsAnError)
{
    EXPECT_THROW(file.db().backend().query(QStringLiteral("select td_char_upper_is(title, 0, 'Z') from song"),
                                           false, nullptr),
                 AppError);
}

}  // namespace
}  // namespace td
