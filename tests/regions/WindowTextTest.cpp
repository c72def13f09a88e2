// Window text: the designed texts kept in Res<window>.tmp, and a language switch of an open window.
#include "controls/ctlButtons.h"
#include "controls/ctlDataView.h"
#include "regions/InterfaceFont.h"
#include "regions/WindowText.h"
#include "shell/services/Ini.h"
#include "shell/services/TextStore.h"
#include "shell/services/Translate.h"
#include "support/QtApp.h"
#include "support/TempAppDir.h"
#include <QAction>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>
#include <gtest/gtest.h>

using namespace td;

namespace {

// A window as a designer leaves it: captions in English, names on everything that has text.
struct TestWindow {
    QWidget window;
    QPushButton* cmdSave;
    QPushButton* cmdEmpty;
    QLabel* lblName;
    QGroupBox* fraOptions;
    QPushButton* cmdPick1;
    QAction* mnuRefresh;
    QToolBar* tbrMain;
    ctlDataView* view;
    ctlButtons* buttons;

    explicit TestWindow(const QString& formatFile)
    {
        window.setObjectName(QStringLiteral("frmTest"));
        window.setWindowTitle(QStringLiteral("Song list - <productname>"));
        auto* layout = new QVBoxLayout(&window);
        cmdSave = add<QPushButton>(layout, "cmdSave", QStringLiteral("Save (&S)"));
        cmdSave->setToolTip(QStringLiteral("Save the song"));
        cmdEmpty = add<QPushButton>(layout, "cmdEmpty", QString());
        lblName = add<QLabel>(layout, "lblName", QStringLiteral("Name"));
        fraOptions = new QGroupBox(QStringLiteral("Options"), &window);
        fraOptions->setObjectName(QStringLiteral("fraOptions"));
        layout->addWidget(fraOptions);
        cmdPick1 = new QPushButton(QStringLiteral("Pick"), fraOptions);
        cmdPick1->setObjectName(QStringLiteral("cmdPick(1)"));
        mnuRefresh = new QAction(QStringLiteral("Refresh (&R)"), &window);
        mnuRefresh->setObjectName(QStringLiteral("mnuRefresh"));
        tbrMain = new QToolBar(&window);
        tbrMain->setObjectName(QStringLiteral("tbrMain"));
        tbrMain->addAction(QStringLiteral("Play"))->setToolTip(QStringLiteral("Play the song"));
        layout->addWidget(tbrMain);
        view = new ctlDataView(&window);
        view->setObjectName(QStringLiteral("lvwSong"));
        layout->addWidget(view);
        buttons = new ctlButtons(&window);
        buttons->setObjectName(QStringLiteral("ctlButtons1"));
        layout->addWidget(buttons);

        // The load: window text first, then the format files.
        ExportWindowText(&window);
        ApplyWindowText(&window);
        view->setIniFile(formatFile);
        view->LoadViewFormat();
        buttons->setIniFile(formatFile);
        buttons->LoadButtonFormat();
    }

    template <class W>
    W* add(QVBoxLayout* layout, const char* name, const QString& text)
    {
        auto* w = new W(text, &window);
        w->setObjectName(QLatin1String(name));
        layout->addWidget(w);
        return w;
    }
};

class WindowText : public ::testing::Test {
protected:
    void SetUp() override
    {
        test::EnsureQtApp();
        ResetWindowTextFont();
        format = dir.write(QStringLiteral("ListTest.ini"),
                           "[ColPosition]\nCol_title=0\n[Col_title]\nCaption=Title\n"
                           "[Buttons]\nCount=1\n[Button1]\nClass=save\nCaption=Save\n");
        const QString chinese = QStringLiteral(
            "[Resource]\r\nSave=保存\r\nName=名称\r\nOptions=选项\r\nSong list=歌曲列表\r\nTitle=标题\r\n"
            "Play=播放\r\nPlay the song=播放歌曲\r\nRefresh=刷新\r\nPick=选择\r\nSave the song=保存歌曲\r\n");
        dir.write(QStringLiteral("Region/Chinese/string.txt"), {});
        WriteTextStore(dir.file(QStringLiteral("Region/Chinese/string.txt")), chinese);
    }
    void TearDown() override { ResetWindowTextFont(); }

    QString tmp(const char* section, const char* key) const
    {
        return IniRead(dir.file(QStringLiteral("ResfrmTest.tmp")), QLatin1String(section), QLatin1String(key),
                       QStringLiteral("<none>"));
    }

    test::TempAppDir dir;
    QString format;
};

TEST_F(WindowText, ExportKeepsDesignedTextsByNameAndIndex)
{
    TestWindow w(format);
    const struct {
        const char* section;
        const char* key;
        const char* value;
    } cases[] = {
        {"ControlCaption", "frmTest", "Song list - <productname>"},
        {"ControlCaption", "cmdSave", "Save (&S)"},
        {"ControlToolTip", "cmdSave", "Save the song"},
        {"ControlCaption", "cmdEmpty", "<none>"},
        {"ControlCaption", "fraOptions", "Options"},
        {"ControlCaption", "cmdPick(1)", "Pick"},
        {"ControlCaption", "mnuRefresh", "Refresh (&R)"},
        {"ControlToolTip", "mnuRefresh", "<none>"},
        {"ControlCaption", "tbrMain(1)", "Play"},
        {"ControlToolTip", "tbrMain(1)", "Play the song"},
        {"ControlCaption", "cmdMove(0)", "<none>"},  // parts of the data view are its own
    };
    for (const auto& c : cases)
        EXPECT_EQ(tmp(c.section, c.key), QString::fromUtf8(c.value)) << c.key;
    // Without a translation the texts lose dots and accelerators, and the product name stays.
    EXPECT_EQ(w.window.windowTitle(), QStringLiteral("Song list - Tunedesk"));
    EXPECT_EQ(w.cmdSave->text(), QStringLiteral("Save"));
}

TEST_F(WindowText, LanguageSwitchOfAnOpenWindow)
{
    TestWindow w(format);
    w.cmdEmpty->setText(QStringLiteral("set at run time"));
    w.lblName->setText(QStringLiteral("set at run time"));

    EXPECT_EQ(SetRegionAndApply(QStringLiteral("Chinese")), QStringLiteral("True"));
    EXPECT_EQ(w.window.windowTitle(), QStringLiteral("歌曲列表 - Tunedesk"));
    EXPECT_EQ(w.cmdSave->text(), QStringLiteral("保存 (&S)"));
    EXPECT_EQ(w.cmdSave->toolTip(), QStringLiteral("保存歌曲"));
    EXPECT_EQ(w.lblName->text(), QStringLiteral("名称"));  // back to the designed text, translated
    EXPECT_EQ(w.cmdEmpty->text(), QString());
    EXPECT_EQ(w.fraOptions->title(), QStringLiteral("选项"));
    EXPECT_EQ(w.cmdPick1->text(), QStringLiteral("选择"));
    EXPECT_EQ(w.mnuRefresh->text(), QStringLiteral("刷新 (&R)"));
    EXPECT_EQ(w.tbrMain->actions().value(0)->text(), QStringLiteral("播放"));
    // Texts from the format file were translated at load and stay until the window opens again.
    EXPECT_EQ(w.view->model()->headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(),
              QStringLiteral("Title"));
    EXPECT_EQ(w.buttons->cmdButton(1)->text(), QStringLiteral("Save"));

    TestWindow reopened(format);
    EXPECT_EQ(reopened.view->model()->headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(),
              QStringLiteral("标题"));
}

TEST_F(WindowText, UnknownRegionChangesNothing)
{
    TestWindow w(format);
    EXPECT_EQ(SetRegionAndApply(QStringLiteral("Nowhere")), QString());
    EXPECT_EQ(w.cmdSave->text(), QStringLiteral("Save"));
    IniWrite(dir.file(QStringLiteral("Region.ini")), QStringLiteral("Home"), QStringLiteral("Default"),
             QStringLiteral("Chinese"));
    EXPECT_EQ(GetRegionFolder(), dir.path() + QStringLiteral("/Region/Chinese"));
}

TEST_F(WindowText, DataBoundControlsTakeTheWholeInterfaceFont)
{
    TestWindow w(format);
    const QFont f = w.view->font();
    EXPECT_EQ(f.pointSize(), 9);
    EXPECT_EQ(f.family(), GetInterfaceFont().Name);
    EXPECT_EQ(w.cmdSave->font().family(), GetInterfaceFont().Name);
    EXPECT_NE(w.cmdSave->font().pointSize(), 0);  // other controls keep their own size
}

}  // namespace
