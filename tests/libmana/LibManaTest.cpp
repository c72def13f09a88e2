// The library manager: a library moved with its songs, the three answers of a removal, the update of
// the song files with its cancel, adding and browsing.
#include "LibManaFixture.h"
#include "controls/ctlDataFields.h"
#include "controls/ctlDataView.h"
#include "controls/frmProcess.h"
#include "libraries/LibraryRecords.h"
#include "libraries/frmLibMana.h"
#include "shell/Main.h"
#include "shell/mdiMain.h"
#include "shell/services/Ini.h"
#include "songdb/SongSession.h"
#include "support/QtPrint.h"
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTimer>

using namespace td;
using namespace td::test;

namespace {

QString quoted(QString v)
{
    return u'\'' + v.replace(u'\'', QStringLiteral("''")) + u'\'';
}

TEST(SharedAsFor, KeepsTheLastFolderWithItsSeparator)
{
    const struct {
        const char* root;
        const char* shared;
    } cases[] = {
        {"/srv/Songs/Hits", "/Hits"}, {"/srv/Songs/", "/"},          {"Songs", "Songs"},
        {"/Hits", "/Hits"},           {"D:\\Songs\\Hits", "\\Hits"}, {"", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(SharedAsFor(QString::fromUtf8(c.root)), QString::fromUtf8(c.shared)) << c.root;
}

using LibManaTest = LibManaFixture;

TEST_F(LibManaTest, SavingANewRootMovesOnlyThatLibrarysSongs)
{
    addSongs(root("a"), 3, false);
    addSongs(root("a2"), 2, false);
    addSongs(root("b"), 1, false);
    const QString moved = root("moved");
    QDir().mkpath(moved);
    openWindow();
    selectRoot(root("a"));
    edit(QStringLiteral("root_path"), moved);
    edit(QStringLiteral("shared_as"), QStringLiteral("/moved"));

    EXPECT_EQ(saveAndWait(), true);

    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("Library update successfully!")});
    EXPECT_EQ(count(QStringLiteral("library=") + quoted(moved)), 3);
    EXPECT_EQ(count(QStringLiteral("library=") + quoted(root("a"))), 0);
    EXPECT_EQ(count(QStringLiteral("library=") + quoted(root("a2"))), 2);
    EXPECT_EQ(count(QStringLiteral("library=") + quoted(root("b"))), 1);
    EXPECT_EQ(value(QStringLiteral("select shared_as from library where root_path=") + quoted(moved)),
              QStringLiteral("/moved"));
    EXPECT_EQ(value(QStringLiteral("select count(*) from library")), QStringLiteral("3"));
    EXPECT_TRUE(listedRoots().contains(moved));
    EXPECT_FALSE(listedRoots().contains(root("a")));
}

TEST_F(LibManaTest, SavingARefusedRootChangesNothing)
{
    addSongs(root("a"), 2, false);
    const struct {
        QString newRoot;
        QString message;
    } cases[] = {
        {root("b"), QStringLiteral("The library was added already!")},
        {root("gone"), QStringLiteral("Invaild root path < ") + root("gone") + QStringLiteral(" > !")},
    };
    openWindow();
    for (const auto& c : cases) {
        dialogs.clear();
        selectRoot(root("a"));
        edit(QStringLiteral("root_path"), c.newRoot);
        EXPECT_EQ(saveAndWait(), false);
        EXPECT_EQ(dialogs.messages(), QStringList{c.message});
        EXPECT_EQ(count(QStringLiteral("library=") + quoted(root("a"))), 2);
        EXPECT_EQ(value(QStringLiteral("select count(*) from library where root_path=") + quoted(root("a"))),
                  QStringLiteral("1"));
    }
}

TEST_F(LibManaTest, SavingTheSameRootWritesSharedAsEvenWhenTheFolderIsGone)
{
    addSongs(root("a"), 2, false);
    openWindow();
    QDir(root("a")).removeRecursively();
    selectRoot(root("a"));
    edit(QStringLiteral("shared_as"), QStringLiteral("/elsewhere"));
    EXPECT_EQ(saveAndWait(), true);
    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("Library update successfully!")});
    EXPECT_EQ(value(QStringLiteral("select shared_as from library where root_path=") + quoted(root("a"))),
              QStringLiteral("/elsewhere"));
    EXPECT_EQ(count(QStringLiteral("library=") + quoted(root("a"))), 2);
}

// Removing a library with songs: Cancel keeps all; No drops songs and row and writes no file; Yes
// writes the songs' files first, then drops them.
TEST_F(LibManaTest, RemovingALibraryWithSongsFollowsTheAnswer)
{
    const struct {
        MsgAnswer answer;
        bool removed;
        bool filesWritten;
    } cases[] = {
        {MsgAnswer::Cancel, false, false},
        {MsgAnswer::No, true, false},
        {MsgAnswer::Yes, true, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(int(c.answer));
        sql(QStringLiteral("delete * from song"));
        sql(QStringLiteral("delete * from library where root_path=") + quoted(root("a")));
        sql(QStringLiteral("insert into library (root_path, shared_as) values (") + quoted(root("a")) +
            QStringLiteral(", '/a')"));
        QDir(root("a")).removeRecursively();
        QDir().mkpath(root("a"));
        addSongs(root("a"), 3);
        addSongs(root("b"), 1, false);
        openWindow();
        selectRoot(root("a"));
        dialogs.answer(c.answer);
        bool finished = false, ok = false;
        window->RemoveLibrary([&](bool result) {
            finished = true;
            ok = result;
        });
        ASSERT_TRUE(waitUntil([&] { return finished; }));
        EXPECT_EQ(ok, c.removed);
        const QString question = QStringLiteral(
            "There are 3 song(s) in selected library. They will not be available any more!\n"
            "Do you want to update selected library with them before continue?");
        QStringList expected{question};
        if (c.filesWritten)
            expected << QStringLiteral("3 song(s) in selected library will be updated, process?")
                     << QStringLiteral("3 song(s) in selected library were updated successfully!");
        if (c.removed)
            expected << QStringLiteral("Removed library successfully!");
        EXPECT_EQ(dialogs.messages(), expected);
        EXPECT_EQ(count(QStringLiteral("library=") + quoted(root("a"))), c.removed ? 0 : 3);
        EXPECT_EQ(count(QStringLiteral("library=") + quoted(root("b"))), 1);
        EXPECT_EQ(listedRoots().contains(root("a")), !c.removed);
        EXPECT_EQ(value(QStringLiteral("select count(*) from library where root_path=") + quoted(root("a"))),
                  c.removed ? QStringLiteral("0") : QStringLiteral("1"));
        EXPECT_EQ(QFile::exists(root("a") + QStringLiteral("/0001.dat.son")), c.filesWritten);
        EXPECT_EQ(QFile::exists(root("a") + QStringLiteral("/ktvlibrary.ini")), c.filesWritten);
        window.reset();
    }
}

TEST_F(LibManaTest, RemovingKeepsEverythingWhenTheUpdateBeforeItStops)
{
    addSongs(root("a"), 2);
    openWindow();
    selectRoot(root("a"));
    dialogs.answer(MsgAnswer::Yes);     // update the library first
    dialogs.answer(MsgAnswer::Cancel);  // "2 song(s) ... will be updated, process?"
    bool finished = false, ok = true;
    window->RemoveLibrary([&](bool result) {
        finished = true;
        ok = result;
    });
    ASSERT_TRUE(waitUntil([&] { return finished; }));
    EXPECT_FALSE(ok);
    EXPECT_EQ(count(QStringLiteral("library=") + quoted(root("a"))), 2);
    EXPECT_TRUE(listedRoots().contains(root("a")));
    EXPECT_EQ(dialogs.messages().size(), 2);
}

TEST_F(LibManaTest, RemovingALibraryWithoutSongsAsksNothing)
{
    openWindow();
    selectRoot(root("a2"));
    bool ok = false;
    window->RemoveLibrary([&](bool result) { ok = result; });
    EXPECT_TRUE(ok);
    EXPECT_EQ(dialogs.messages(), QStringList{QStringLiteral("Removed library successfully!")});
    EXPECT_EQ(listedRoots(), QStringList({root("a"), root("b")}));
    // The neighbour that took the place of the removed row is selected.
    QList<int> selected;
    window->ctlView()->GetViewSelections(selected);
    EXPECT_EQ(selected, QList<int>({0, 2}));
}

TEST_F(LibManaTest, AnUpdateThatRunsToTheEndWritesTheMarker)
{
    addSongs(root("a"), 5);
    openWindow();
    selectRoot(root("a"));
    window->ExecuteCommand(QStringLiteral("Update Library"));
    ASSERT_TRUE(window->UpdateRunning());
    ASSERT_TRUE(waitUntil([&] { return !window->UpdateRunning(); }));
    EXPECT_EQ(dialogs.messages(),
              QStringList({QStringLiteral("5 song(s) in selected library will be updated, process?"),
                           QStringLiteral("5 song(s) in selected library were updated successfully!")}));
    const QString marker = root("a") + QStringLiteral("/ktvlibrary.ini");
    EXPECT_EQ(IniRead(marker, QStringLiteral("Default"), QStringLiteral("nSong"), QString()),
              QStringLiteral("5"));
    EXPECT_TRUE(QFile::exists(root("a") + QStringLiteral("/0005.dat.son")));
}

// The operator cancels while the files are written: the songs done so far keep their files, the
// count says how many, and no marker claims a whole pass.
TEST_F(LibManaTest, AnUpdateCancelledMidwayLeavesNoMarker)
{
    addSongs(root("a"), 8);
    // Many songs on the same few media files: a pass long enough to be cancelled.
    for (int i = 0; i < 9; ++i)
        sql(QStringLiteral("insert into song ([index], title, region, library, media_file) "
                           "select [index], title, region, library, media_file from song where library=") +
            quoted(root("a")));
    const int songs = count(QStringLiteral("library=") + quoted(root("a")));
    ASSERT_EQ(songs, 8 * 512);
    openWindow();
    selectRoot(root("a"));
    bool completed = true, finished = false;
    ASSERT_TRUE(window->UpdateLibrary(QString(), [&](bool c) {
        completed = c;
        finished = true;
    }));
    ASSERT_TRUE(waitUntil([] { return frmProcess::Instance().isVisible(); }));
    frmProcess::Instance().cancelButton()->click();
    ASSERT_TRUE(waitUntil([&] { return finished; }));
    EXPECT_FALSE(completed);
    const QStringList messages = dialogs.messages();
    ASSERT_EQ(messages.size(), 3) << messages.join(u'|').toStdString();
    EXPECT_EQ(messages[1], QStringLiteral("Do you want to cancel the process?"));
    const int done = messages[2].section(u' ', 0, 0).toInt();
    EXPECT_GT(done, 0);
    EXPECT_LT(done, songs);
    EXPECT_FALSE(QFile::exists(root("a") + QStringLiteral("/ktvlibrary.ini")));
    EXPECT_TRUE(QFile::exists(root("a") + QStringLiteral("/0001.dat.son")));
}

TEST_F(LibManaTest, UpdatingALibraryWhoseFolderIsGoneStopsAtItsPath)
{
    addSongs(root("b"), 1, false);
    openWindow();
    QDir(root("b")).removeRecursively();
    selectRoot(root("b"));
    EXPECT_FALSE(window->UpdateLibrary(QString()));
    EXPECT_EQ(dialogs.messages(),
              QStringList{QStringLiteral("Invaild root path < ") + root("b") + QStringLiteral(" > !")});
}

TEST_F(LibManaTest, AddingComparesRootsExactly)
{
    openWindow();
    const QString fresh = root("new");
    QDir().mkpath(fresh);
    const struct {
        QString path;
        QString message;
        bool added;
    } cases[] = {
        {fresh, QStringLiteral("New library is added to system successfully!"), true},
        {fresh, QStringLiteral("The library was added already!"), false},
        {fresh + u'/', QStringLiteral("New library is added to system successfully!"), true},
        {root("none"), QStringLiteral("Invaild root path < ") + root("none") + QStringLiteral(" > !"), false},
    };
    for (const auto& c : cases) {
        dialogs.clear();
        edit(QStringLiteral("root_path"), c.path);
        edit(QStringLiteral("shared_as"), SharedAsFor(c.path));
        if (c.added)
            dialogs.answer(MsgAnswer::No);  // no import now
        EXPECT_EQ(window->AddLibrary(), c.added) << c.path.toStdString();
        EXPECT_EQ(dialogs.messages().last(), c.message);
    }
    EXPECT_EQ(
        value(QStringLiteral("select count(*) from library where root_path like ") + quoted(fresh + u'%')),
        QStringLiteral("2"));
    EXPECT_EQ(listedRoots().size(), 5);
}

TEST_F(LibManaTest, AYesToTheImportQuestionOpensTheWizardOnTheNewRoot)
{
    QString wizardRoot;
    frmLibMana::SetImportWizard([&](QWidget*, const QString& r) { wizardRoot = r; });
    openWindow();
    const QString fresh = root("new");
    QDir().mkpath(fresh);
    edit(QStringLiteral("root_path"), fresh);
    dialogs.answer(MsgAnswer::Yes);
    EXPECT_TRUE(window->AddLibrary());
    frmLibMana::SetImportWizard({});
    EXPECT_EQ(wizardRoot, fresh);
}

TEST_F(LibManaTest, BrowsingFillsRootAndSharedAs)
{
    openWindow();
    selectRoot(root("a"));
    dialogs.folder(QStringLiteral("/srv/Songs/Hits"));
    window->ExecuteCommand(QStringLiteral("root_path"));
    EXPECT_EQ(window->ctlFields()->GetField(window->ctlFields()->GetFieldIndex(QStringLiteral("root_path")),
                                            QStringLiteral("value")),
              QStringLiteral("/srv/Songs/Hits"));
    EXPECT_EQ(window->ctlFields()->GetField(window->ctlFields()->GetFieldIndex(QStringLiteral("shared_as")),
                                            QStringLiteral("value")),
              QStringLiteral("/Hits"));
}

}  // namespace

namespace {

TEST_F(LibManaTest, AListThatCannotBeReadSaysSo)
{
    sql(QStringLiteral("drop table library"));
    window = std::make_unique<frmLibMana>();
    ASSERT_TRUE(waitUntil([this] { return !window->ListLoading(); }));
    ASSERT_FALSE(dialogs.messages().isEmpty());
    EXPECT_TRUE(dialogs.messages().last().startsWith(QStringLiteral("Load data failed!  Err=")))
        << dialogs.messages().last().toStdString();
}

}  // namespace

namespace {

TEST_F(LibManaTest, TheMenuEntryAndTheToolbarButtonOpenTheWindow)
{
    RegisterWindows();
    const std::function<void(mdiMain&)> ways[] = {
        [](mdiMain& frame) { frame.menuAction(QStringLiteral("mnuManaLib"))->trigger(); },
        [](mdiMain& frame) { frame.toolbarClick(QStringLiteral("library")); },
    };
    for (const auto& open : ways) {
        mdiMain frame;
        open(frame);
        QCoreApplication::processEvents();
        EXPECT_NE(frame.findChild<frmLibMana*>(), nullptr);
        EXPECT_TRUE(dialogs.messages().isEmpty()) << dialogs.messages().join(u'|').toStdString();
    }
}

}  // namespace
