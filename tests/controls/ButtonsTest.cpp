// The button bar: its layout rule and the exact keys of GetButton and SetButton.
#include "controls/ctlButtons.h"
#include "shell/services/AppError.h"
#include "support/QtApp.h"
#include "support/TempAppDir.h"
#include <QPushButton>
#include <gtest/gtest.h>

using namespace td;

namespace {

class Buttons : public ::testing::Test {
protected:
    void SetUp() override
    {
        test::EnsureQtApp();
        bar = std::make_unique<ctlButtons>();
        QObject::connect(bar.get(), &ctlButtons::Resize, [this] { ++resizes; });
        bar->resize(120, 600);
        bar->show();
    }

    void load(const char* format)
    {
        bar->setIniFile(dir.write(QStringLiteral("List.ini"), QByteArray(format)));
        bar->LoadButtonFormat();
    }

    test::TempAppDir dir;
    std::unique_ptr<ctlButtons> bar;
    int resizes = 0;
};

const char* kThree =
    "[Buttons]\nCount=3\n"
    "[Button1]\nClass=save\nCaption=Save\n"
    "[Button2]\nClass=add\nCaption=Add\nToolTipText=Add a song\n"
    "[Button3]\nClass=save\nCaption=Save again\n";

TEST_F(Buttons, NewBarNamesFileZeroAndAnEmptyFormatStillResizes)
{
    EXPECT_EQ(bar->IniFile(), QStringLiteral("0"));
    resizes = 0;
    load("[Other]\n");
    EXPECT_EQ(bar->GetButtonCount(), 0);
    EXPECT_EQ(resizes, 1);
}

TEST_F(Buttons, TallBarStacksButtonsAtHeightPlusThirtyTwips)
{
    load(kThree);
    const int h = bar->cmdButton(0)->height();
    for (int i = 1; i <= 3; ++i) {
        const QRect g = bar->cmdButton(i)->geometry();
        EXPECT_EQ(g.top(), (i - 1) * (h + 2)) << i;  // 30 twips are 2 pixels at 96 dpi
        EXPECT_EQ(g.width(), 120);
        EXPECT_EQ(g.height(), h);
    }
    bar->resize(120, h + 10);  // a short bar closes them up
    EXPECT_EQ(bar->cmdButton(3)->y(), 10);
}

TEST_F(Buttons, OneVisibleButtonStandsAtTheTop)
{
    load("[Buttons]\nCount=2\n[Button1]\nCaption=A\nVisible=0\n[Button2]\nCaption=B\n");
    EXPECT_EQ(bar->cmdButton(2)->geometry(), QRect(0, 0, 120, bar->cmdButton(0)->height()));
    EXPECT_FALSE(bar->cmdButton(1)->isVisible());
}

TEST_F(Buttons, FewerButtonsRemoveTheSurplus)
{
    load(kThree);
    load("[Buttons]\nCount=1\n[Button1]\nCaption=Only\n");
    EXPECT_EQ(bar->GetButtonCount(), 1);
    EXPECT_EQ(bar->findChild<QPushButton*>(QStringLiteral("cmdButton(2)")), nullptr);
    EXPECT_EQ(bar->cmdButton(1)->text(), QStringLiteral("Only"));
}

TEST_F(Buttons, EmptyCaptionKeepsItsPlaceUntilSetButtonEmptiesIt)
{
    load("[Buttons]\nCount=3\n[Button1]\nCaption=A\n[Button2]\n[Button3]\nCaption=C\n");
    const int h = bar->cmdButton(0)->height();
    EXPECT_FALSE(bar->cmdButton(2)->isVisible());
    EXPECT_EQ(bar->GetButton(2, QStringLiteral("visible")), QStringLiteral("True"));
    EXPECT_EQ(bar->cmdButton(3)->y(), 2 * (h + 2));

    bar->SetButton(2, QStringLiteral("caption"), QString());
    EXPECT_EQ(bar->cmdButton(3)->y(), 2 * (h + 2));  // no layout until the next resize
    bar->resize(121, 600);
    EXPECT_EQ(bar->cmdButton(3)->y(), h + 2);
}

TEST_F(Buttons, KeysAreExactAndTrueIsNotANumber)
{
    load(kThree);
    const struct {
        int index;
        const char* key;
        const char* value;
    } reads[] = {
        {1, "class", "save"},
        {1, "Class", ""},
        {2, "tooltiptext", "Add a song"},
        {2, "enabled", "True"},
        {2, "backcolor", "-2147483633"},
        {2, "nosuch", ""},
    };
    for (const auto& r : reads)
        EXPECT_EQ(bar->GetButton(r.index, QLatin1String(r.key)), QLatin1String(r.value)) << r.key;

    EXPECT_FALSE(bar->SetButton(1, QStringLiteral("enabled"), QStringLiteral("True")));
    EXPECT_FALSE(bar->cmdButton(1)->isEnabled());
    EXPECT_EQ(bar->GetButton(1, QStringLiteral("enabled")), QStringLiteral("False"));
    bar->SetButton(1, QStringLiteral("enabled"), QStringLiteral("1"));
    EXPECT_TRUE(bar->cmdButton(1)->isEnabled());
    bar->SetButton(1, QStringLiteral("Enabled"), QStringLiteral("0"));  // unknown key: nothing
    EXPECT_TRUE(bar->cmdButton(1)->isEnabled());
    bar->SetButton(1, QStringLiteral("class"), QStringLiteral("print"));
    EXPECT_EQ(bar->cmdButton(1)->property("Tag").toString(), QStringLiteral("save"));  // the Tag stays

    EXPECT_EQ(bar->GetButtonIndex(QStringLiteral("save")), 3);  // button 1 is "print" now
    EXPECT_EQ(bar->GetButtonIndex(QStringLiteral("Add")), 0);
    EXPECT_THROW(bar->GetButton(4, QStringLiteral("class")), AppError);
}

TEST_F(Buttons, ClickCarriesTheIndex)
{
    load(kThree);
    int clicked = 0;
    QObject::connect(bar.get(), &ctlButtons::Click, [&](int i) { clicked = i; });
    bar->cmdButton(2)->click();
    EXPECT_EQ(clicked, 2);
    EXPECT_EQ(bar->GetButton(clicked, QStringLiteral("class")), QStringLiteral("add"));
}

}  // namespace
