// The progress window's counter texts and bar, and the button row of the message dialog.
#include "controls/frmMsgbox.h"
#include "controls/frmProcess.h"
#include "support/QtApp.h"
#include "support/TempAppDir.h"
#include <QPushButton>
#include <QTimer>
#include <gtest/gtest.h>

using namespace td;

namespace {

class Dialogs : public ::testing::Test {
protected:
    void SetUp() override { test::EnsureQtApp(); }
    void TearDown() override { frmProcess::Instance().EndProcess(); }
    test::TempAppDir dir;
};

TEST_F(Dialogs, PercentageShowsTheBareHintUntilTheFirstStep)
{
    frmProcess& p = frmProcess::Instance();
    p.StartProcess(QString(), QStringLiteral("Copying"), 0, 100, true);
    EXPECT_EQ(p.HintText(), QStringLiteral("Copying"));
    // The designed caption stays, in the interface language: without a region file the bare words.
    EXPECT_EQ(p.windowTitle(), QStringLiteral("Processing"));
    p.Processing(5);
    EXPECT_EQ(p.HintText(), QStringLiteral("Copying 5 of 100 done!"));
}

TEST_F(Dialogs, CounterAndMaximumFollowTheSteps)
{
    const struct {
        qint64 max;
        qint64 start;
        qint64 step;
        const char* text;
    } cases[] = {
        {10, 0, 0, "Job 1 of 10 done!"},
        {10, 10, 0, "Job 11 of 11 done!"},  // a plain step at the maximum raises it
        {100, 0, 500, "Job 500 of 500 done!"},
        {2000000, 0, 1500000, "Job 1500000 of 2000000 done!"},
    };
    frmProcess& p = frmProcess::Instance();
    for (const auto& c : cases) {
        p.StartProcess(QStringLiteral("Import"), QStringLiteral("Job"), c.start, c.max, true);
        p.Processing(c.step);
        EXPECT_EQ(p.HintText(), QLatin1String(c.text));
    }
    p.StartProcess(QString(), QStringLiteral("Job"), 0, 7, true);
    EXPECT_EQ(p.HintText(), QStringLiteral("Job 0 of 7 done!"));
    EXPECT_EQ(p.windowTitle(), QStringLiteral("Import"));
}

TEST_F(Dialogs, CancelSetsTheFlagUntilResumed)
{
    frmProcess& p = frmProcess::Instance();
    p.StartProcess(QString(), QStringLiteral("Job"), 0, 1000000, true);
    EXPECT_FALSE(p.IsProcessCanceled());
    p.cancelButton()->click();
    EXPECT_TRUE(p.IsProcessCanceled());
    EXPECT_TRUE(p.IsProcessCanceled());  // the window does not close itself or forget
    p.ResumeProcess();
    EXPECT_FALSE(p.IsProcessCanceled());

    p.StartProcess(QString(), QStringLiteral("Job"), 0, 10, false);
    EXPECT_FALSE(p.cancelButton()->isEnabled());
}

TEST_F(Dialogs, MessageButtonsAreCentredInEqualShares)
{
    frmMsgbox box;
    box.setNButton(3);
    for (int i = 1; i <= 3; ++i) {
        box.Buttons(i)->resize(40, box.Buttons(i)->height());  // 600 twips
        box.Buttons(i)->setText(QStringLiteral("B%1").arg(i));
    }
    box.resize(200, 150);  // 3,000 twips
    box.show();
    EXPECT_EQ(box.Buttons(1)->x(), 13);   // 200 twips
    EXPECT_EQ(box.Buttons(2)->x(), 80);   // 1,200 twips
    EXPECT_EQ(box.Buttons(3)->x(), 147);  // 2,200 twips
    EXPECT_EQ(box.windowTitle(), QStringLiteral("Tunedesk"));

    box.Buttons(2)->click();
    EXPECT_EQ(box.Result, QStringLiteral("B2"));
    EXPECT_FALSE(box.isVisible());
}

}  // namespace
