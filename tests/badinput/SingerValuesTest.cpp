// The singer window with quotes, line breaks, statement text and 1,000-character values in every text
// field: each is saved and shown again exactly, by a save and by an add, and no other singer changes.
#include "controls/ctlDataFields.h"
#include "controls/ctlDataView.h"
#include "singers/frmSinger.h"
#include "songdb/Connection.h"
#include "songdb/SongSession.h"
#include "support/QtApp.h"
#include "support/QtPrint.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <gtest/gtest.h>

namespace td::test {
namespace {

const char* const kSingerFields[] = {"name", "type", "region", "description", "remark"};

const QString kOddValues[] = {
    QStringLiteral("O'Neil \"the\" ''Voice'"),
    QStringLiteral("one\r\ntwo\nthree\rfour\r\n"),
    QStringLiteral("歌'\"x").repeated(250),
    QStringLiteral("x'; delete * from singer; --"),
};

class SingerValues : public ::testing::Test {
protected:
    SingerValues()
    {
        EnsureQtApp();
        QFile::copy(QStringLiteral(TUNEDESK_SOURCE_DIR "/data/ListSinger.ini"),
                    app.file(QStringLiteral("ListSinger.ini")));
        if (!app.openSongDatabase())
            ADD_FAILURE() << "the test database did not open";
        SongConnection()->execute(
            QStringLiteral("insert into singer (name, type) values ('Alice', 'female')"));
        SongConnection()->execute(QStringLiteral("insert into singer (name, type) values ('Bob', 'male')"));
        window = std::make_unique<frmSinger>();
        window->resize(900, 560);
        window->show();
        waitForList();
        dialogs.clear();
    }
    ~SingerValues() override
    {
        window.reset();
        SongCloseDatabase();
    }
    void waitForList()
    {
        QElapsedTimer clock;
        clock.start();
        while (window->ListLoading() && clock.elapsed() < 10000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        ASSERT_FALSE(window->ListLoading());
    }
    // Selects the one row whose bookmark is the singer's row id and shows it in the editor.
    void selectRow(qint64 rowid)
    {
        ListItems& items = window->ctlView()->MainItems();
        QList<int> selected{0};
        for (int i = 1; i <= items.Count(); ++i) {
            items.setSelected(i, items.Tag(i) == rowid);
            if (items.Tag(i) == rowid)
                selected << i;
        }
        ASSERT_EQ(selected.size(), 2);
        window->LoadFieldDatas(selected);
    }
    int field(const char* name) const
    {
        return window->ctlFields()->GetFieldIndex(QString::fromLatin1(name));
    }
    void edit(const char* name, const QString& value)
    {
        window->ctlFields()->SetField(field(name), QStringLiteral("value"), value);
        window->ctlFields()->SetField(field(name), QStringLiteral("changed"), true);
    }
    QString shown(const char* name) const
    {
        return window->ctlFields()->GetField(field(name), QStringLiteral("value")).toString();
    }
    QString stored(const char* name, qint64 rowid) const
    {
        auto rs = SongConnection()->openRecordset(QStringLiteral("select [%1] from singer where rowid=%2")
                                                      .arg(QString::fromLatin1(name))
                                                      .arg(rowid));
        return rs->RecordCount() == 1 ? rs->text(0, 0) : QStringLiteral("<%1 rows>").arg(rs->RecordCount());
    }
    QString bob() const
    {
        auto rs = SongConnection()->openRecordset(
            QStringLiteral("select name & '|' & type from singer where rowid=2"));
        return rs->text(0, 0);
    }

    TempAppDir app;
    ScriptedDialogs dialogs;
    std::unique_ptr<frmSinger> window;
};

TEST_F(SingerValues, EveryTextFieldKeepsItsValueBySave)
{
    for (const QString& value : kOddValues) {
        for (const char* name : kSingerFields) {
            selectRow(1);
            dialogs.clear();
            edit(name, value);
            EXPECT_TRUE(window->SaveItem()) << name << ": " << qPrintable(dialogs.messages().join(u'\n'));
            EXPECT_EQ(stored(name, 1), value) << name;
            selectRow(1);
            EXPECT_EQ(shown(name), value) << name << " back in the editor";
        }
    }
    EXPECT_EQ(bob(), QStringLiteral("Bob|male"));
}

TEST_F(SingerValues, ANewSingerKeepsEveryValueByAdd)
{
    qint64 rowid = 2;
    for (const QString& value : kOddValues) {
        selectRow(1);
        dialogs.clear();
        for (const char* name : kSingerFields)
            edit(name, name == QByteArray("name") ? value : value + QString::fromLatin1(name));
        ASSERT_TRUE(window->AddItem()) << qPrintable(dialogs.messages().join(u'\n'));
        ++rowid;
        for (const char* name : kSingerFields)
            EXPECT_EQ(stored(name, rowid),
                      name == QByteArray("name") ? value : value + QString::fromLatin1(name))
                << name;
    }
    EXPECT_EQ(bob(), QStringLiteral("Bob|male"));
    EXPECT_EQ(stored("name", 1), QStringLiteral("Alice"));
}

}  // namespace
}  // namespace td::test
