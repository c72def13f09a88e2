// The list over a live recordset: load, refresh against another console, completion, sorting,
// moves and the events owners rely on.
#include "SongFixture.h"
#include "controls/DataWindow.h"
#include "controls/StatusStrip.h"
#include "controls/ctlDataView.h"
#include "shell/services/Ini.h"
#include "support/QtApp.h"
#include "support/ScriptedDialogs.h"
#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <gtest/gtest.h>

using namespace td;

namespace {

const char* kFormat =
    "[View]\nMultiSelect=1\n"
    "[ColPosition]\nCol_title=0\nCol_singer=0\nCol_chars=0\n"
    "[Col_title]\nCaption=Title\n"
    "[Col_singer]\nCaption=Singer\n"
    "[Col_chars]\nCaption=Chars\nWidth=600\n";

// The window a list lives in, which writes the list's layout back as it closes.
class ListWindow : public DataWindow {
public:
    explicit ListWindow(ctlDataView& view) : DataWindow(NoFrame(), QStringLiteral("Test"))
    {
        Parts parts;
        parts.view = &view;
        BindParts(parts);
    }
    void ExecuteCommand(const QString&) override {}
};

struct State {
    int total;
    int selected;
    QString message;
};

class DataView : public ::testing::Test {
protected:
    void SetUp() override { test::EnsureQtApp(); }

    void make(int rows, const char* format = kFormat)
    {
        db = std::make_unique<test::SongFixture>(rows);
        rs = db->open();
        view = std::make_unique<ctlDataView>();
        view->setIniFile(db->format(QStringLiteral("List.ini"), format));
        ASSERT_TRUE(view->LoadViewFormat());
        view->setMrsMain(rs);
        QObject::connect(view.get(), &ctlDataView::StateChanged, [this](int t, int s, const QString& m) {
            states.push_back({t, s, m});
            events << QStringLiteral("state");
        });
        QObject::connect(view.get(), &ctlDataView::ItemsSelected, [this](const QList<int>& sel) {
            lastSelection = sel;
            events << QStringLiteral("selected");
        });
        tester = std::make_unique<QAbstractItemModelTester>(
            view->model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    }

    QStringList titles() const
    {
        QStringList out;
        for (int i = 1; i <= view->MainItems().Count(); ++i)
            out << view->MainItems().Text(i);
        return out;
    }

    QList<int> selection() const
    {
        QList<int> sel;
        view->GetViewSelections(sel);
        return sel.mid(1);
    }

    void select(const QList<int>& rows)
    {
        view->list()->selectionModel()->clear();
        for (int r : rows)
            view->MainItems().setSelected(r, true);
    }

    std::unique_ptr<test::SongFixture> db;
    std::shared_ptr<Recordset> rs;
    std::unique_ptr<ctlDataView> view;
    std::unique_ptr<QAbstractItemModelTester> tester;
    std::vector<State> states;
    QStringList events;
    QList<int> lastSelection;
};

TEST_F(DataView, EmptyRecordsetLoadsNothingAndReportsZero)
{
    make(0);
    EXPECT_TRUE(view->LoadViewData());
    EXPECT_EQ(view->MainItems().Count(), 0);
    ASSERT_FALSE(states.empty());
    EXPECT_EQ(states.back().total, 0);
    EXPECT_EQ(states.back().selected, 0);
    EXPECT_EQ(lastSelection, QList<int>{0});
}

TEST_F(DataView, LoadIsAdditiveAndHonoursMaxItem)
{
    make(200);
    EXPECT_TRUE(view->LoadViewData(50));
    EXPECT_EQ(view->MainItems().Count(), 50);
    EXPECT_TRUE(view->LoadViewData(50));
    EXPECT_EQ(view->MainItems().Count(), 100);
    EXPECT_EQ(view->MainItems().Text(51), QStringLiteral("Song 51"));
    EXPECT_TRUE(view->LoadViewData());
    EXPECT_TRUE(view->LoadViewData());
    ASSERT_EQ(view->MainItems().Count(), 200);
    EXPECT_EQ(view->MainItems().Text(200), QStringLiteral("Song 200"));
    EXPECT_EQ(view->MainItems().SubItems(7, 1), QStringLiteral("Singer 0"));
    // The Tag is the record's bookmark and leads back to it.
    ASSERT_TRUE(rs->setBookmark(view->MainItems().Tag(120)));
    EXPECT_EQ(rs->Fields(QStringLiteral("title")).Text(), QStringLiteral("Song 120"));
}

TEST_F(DataView, RefreshFollowsAnotherConsoleAndKeepsSelection)
{
    make(10);
    view->LoadViewData();
    select({3, 8});
    db->otherConsole(
        QStringLiteral("update song set title='Changed' where id=3;"
                       "delete from song where id=5;"
                       "insert into song (title, singer, chars) values ('New', 'X', 1);"));
    int changedRows = 0;
    QObject::connect(
        view->model(), &QAbstractItemModel::dataChanged,
        [&](const QModelIndex& a, const QModelIndex& b) { changedRows += b.row() - a.row() + 1; });
    EXPECT_TRUE(view->RefreshViewData());
    EXPECT_EQ(titles(),
              (QStringList{QStringLiteral("Song 1"), QStringLiteral("Song 2"), QStringLiteral("Changed"),
                           QStringLiteral("Song 4"), QStringLiteral("Song 6"), QStringLiteral("Song 7"),
                           QStringLiteral("Song 8"), QStringLiteral("Song 9"), QStringLiteral("Song 10"),
                           QStringLiteral("New")}));
    EXPECT_EQ(selection(), (QList<int>{3, 7}));
    EXPECT_EQ(changedRows, 1);

    changedRows = 0;
    EXPECT_TRUE(view->RefreshViewData());  // nothing changed: nothing written
    EXPECT_EQ(changedRows, 0);
    EXPECT_EQ(view->MainItems().Count(), 10);
}

// Whatever a cell holds, the row keeps its columns apart, and a refresh finds nothing changed.
TEST_F(DataView, CellTextsKeepTheirColumns)
{
    make(3);
    db->otherConsole(
        QStringLiteral("update song set title='a'||char(31)||'b', singer=NULL where id=1;"
                       "update song set title='月亮代表我的心', chars=-5000000000 where id=2;"
                       "update song set title='', singer='x'||char(31) where id=3;"));
    rs->Requery();
    view->LoadViewData();
    const struct {
        int row;
        QString title, singer, chars;
    } expected[] = {
        {1, QStringLiteral("a b"), QString(), QStringLiteral("1")},
        {2, QString::fromUtf8("月亮代表我的心"), QStringLiteral("Singer 2"), QStringLiteral("-5000000000")},
        {3, QString(), QStringLiteral("x "), QStringLiteral("3")}};
    ASSERT_EQ(view->MainItems().Count(), 3);
    for (const auto& e : expected) {
        EXPECT_EQ(view->MainItems().Text(e.row), e.title) << e.row;
        EXPECT_EQ(view->MainItems().SubItems(e.row, 1), e.singer) << e.row;
        EXPECT_EQ(view->MainItems().SubItems(e.row, 2), e.chars) << e.row;
    }
    int changedRows = 0;
    QObject::connect(view->model(), &QAbstractItemModel::dataChanged, [&] { ++changedRows; });
    EXPECT_TRUE(view->RefreshViewData());
    EXPECT_EQ(changedRows, 0);
}

TEST_F(DataView, RefreshOfEmptyRecordsetClearsWithoutState)
{
    make(3);
    view->LoadViewData();
    db->otherConsole(QStringLiteral("delete from song"));
    states.clear();
    EXPECT_TRUE(view->RefreshViewData());
    EXPECT_EQ(view->MainItems().Count(), 0);
    EXPECT_TRUE(states.empty());
}

TEST_F(DataView, CancelStopsAtAThousandAndTheListCompletesItself)
{
    make(2500);
    QSignalSpy finished(view.get(), &ctlDataView::LoadFinished);
    view->BeginLoadViewData();
    view->statusStrip()->cancelButton()->setEnabled(true);
    view->statusStrip()->cancelButton()->click();
    // The flag is looked at once the move reaches position 1,000, before that record is added.
    ASSERT_TRUE(finished.wait(5000));
    EXPECT_TRUE(finished.first().first().toBool());  // a cancel is no failure
    EXPECT_FALSE(view->Loading());
    EXPECT_EQ(view->MainItems().Count(), 999);
    EXPECT_TRUE(view->statusStrip()->Text().isEmpty());

    emit view->list()->clicked(view->model()->index(500, 0));  // far from the end: nothing
    EXPECT_EQ(view->MainItems().Count(), 999);
    emit view->list()->clicked(view->model()->index(950, 0));
    EXPECT_EQ(view->MainItems().Count(), 1099);

    EXPECT_EQ(view->MoveLast(), 2500);
    EXPECT_EQ(view->MainItems().Text(2500), QStringLiteral("Song 2500"));
}

// The flag is only looked at on a thousandth record, so a shorter list always loads whole.
TEST_F(DataView, AShortLoadCannotBeCancelled)
{
    make(999);
    QSignalSpy finished(view.get(), &ctlDataView::LoadFinished);
    view->BeginLoadViewData();
    const bool pressed = !view->statusStrip()->cancelButton()->isHidden();
    view->statusStrip()->cancelButton()->click();
    ASSERT_TRUE(finished.wait(5000));
    EXPECT_TRUE(pressed);  // during the load
    EXPECT_EQ(view->MainItems().Count(), 999);
}

TEST_F(DataView, EverySortClickAfterTheFirstFlipsTheOrder)
{
    make(12);
    view->LoadViewData();
    select({2});  // "Song 2"
    QHeaderView* header = view->list()->header();
    emit header->sectionClicked(0);
    EXPECT_EQ(titles().mid(0, 4), (QStringList{QStringLiteral("Song 1"), QStringLiteral("Song 10"),
                                               QStringLiteral("Song 11"), QStringLiteral("Song 12")}));
    EXPECT_EQ(view->MainItems().Text(selection().value(0)), QStringLiteral("Song 2"));
    emit header->sectionClicked(2);  // another column, yet descending
    EXPECT_EQ(view->MainItems().SubItems(1, 2), QStringLiteral("9"));
    EXPECT_EQ(view->MainItems().SubItems(12, 2), QStringLiteral("0"));
    emit header->sectionClicked(2);
    EXPECT_EQ(view->MainItems().SubItems(1, 2), QStringLiteral("0"));
}

enum class Op { First, Previous, Next, Last, To, All, Invert };

TEST_F(DataView, MovesAndTheirEdgeResults)
{
    const struct {
        const char* name;
        Op op;
        int arg;
        QList<int> before;
        int result;
        QList<int> after;
    } cases[] = {
        {"previous from row 1", Op::Previous, 0, {1}, 0, {1}},
        {"previous from 3 and 5", Op::Previous, 0, {3, 5}, 2, {2}},
        {"previous keeps row 1", Op::Previous, 0, {1, 4}, 3, {1, 3}},
        {"next from the last", Op::Next, 0, {5}, 0, {5}},
        {"next from 2 and 4", Op::Next, 0, {2, 4}, 5, {5}},
        {"next keeps the last", Op::Next, 0, {3, 5}, 4, {4, 5}},
        {"first", Op::First, 0, {3, 4}, 1, {1}},
        {"last", Op::Last, 0, {1}, 5, {5}},
        {"to 0 does nothing", Op::To, 0, {2}, 0, {2}},
        {"to beyond does nothing", Op::To, 6, {2}, 0, {2}},
        {"to -1 clears", Op::To, -1, {2}, 0, {}},
        {"to 4", Op::To, 4, {2}, 4, {4}},
        {"select all", Op::All, 0, {2}, 5, {1, 2, 3, 4, 5}},
        {"deselect inverts", Op::Invert, 0, {2, 3}, 2, {1, 4, 5}},
    };
    make(5);
    view->LoadViewData();
    for (const auto& c : cases) {
        select(c.before);
        int result = -99;
        switch (c.op) {
            case Op::First:
                result = view->MoveFirst();
                break;
            case Op::Previous:
                result = view->MovePrevious();
                break;
            case Op::Next:
                result = view->MoveNext();
                break;
            case Op::Last:
                result = view->MoveLast();
                break;
            case Op::To:
                result = view->MoveTo(c.arg);
                break;
            case Op::All:
                result = view->SelectAll();
                break;
            case Op::Invert:
                result = view->DeSelect();
                break;
        }
        EXPECT_EQ(result, c.result) << c.name;
        EXPECT_EQ(selection(), c.after) << c.name;
    }
}

TEST_F(DataView, SingleSelectListKeepsOneRow)
{
    make(4, "[View]\nMultiSelect=True\n[ColPosition]\nCol_title=0\n");
    view->LoadViewData();
    EXPECT_FALSE(view->MultiSelect());
    EXPECT_EQ(view->SelectAll(), 4);
    EXPECT_EQ(selection(), QList<int>{4});
    select({2});
    EXPECT_EQ(view->DeSelect(), 3);
    EXPECT_EQ(selection(), QList<int>{4});
}

TEST_F(DataView, StateComesBeforeSelectionWithElementZeroEmpty)
{
    make(5);
    view->LoadViewData();
    select({2, 4});
    events.clear();
    states.clear();
    view->MoveTo(3);
    EXPECT_EQ(events, (QStringList{QStringLiteral("state"), QStringLiteral("selected")}));
    EXPECT_EQ(states.back().total, 5);
    EXPECT_EQ(states.back().selected, 1);
    EXPECT_EQ(lastSelection, (QList<int>{0, 3}));
    EXPECT_EQ(view->statusStrip()->positionBox()->text(), QStringLiteral("3"));
}

// A key reaches the owner as down, press with its character, and up after the state is told.
TEST_F(DataView, KeysReachTheOwnerInTheirOrder)
{
    make(3);
    view->LoadViewData();
    QObject::connect(view.get(), &ctlDataView::KeyDown, [this](int code, int shift) {
        events << QStringLiteral("down %1 %2").arg(code).arg(shift);
    });
    QObject::connect(view.get(), &ctlDataView::KeyPress,
                     [this](int ascii) { events << QStringLiteral("press %1").arg(ascii); });
    QObject::connect(view.get(), &ctlDataView::KeyUp, [this](int code, int shift) {
        events << QStringLiteral("up %1 %2").arg(code).arg(shift);
    });
    events.clear();
    QTest::keyClick(view->list(), Qt::Key_A);
    QTest::keyClick(view->list(), Qt::Key_Down);
    EXPECT_EQ(events,
              (QStringList{QStringLiteral("down 65 0"), QStringLiteral("press 97"), QStringLiteral("state"),
                           QStringLiteral("selected"), QStringLiteral("up 65 0"), QStringLiteral("down 40 0"),
                           QStringLiteral("state"), QStringLiteral("selected"), QStringLiteral("up 40 0")}));
}

TEST_F(DataView, ItemOperationsReportWithoutSelectionCounts)
{
    make(3);
    view->LoadViewData();
    rs->AddNew();
    rs->Fields(QStringLiteral("title")).setValue(QStringLiteral("Added"));
    rs->Update();
    int item = 0;
    states.clear();
    ASSERT_TRUE(view->AddViewItem(rs->bookmark(), item));
    EXPECT_EQ(item, 4);
    EXPECT_EQ(view->MainItems().Text(4), QStringLiteral("Added"));

    rs->Fields(QStringLiteral("title")).setValue(QStringLiteral("Saved"));
    rs->Update();
    ASSERT_TRUE(view->SaveViewItem(rs->bookmark(), item));
    EXPECT_EQ(view->MainItems().Text(4), QStringLiteral("Saved"));
    ASSERT_TRUE(view->DeleteViewItem(1));
    ASSERT_EQ(states.size(), 3u);
    EXPECT_EQ(states[0].total, 4);
    EXPECT_EQ(states[0].selected, -1);
    EXPECT_EQ(states[0].message, QStringLiteral("item(s) added"));
    EXPECT_EQ(states[1].total, -1);
    EXPECT_EQ(states[1].message, QStringLiteral("item(s) saved"));
    EXPECT_EQ(states[2].total, 3);
    EXPECT_EQ(states[2].message, QStringLiteral("item(s) deleted"));
}

TEST_F(DataView, PositionsApplyAndTheLayoutIsSavedWhenItsWindowCloses)
{
    make(1, "[ColPosition]\nCol_title=0\nCol_singer=3\nCol_chars=1\n[Col_chars]\nWidth=600\n");
    const QHeaderView* header = view->list()->header();
    EXPECT_EQ(header->visualIndex(2), 0);
    EXPECT_EQ(header->visualIndex(1), 2);
    const QString file = view->IniFile();
    ListWindow window(*view);
    window.close();
    EXPECT_EQ(IniRead(file, QStringLiteral("ColPosition"), QStringLiteral("Col_chars"), {}),
              QStringLiteral("1"));
    EXPECT_EQ(IniRead(file, QStringLiteral("ColPosition"), QStringLiteral("Col_title"), {}),
              QStringLiteral("2"));
    EXPECT_EQ(IniRead(file, QStringLiteral("Col_chars"), QStringLiteral("Width"), {}), QStringLiteral("600"));
}

TEST_F(DataView, UnknownFieldIsALoadFailure)
{
    test::ScriptedDialogs dialogs;
    make(3, "[ColPosition]\nCol_nosuch=0\n");
    EXPECT_FALSE(view->LoadViewData());
    ASSERT_EQ(dialogs.messages().size(), 1);
    EXPECT_TRUE(
        dialogs.messages()[0].startsWith(QStringLiteral("Load data failed!  Err=Item cannot be found")));
    EXPECT_EQ(dialogs.calls()[0].icon, MsgIcon::Critical);
}

}  // namespace
