// One window built from one format file: a list of 1,000 songs, the editor with its row classes and
// the button bar. With TUNEDESK_SCREENSHOT=file.png the window is also saved as a picture.
#include "SongFixture.h"
#include "controls/ctlButtons.h"
#include "controls/ctlDataFields.h"
#include "controls/ctlDataView.h"
#include "support/QtApp.h"
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>
#include <gtest/gtest.h>

using namespace td;

namespace {

const char* kFormat =
    "[View]\nMultiSelect=1\n"
    "[ColPosition]\nCol_id=0\nCol_title=0\nCol_singer=0\nCol_chars=0\n"
    "[Col_id]\nCaption=Number\nWidth=900\n[Col_title]\nCaption=Title\nWidth=2600\n"
    "[Col_singer]\nCaption=Singer\nWidth=1500\n[Col_chars]\nCaption=Chars\nWidth=800\n"
    "[Fields]\nCount=6\nCaptionWidth=1100\nButtonWidth=900\n"
    "[Field1]\nLinkCol=Col_title\nClass=text\n"
    "[Field2]\nLinkCol=Col_singer\nClass=combo\nClassEx=select distinct singer from song\nCmd=Find\n"
    "[Field3]\nCaption=Chars\nField=chars\nClass=text\nHint=count\n"
    "[Field4]\nCaption=Grade\nField=grade\nClass=list\nClassEx=select distinct grade from song\n"
    "[Field5]\nCaption=Password\nField=remark\nClass=text\nClassEx=password\n"
    "[Field6]\nCaption=Kind\nField=remark\nClass=label\nClassEx=Karaoke\nEnabled=0\n"
    "[Buttons]\nCount=4\n"
    "[Button1]\nClass=add\nCaption=Add (&A)\n[Button2]\nClass=save\nCaption=Save (&S)\nToolTipText=Save the "
    "song\n"
    "[Button3]\nClass=delete\nCaption=Delete (&D)\nBackColor=&H8080FF\n[Button4]\nClass=play\nCaption=Play "
    "(&P)\nEnabled=0\n";

TEST(Showcase, OneFormatFileBuildsTheWindow)
{
    test::EnsureQtApp();
    test::SongFixture db(1000);
    db.otherConsole(
        QStringLiteral("update song set title='月亮代表我的心 ' || id, singer='邓丽君' where id % 3 = 0;"
                       "update song set title='光辉岁月 ' || id, singer='Beyond 乐队' where id % 3 = 1;"
                       "update song set remark='secret';"));
    std::shared_ptr<Recordset> rs = db.open();
    const QString format = db.format(QStringLiteral("ListShowcase.ini"), kFormat);

    QWidget window;
    window.setObjectName(QStringLiteral("frmShowcase"));
    window.setWindowTitle(QStringLiteral("Songbook - Tunedesk"));
    auto* layout = new QHBoxLayout(&window);
    auto* view = new ctlDataView(&window);
    auto* fields = new ctlDataFields(&window);
    auto* buttons = new ctlButtons(&window);
    fields->setMinimumWidth(360);
    buttons->setFixedWidth(110);
    layout->addWidget(view, 3);
    layout->addWidget(fields, 2);
    layout->addWidget(buttons);
    for (auto* c :
         {static_cast<QWidget*>(view), static_cast<QWidget*>(fields), static_cast<QWidget*>(buttons)})
        c->setFont(QFont(QStringLiteral("WenQuanYi Micro Hei"), 9));
    view->setIniFile(format);
    fields->setIniFile(format);
    buttons->setIniFile(format);
    view->LoadViewFormat();
    fields->LoadFieldFormat();
    buttons->LoadButtonFormat();
    view->setMrsMain(rs);
    fields->setMrsMain(rs);
    window.resize(1100, 520);
    window.show();

    ASSERT_TRUE(view->LoadViewData());
    EXPECT_EQ(view->MainItems().Count(), 1000);
    view->MoveTo(3);
    view->MainItems().setSelected(6, true);
    ASSERT_TRUE(fields->LoadFieldDatas({QVariant(), view->MainItems().Tag(3), view->MainItems().Tag(6)}));
    fields->SetField(3, QStringLiteral("value"), QStringLiteral("7"));

    EXPECT_EQ(fields->txtValue(1)->text(), QStringLiteral("月亮代表我的心 3"));
    // Rows stand below each other inside the editor; buttons stand below each other inside the bar.
    for (int i = 2; i <= fields->GetFieldCount(); ++i)
        EXPECT_GE(fields->txtValue(i)->y(), fields->txtValue(i - 1)->geometry().bottom()) << i;
    EXPECT_LE(fields->txtValue(1)->geometry().right(), fields->width());
    for (int i = 2; i <= buttons->GetButtonCount(); ++i)
        EXPECT_GT(buttons->cmdButton(i)->y(), buttons->cmdButton(i - 1)->geometry().bottom()) << i;

    const QString shot = qEnvironmentVariable("TUNEDESK_SCREENSHOT");
    if (!shot.isEmpty()) {
        QCoreApplication::processEvents();
        window.grab().save(shot);
    }
    view->setIniFile(QString());  // keep the test's format file as written
}

}  // namespace
