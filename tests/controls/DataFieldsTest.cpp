// The record editor over a live recordset: several records at once, edits and their guard, writes.
#include "SongFixture.h"
#include "controls/DropDownCombo.h"
#include "controls/OleColor.h"
#include "controls/ctlDataFields.h"
#include "support/QtApp.h"
#include "support/ScriptedDialogs.h"
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

using namespace td;

namespace {

const char* kFormat =
    "[Fields]\nCount=5\nCaptionWidth=1500\n"
    "[Field1]\nLinkCol=Col_title\n"
    "[Col_title]\nCaption=Title\n"
    "[Field2]\nCaption=Singer\nField=singer\nClass=combo\nClassEx=select distinct singer from song order by "
    "singer\n"
    "[Field3]\nCaption=Chars\nField=chars\nClass=text\n"
    "[Field4]\nCaption=Kind\nField=remark\nClass=label\nClassEx=Fixed\n"
    "[Field5]\nCaption=Grade\nField=chars\nClass=list\nClassEx=select distinct chars from song order by "
    "chars\n";

class DataFields : public ::testing::Test {
protected:
    void SetUp() override { test::EnsureQtApp(); }

    void make(int rows, const char* format = kFormat)
    {
        db = std::make_unique<test::SongFixture>(rows);
        rs = db->open();
        fields = std::make_unique<ctlDataFields>();
        fields->resize(600, 400);
        fields->show();
        fields->setIniFile(db->format(QStringLiteral("List.ini"), format));
        fields->LoadFieldFormat();
        fields->setMrsMain(rs);
        fields->OpenRecordset = [this](const QString& sql) { return db->connection().openRecordset(sql); };
        QObject::connect(fields.get(), &ctlDataFields::BeforeValueChanged,
                         [this](int i, const QString& old, QString& now, bool& cancel) {
                             events << QStringLiteral("before %1 %2>%3").arg(i).arg(old, now);
                             cancel = refuse;
                         });
        QObject::connect(fields.get(), &ctlDataFields::AfterValueChanged,
                         [this](int i, const QString& old, const QString& now) {
                             events << QStringLiteral("after %1 %2>%3").arg(i).arg(old, now);
                         });
    }

    QString stored(int id, const char* field)
    {
        auto check = db->open(QStringLiteral("select * from song where id=%1").arg(id));
        return check->RecordCount() ? check->Fields(QString::fromLatin1(field)).Text()
                                    : QStringLiteral("<gone>");
    }

    std::unique_ptr<test::SongFixture> db;
    std::shared_ptr<Recordset> rs;
    std::unique_ptr<ctlDataFields> fields;
    QStringList events;
    bool refuse = false;
};

TEST_F(DataFields, SeveralRecordsShowTheFirstAndMarkDifferencesGrey)
{
    make(10);
    ASSERT_TRUE(fields->LoadFieldDatas({QVariant(), qint64(1), qint64(8)}));
    EXPECT_EQ(fields->txtValue(1)->text(), QStringLiteral("Song 1"));  // title differs
    EXPECT_EQ(fields->ValueForeColor(1), kSysGrayText);
    EXPECT_EQ(fields->GetField(1, QStringLiteral("value")).toString(), QStringLiteral("Song 8"));
    EXPECT_EQ(fields->ValueForeColor(2), kSysWindowText);  // both "Singer 1"
    EXPECT_EQ(fields->cboValue(2)->currentText(), QStringLiteral("Singer 1"));
    EXPECT_EQ(fields->txtValue(4)->text(), QStringLiteral("Fixed"));  // a label row shows its text
    EXPECT_FALSE(fields->GetField(2, QStringLiteral("changed")).toBool());
    EXPECT_TRUE(events.isEmpty());  // loading is no edit

    fields->cboValue(2)->lineEdit()->selectAll();
    QTest::keyClicks(fields->cboValue(2)->lineEdit(), QStringLiteral("Duo"));
    EXPECT_EQ(fields->ValueForeColor(2), kPureBlue);
    EXPECT_TRUE(fields->GetField(2, QStringLiteral("Changed")).toBool());
    EXPECT_EQ(events.last(), QStringLiteral("after 2 Du>Duo"));

    ASSERT_TRUE(fields->SaveData(qint64(1)));
    ASSERT_TRUE(fields->SaveData(qint64(8)));
    EXPECT_EQ(stored(1, "singer"), QStringLiteral("Duo"));
    EXPECT_EQ(stored(8, "singer"), QStringLiteral("Duo"));
    EXPECT_EQ(stored(1, "title"), QStringLiteral("Song 1"));  // unchanged fields keep their own values
    EXPECT_EQ(stored(8, "title"), QStringLiteral("Song 8"));
    EXPECT_EQ(stored(8, "remark"), QString());
}

TEST_F(DataFields, CancelRestoresTheTextAndLeavesTheFieldUnchanged)
{
    make(3);
    fields->LoadFieldDatas({QVariant(), qint64(2)});
    refuse = true;
    QTest::keyClicks(fields->txtValue(3), QStringLiteral("7"));
    EXPECT_EQ(events, QStringList{QStringLiteral("before 3 2>27")});
    EXPECT_EQ(fields->txtValue(3)->text(), QStringLiteral("2"));
    EXPECT_FALSE(fields->GetField(3, QStringLiteral("changed")).toBool());
    EXPECT_EQ(fields->ValueForeColor(3), kSysWindowText);
}

TEST_F(DataFields, AddWritesEveryRowWithTypeConversion)
{
    test::ScriptedDialogs dialogs;
    make(2,
         "[Fields]\nCount=3\n"
         "[Field1]\nField=title\nClass=label\nClassEx=Fixed title\n"
         "[Field2]\nField=chars\nClass=text\n"
         "[Field3]\nField=flag\nClass=text\n");
    const struct {
        const char* chars;
        const char* flag;
        const char* storedChars;
        bool ok;
    } cases[] = {
        {"12abc", "True", "12", true},
        {"", "0", "0", true},
        {"3", "maybe", nullptr, false},
    };
    fields->LoadFieldDatas({QVariant(), qint64(1)});  // a label row's value is its text from the load on
    for (const auto& c : cases) {
        fields->SetField(2, QStringLiteral("value"), QString::fromLatin1(c.chars));
        fields->SetField(3, QStringLiteral("value"), QString::fromLatin1(c.flag));
        QVariant bookmark;
        EXPECT_EQ(fields->AddData(bookmark), c.ok) << c.chars;
        if (c.ok) {
            EXPECT_EQ(stored(int(bookmark.toLongLong()), "chars"), QString::fromLatin1(c.storedChars));
            EXPECT_EQ(stored(int(bookmark.toLongLong()), "title"), QStringLiteral("Fixed title"));
        }
    }
    ASSERT_EQ(dialogs.messages().size(), 1);
    EXPECT_EQ(dialogs.messages()[0], QStringLiteral("CtlDataFields - add data failed!  Err=Type mismatch"));
    EXPECT_EQ(rs->editMode(), Recordset::EditMode::None);  // the pending edit was withdrawn
    EXPECT_EQ(fields->GetField(3, QStringLiteral("value")).toString(), QStringLiteral("maybe"));
}

TEST_F(DataFields, KeysInAnyCaseAndIndexesOutsideTheTable)
{
    make(1);
    EXPECT_EQ(fields->GetFieldCount(), 5);
    EXPECT_EQ(fields->GetFieldIndex(QStringLiteral("TITLE")), 1);
    EXPECT_EQ(fields->GetFieldIndex(QStringLiteral("nosuch")), 0);
    EXPECT_EQ(fields->GetField(1, QStringLiteral("CAPTION")).toString(), QStringLiteral("Title"));
    EXPECT_FALSE(fields->GetField(6, QStringLiteral("caption")).isValid());
    EXPECT_FALSE(fields->GetField(1, QStringLiteral("colour")).isValid());

    EXPECT_FALSE(fields->SetField(1, QStringLiteral("CHANGED"), true));
    EXPECT_EQ(fields->ValueForeColor(1), kPureBlue);
    fields->SetField(1, QStringLiteral("Changed"), false);
    EXPECT_EQ(fields->ValueForeColor(1), kSysWindowText);
    fields->SetField(1, QStringLiteral("enabled"), false);
    EXPECT_EQ(fields->ValueForeColor(1), kSysGrayText);
    EXPECT_FALSE(fields->txtValue(1)->isEnabled());
}

TEST_F(DataFields, ListRowsOnlyPickAndListsAreReadEachTimeTheyOpen)
{
    make(12);
    fields->LoadFieldDatas({QVariant(), qint64(3)});
    DropDownCombo* grade = fields->cboValue(5);
    QTest::keyClicks(grade->lineEdit(), QStringLiteral("9"));
    EXPECT_TRUE(events.isEmpty());
    EXPECT_EQ(grade->currentText(), QStringLiteral("3"));

    emit grade->DropDown();
    ASSERT_EQ(grade->count(), 10);
    EXPECT_EQ(grade->currentText(), QStringLiteral("3"));  // the text survives the refill
    EXPECT_TRUE(events.isEmpty());
    grade->setCurrentIndex(7);
    emit grade->activated(7);
    EXPECT_EQ(events, (QStringList{QStringLiteral("before 5 3>7"), QStringLiteral("after 5 3>7")}));

    DropDownCombo* singer = fields->cboValue(2);
    emit singer->DropDown();
    EXPECT_EQ(singer->count(), 7);
    db->otherConsole(QStringLiteral("insert into song (title, singer) values ('x', 'Zed')"));
    emit singer->DropDown();
    EXPECT_EQ(singer->count(), 8);
}

TEST_F(DataFields, LayoutFollowsTheCaptionColumn)
{
    make(1);
    const int left = fields->lblCaption(0)->x();
    EXPECT_EQ(fields->txtValue(1)->x(), left + 100);  // 1500 twips at 96 dpi
    EXPECT_LT(fields->txtValue(1)->y(), fields->txtValue(2)->y());

    fields->setIniFile(
        db->format(QStringLiteral("Bare.ini"),
                   "[Fields]\nCount=1\nCaptionVisible=0\n[Field1]\nField=title\nClass=text\n"));
    fields->LoadFieldFormat();
    EXPECT_EQ(fields->GetFieldCount(), 1);
    EXPECT_EQ(fields->txtValue(1)->x(), left);
    EXPECT_FALSE(fields->lblCaption(1)->isVisibleTo(fields.get()));
}

TEST_F(DataFields, AWideValueShowsAsTip)
{
    make(1);
    db->otherConsole(QStringLiteral(
        "update song set title='A title far too long to fit into a box this narrow' where id=1"));
    rs->Requery();
    fields->resize(220, 400);
    fields->LoadFieldDatas({QVariant(), qint64(1)});
    EXPECT_EQ(fields->txtValue(1)->toolTip(), fields->txtValue(1)->text());
    fields->resize(2000, 400);
    fields->LoadFieldDatas({QVariant(), qint64(1)});
    EXPECT_TRUE(fields->txtValue(1)->toolTip().isEmpty());
}

}  // namespace
