// What the frame shows for its children: the status panes of the window in front, the windows' own
// menus while they are open, the Window menu; and where the frame opens on the screen.
#include "shell/CommandTarget.h"
#include "shell/FrameGeometry.h"
#include "shell/mdiMain.h"
#include "shell/services/Ini.h"
#include "support/QtApp.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QAction>
#include <QGuiApplication>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPointer>
#include <QScreen>
#include <gtest/gtest.h>

using namespace td;

namespace {

// A working window that writes the panes through the frame it was made with.
class PaneWindow : public QWidget, public CommandTarget {
public:
    PaneWindow(WindowFrame& frame, const QString& menu) : frame(frame)
    {
        if (!menu.isEmpty())
            frame.setOwnMenu(menu);
    }
    void ExecuteCommand(const QString&) override {}
    void write(const QString& total, const QString& log)
    {
        frame.setPane(StatusPane::Total, total);
        frame.setPane(StatusPane::Log, log);
    }
    WindowFrame& frame;
};

class FrameContract : public ::testing::Test {
protected:
    void SetUp() override
    {
        mdiMain::registerWindow(QStringLiteral("frmPaneA"),
                                [](WindowFrame& f) { return new PaneWindow(f, QStringLiteral("mnuSong")); });
        mdiMain::registerWindow(QStringLiteral("frmPaneB"), [](WindowFrame& f) {
            return new PaneWindow(f, QStringLiteral("mnuSinger"));
        });
    }
    PaneWindow* show(const char* name)
    {
        return dynamic_cast<PaneWindow*>(frame.ShowWindow(QString::fromLatin1(name)));
    }
    static void closeByButton(QWidget* w) { qobject_cast<QMdiSubWindow*>(w->parentWidget())->close(); }
    QStringList panes() const
    {
        return {frame.pane(StatusPane::Total), frame.pane(StatusPane::Selected), frame.pane(StatusPane::Log)};
    }
    bool menuShown(const char* name) const
    {
        return frame.menu(QString::fromLatin1(name))->menuAction()->isVisible();
    }
    QStringList windowMenu()
    {
        QMenu* m = frame.menu(QStringLiteral("mnuWindow"));
        Q_EMIT m->aboutToShow();
        QStringList titles;
        for (QAction* a : m->actions())
            titles << a->text();
        return titles;
    }

    bool appReady = (test::EnsureQtApp(), true);
    test::TempAppDir dir;
    test::ScriptedDialogs dialogs;
    mdiMain frame;
};

TEST_F(FrameContract, OnlyTheWindowInFrontWritesThePanesAndEachKeepsItsTexts)
{
    PaneWindow* a = show("frmPaneA");
    ASSERT_NE(a, nullptr);
    a->write(QStringLiteral("219 song(s)"), QStringLiteral("1 added!"));
    EXPECT_EQ(panes(), (QStringList{QStringLiteral("219 song(s)"), QString(), QStringLiteral("1 added!")}));

    // A window that comes to the front shows its own texts, none yet.
    PaneWindow* b = show("frmPaneB");
    EXPECT_EQ(frame.activeChild(), b);
    EXPECT_EQ(panes(), (QStringList{QString(), QString(), QString()}));
    a->write(QStringLiteral("7 song(s)"), QStringLiteral("behind"));
    EXPECT_EQ(panes(), (QStringList{QString(), QString(), QString()}));
    b->write(QStringLiteral("3 singer(s)"), QString());
    EXPECT_EQ(frame.pane(QStringLiteral("total")), QStringLiteral("3 singer(s)"));

    // Back to the front, the first window shows what it wrote last, also while it was behind.
    frame.ShowWindow(QStringLiteral("frmPaneA"));
    EXPECT_EQ(panes(), (QStringList{QStringLiteral("7 song(s)"), QString(), QStringLiteral("behind")}));
}

TEST_F(FrameContract, ClosingAWindowTakesItsPanesItsMenuAndItsWindowEntry)
{
    PaneWindow* b = show("frmPaneB");
    b->write(QStringLiteral("3 singer(s)"), QString());
    QPointer<PaneWindow> a = show("frmPaneA");
    a->write(QStringLiteral("219 song(s)"), QStringLiteral("loaded"));
    EXPECT_TRUE(menuShown("mnuSong"));
    EXPECT_TRUE(menuShown("mnuSinger"));
    EXPECT_EQ(windowMenu().size(), 2);

    closeByButton(a);
    // At once, not only once the window is deleted: the one behind is in front with its texts.
    EXPECT_FALSE(menuShown("mnuSong"));
    EXPECT_TRUE(menuShown("mnuSinger"));
    EXPECT_EQ(frame.child(QStringLiteral("frmPaneA")), nullptr);
    EXPECT_EQ(panes(), (QStringList{QStringLiteral("3 singer(s)"), QString(), QString()}));
    ASSERT_TRUE(a);
    a->write(QStringLiteral("0 song(s)"), QStringLiteral("late"));  // a closed window writes nothing
    EXPECT_EQ(frame.pane(StatusPane::Total), QStringLiteral("3 singer(s)"));
    EXPECT_EQ(windowMenu().size(), 1);

    closeByButton(b);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(a);
    EXPECT_EQ(panes(), (QStringList{QString(), QString(), QString()}));
    EXPECT_FALSE(menuShown("mnuSinger"));
    EXPECT_TRUE(windowMenu().isEmpty());
    EXPECT_TRUE(frame.children().isEmpty());

    // Opened again, the window brings its menu back and starts with empty panes.
    show("frmPaneA");
    EXPECT_TRUE(menuShown("mnuSong"));
    EXPECT_EQ(panes(), (QStringList{QString(), QString(), QString()}));
}

TEST_F(FrameContract, AWindowClosedDirectlyIsGoneBeforeItIsDeleted)
{
    QPointer<PaneWindow> a = show("frmPaneA");
    a->write(QStringLiteral("219 song(s)"), QString());
    a->close();
    EXPECT_EQ(frame.pane(StatusPane::Total), QString());
    EXPECT_FALSE(menuShown("mnuSong"));
    // Asked for again before the old one is deleted, the frame makes a new window.
    PaneWindow* again = show("frmPaneA");
    EXPECT_NE(again, a.data());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(frame.child(QStringLiteral("frmPaneA")), again);
    EXPECT_TRUE(menuShown("mnuSong"));
}

TEST(FrameGeometry, StoredPlaceIsFittedToTheAvailableArea)
{
    const QRect screen(0, 0, 1024, 768);
    const QRect withPanel(0, 32, 1280, 736);
    struct Case {
        const char* what;
        QRect stored, available, expected;
    } cases[] = {
        {"nothing stored fills the area", QRect(), screen, screen},
        {"the old fixed size on a small screen", QRect(0, 0, 1200, 800), screen, screen},
        {"a place that fits stays", QRect(100, 50, 800, 600), screen, QRect(100, 50, 800, 600)},
        {"off the bottom right moves in", QRect(900, 700, 800, 600), screen, QRect(224, 168, 800, 600)},
        {"off the top left moves in", QRect(-300, -200, 700, 500), screen, QRect(0, 0, 700, 500)},
        {"too small grows to a usable frame", QRect(10, 10, 100, 50), screen, QRect(10, 10, 640, 480)},
        {"below a top panel", QRect(0, 0, 1280, 800), withPanel, withPanel},
        {"a screen smaller than the usable frame wins", QRect(0, 0, 800, 600), QRect(0, 0, 600, 400),
         QRect(0, 0, 600, 400)},
    };
    for (const Case& c : cases)
        EXPECT_EQ(FittedFrameGeometry(c.stored, c.available), c.expected) << c.what;
}

class FrameGeometryOnScreen : public ::testing::Test {
protected:
    bool appReady = (test::EnsureQtApp(), true);
    test::TempAppDir dir;
    test::ScriptedDialogs dialogs;
    QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    void store(const QRect& r)
    {
        AppIniWrite(QStringLiteral("FrameLeft"), QString::number(r.left()));
        AppIniWrite(QStringLiteral("FrameTop"), QString::number(r.top()));
        AppIniWrite(QStringLiteral("FrameWidth"), QString::number(r.width()));
        AppIniWrite(QStringLiteral("FrameHeight"), QString::number(r.height()));
    }
};

TEST_F(FrameGeometryOnScreen, FirstStartFitsTheScreenAndAStoredPlaceComesBackHeldInside)
{
    {
        mdiMain frame;
        EXPECT_TRUE(available.contains(frame.geometry()))
            << frame.geometry().width() << "x" << frame.geometry().height();
    }
    store(QRect(-400, -300, 5000, 4000));
    {
        mdiMain frame;
        EXPECT_TRUE(available.contains(frame.geometry()));
        EXPECT_FALSE(frame.isMaximized());
    }
    const QRect mine(available.left() + 20, available.top() + 30, available.width() - 60,
                     available.height() - 50);
    store(mine);
    mdiMain frame;
    EXPECT_EQ(frame.geometry(), mine);
}

TEST_F(FrameGeometryOnScreen, ClosingTheFrameKeepsItsPlaceForTheNextStart)
{
    const QRect mine(available.left() + 40, available.top() + 10, available.width() - 50,
                     available.height() - 40);
    {
        mdiMain frame;
        frame.setWindowState(Qt::WindowNoState);
        frame.setGeometry(mine);
        frame.close();
    }
    EXPECT_EQ(AppIniRead(QStringLiteral("FrameWidth"), {}), QString::number(mine.width()));
    EXPECT_EQ(AppIniRead(QStringLiteral("FrameMaximized"), {}), QStringLiteral("0"));
    mdiMain next;
    EXPECT_EQ(next.geometry(), mine);
    EXPECT_FALSE(next.isMaximized());
}

}  // namespace
