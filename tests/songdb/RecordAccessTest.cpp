#include "SessionFixture.h"
#include "songdb/RecordAccess.h"
#include "support/QtPrint.h"

namespace td {
namespace {

using test::SessionFixture;

class BuiltSelect : public SessionFixture {
protected:
    void SetUp() override
    {
        SessionFixture::SetUp();
        ASSERT_TRUE(openSession());
    }
};

// A missing table makes every statement fail, so the one message shows the statement built.
TEST_F(BuiltSelect, FailureShowsOneMessageWithTheStatement)
{
    struct Case {
        const char* fields;
        const char* where;
        const char* order;
        const char* statement;
    };
    const Case cases[] = {
        {"*", "", "", "select * from nosuch"},
        {"", "all", "", "select * from nosuch"},
        {"title, singer", "grade<=1", "title",
         "select title, singer from nosuch where grade<=1 order by title"},
        {"", "Where grade<=1", "",
         "select * from nosuch where e grade<=1"},  // the word is cut at its last letter
    };
    for (const Case& c : cases) {
        dialogs.clear();
        std::unique_ptr<Recordset> rs;
        EXPECT_FALSE(SongGetRecordset(QString::fromUtf8(c.fields), QStringLiteral("nosuch"),
                                      QString::fromUtf8(c.where), QString::fromUtf8(c.order), rs));
        EXPECT_EQ(rs, nullptr);
        const QStringList shown = dialogs.messages();
        ASSERT_EQ(shown.size(), 1) << c.statement;
        EXPECT_TRUE(shown[0].startsWith(u"SongGetRecordset failed! Err=")) << shown[0].toStdString();
        EXPECT_TRUE(shown[0].endsWith(QStringLiteral("\r\nSQL=") + QString::fromUtf8(c.statement)))
            << shown[0].toStdString();
    }
}

}  // namespace
}  // namespace td
