// The singer window: photographs byte for byte through the window, the picture panel's refusals, the
// name checks of add and save, delete, and the search for singers that songs name.
#include "controls/ctlDataFields.h"
#include "controls/ctlDataView.h"
#include "shell/services/AppPaths.h"
#include "singers/PhotoView.h"
#include "singers/frmSinger.h"
#include "songdb/Connection.h"
#include "songdb/RecordAccess.h"
#include "songdb/SongSession.h"
#include "support/QtApp.h"
#include "support/ScriptedDialogs.h"
#include "support/TempAppDir.h"
#include <QBuffer>
#include <QColor>
#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QMimeData>
#include <QPushButton>
#include <QUrl>
#include <gtest/gtest.h>

using namespace td;

namespace {

// A real JPEG of the given size in pixels, its colour set by seed.
QByteArray jpeg(int w, int h, int seed)
{
    QImage image(w, h, QImage::Format_RGB32);
    image.fill(QColor::fromHsv(seed * 40 % 360, 200, 200));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPG");
    return bytes;
}

QByteArray png()
{
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

// A frame on whose menu bar the singer menu stands, as while the window is open in the console.
class SingerMenuFrame : public OwnerFrame {
public:
    bool menuVisible(const QString& menu) const override { return menu == u"mnuSinger"; }
};

class frmSingerTest : public testing::Test {
protected:
    frmSingerTest()
    {
        test::EnsureQtApp();
        QFile::copy(QStringLiteral(TUNEDESK_SOURCE_DIR "/data/ListSinger.ini"), app.file(QStringLiteral("ListSinger.ini")));
        if (!app.openSongDatabase())
            ADD_FAILURE() << "the test database did not open";
    }
    ~frmSingerTest() override
    {
        window.reset();
        SongCloseDatabase();
    }

    void addSinger(const QString& name, const QByteArray& photo = {})
    {
        auto rs = SongConnection()->openRecordset(QStringLiteral("select * from singer where 1=0"));
        rs->AddNew();
        rs->Fields(QStringLiteral("name")).setValue(name);
        rs->Update();
        if (!photo.isEmpty())
            StoreImageFile(*rs, app.write(QStringLiteral("in.jpg"), photo));
        rs->Close();
    }

    QByteArray photoOf(const QString& name)
    {
        auto rs = SongConnection()->openRecordset(QStringLiteral("select * from singer where name='") +
                                                  QString(name).replace(u'\'', QStringLiteral("''")) + u'\'');
        if (rs->RecordCount() != 1)
            return "<" + QByteArray::number(rs->RecordCount()) + " rows>";
        rs->MoveFirst();
        const QString out = app.file(QStringLiteral("out.jpg"));
        QFile::remove(out);
        return WriteImageFile(*rs, out) ? readAll(out) : QByteArray("<none>");
    }

    QStringList names()
    {
        auto rs = SongConnection()->openRecordset(QStringLiteral("select name from singer order by name"));
        QStringList out;
        for (qsizetype r = 0; r < rs->RecordCount(); ++r)
            out << rs->text(r, 0);
        return out;
    }

    bool waitUntil(const std::function<bool()>& done, int ms = 10000)
    {
        QElapsedTimer clock;
        clock.start();
        while (!done() && clock.elapsed() < ms)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QCoreApplication::processEvents();
        return done();
    }

    void open()
    {
        window = std::make_unique<frmSinger>();
        window->resize(900, 560);
        window->show();
        ASSERT_TRUE(waitUntil([this] { return !window->ListLoading(); }));
        dialogs.clear();
    }

    // Selects exactly the rows with these names and shows them in the editor.
    void select(const QStringList& wanted)
    {
        ListItems& items = window->ctlView()->MainItems();
        QList<int> selected{0};
        for (int i = 1; i <= items.Count(); ++i) {
            const bool mine = wanted.contains(items.Text(i));
            items.setSelected(i, mine);
            if (mine)
                selected << i;
        }
        ASSERT_EQ(selected.size(), wanted.size() + 1);
        window->LoadFieldDatas(selected);
        dialogs.clear();
    }

    void edit(const QString& field, const QString& value)
    {
        ctlDataFields* fields = window->ctlFields();
        const int index = fields->GetFieldIndex(field);
        ASSERT_GT(index, 0);
        fields->SetField(index, QStringLiteral("value"), value);
        fields->SetField(index, QStringLiteral("changed"), true);
    }

    // Drops the files on the photograph; answers whether the drop was taken as a copy.
    bool drop(const QStringList& files)
    {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& f : files)
            urls << QUrl::fromLocalFile(f);
        data.setUrls(urls);
        PhotoView* view = window->imgPhoto();
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(view, &enter);
        if (!enter.isAccepted())
            return false;
        QDropEvent dropped(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(view, &dropped);
        return dropped.isAccepted() && dropped.dropAction() == Qt::CopyAction;
    }

    test::TempAppDir app;
    test::ScriptedDialogs dialogs;
    std::unique_ptr<frmSinger> window;
};

TEST_F(frmSingerTest, OneSingerShowsItsPhotographScaledWithItsAspectKept)
{
    const QByteArray photo = jpeg(300, 100, 1);
    addSinger(QStringLiteral("Alice"), photo);
    addSinger(QStringLiteral("Bob"));
    open();
    select({QStringLiteral("Alice")});
    EXPECT_EQ(readAll(AppPath() + QStringLiteral("/ssinger.jpg")), photo);
    EXPECT_EQ(window->PhotoFile(), AppPath() + QStringLiteral("/ssinger.jpg"));
    ASSERT_FALSE(window->imgPhoto()->image().isNull());
    const QRect shown = window->imgPhoto()->pictureRect();
    const QRect panel = window->imgPhoto()->rect();
    EXPECT_TRUE(panel.contains(shown));
    EXPECT_NEAR(double(shown.width()) / shown.height(), 3.0, 0.05);
    EXPECT_TRUE(shown.width() == panel.width() || shown.height() == panel.height());
    EXPECT_NEAR(shown.center().x(), panel.center().x(), 1);
    EXPECT_NEAR(shown.center().y(), panel.center().y(), 1);

    select({QStringLiteral("Bob")});
    EXPECT_TRUE(window->imgPhoto()->image().isNull());
    EXPECT_TRUE(window->PhotoFile().isEmpty());
}

TEST_F(frmSingerTest, TwoSelectedSingersShareANewPhotographByteForByte)
{
    addSinger(QStringLiteral("Alice"), jpeg(40, 40, 2));
    addSinger(QStringLiteral("Bob"));
    addSinger(QStringLiteral("Carol"), jpeg(40, 40, 3));
    open();
    select({QStringLiteral("Alice"), QStringLiteral("Bob")});
    EXPECT_TRUE(window->imgPhoto()->image().isNull());
    const QByteArray photo = jpeg(120, 160, 4);
    dialogs.files({app.write(QStringLiteral("new.JPG"), photo)});
    window->cmdLoad()->click();
    EXPECT_FALSE(window->imgPhoto()->image().isNull());
    EXPECT_TRUE(window->PhotoChanged());
    // Only the picture changed: the save goes ahead.
    EXPECT_TRUE(window->SaveItem());
    EXPECT_EQ(photoOf(QStringLiteral("Alice")), photo);
    EXPECT_EQ(photoOf(QStringLiteral("Bob")), photo);
    EXPECT_NE(photoOf(QStringLiteral("Carol")), photo);
    EXPECT_EQ(dialogs.messages(), QStringList());
}

TEST_F(frmSingerTest, ClearedPhotographIsRemovedBySave)
{
    addSinger(QStringLiteral("Alice"), jpeg(40, 40, 5));
    open();
    select({QStringLiteral("Alice")});
    window->cmdClear()->click();
    EXPECT_TRUE(window->imgPhoto()->image().isNull());
    EXPECT_TRUE(window->SaveItem());
    EXPECT_EQ(photoOf(QStringLiteral("Alice")), QByteArray("<none>"));
    EXPECT_EQ(window->ctlView()->MainItems().Text(1), QStringLiteral("Alice"));
}

TEST_F(frmSingerTest, ARefusedPictureStaysPendingAndASaveStoresIt)
{
    const QByteArray old = jpeg(50, 50, 6);
    addSinger(QStringLiteral("Alice"), old);
    open();
    const QByteArray notJpeg = png();
    const QByteArray cut = jpeg(200, 200, 7).left(300);
    const struct {
        const char* file;
        QByteArray bytes;
    } cases[] = {{"photo.png", notJpeg}, {"renamed.jpg", notJpeg}, {"cut.jpg", cut}, {"empty.jpg", QByteArray()}};
    for (const auto& c : cases) {
        select({QStringLiteral("Alice")});
        const QImage before = window->imgPhoto()->image();
        dialogs.files({app.write(QString::fromLatin1(c.file), c.bytes)});
        window->cmdLoad()->click();
        EXPECT_EQ(dialogs.messages(), QStringList({QStringLiteral("Only jpg file support.")})) << c.file;
        EXPECT_EQ(window->imgPhoto()->image(), before) << c.file;
        EXPECT_TRUE(window->PhotoChanged()) << c.file;
    }
    // The last refused file is what the save stores; an empty file leaves the photograph as it was.
    EXPECT_TRUE(window->SaveItem());
    EXPECT_EQ(photoOf(QStringLiteral("Alice")), old);
    select({QStringLiteral("Alice")});
    dialogs.files({app.file(QStringLiteral("photo.png"))});
    window->cmdLoad()->click();
    EXPECT_TRUE(window->SaveItem());
    EXPECT_EQ(photoOf(QStringLiteral("Alice")), notJpeg);

    dialogs.clear();
    dialogs.files({app.file(QStringLiteral("gone.jpg"))});
    window->cmdLoad()->click();
    EXPECT_EQ(dialogs.messages(), QStringList({QStringLiteral("Can't find selected file")}));
}

TEST_F(frmSingerTest, DroppedFilesOnlyJpegIsTakenAndOthersSilently)
{
    addSinger(QStringLiteral("Alice"));
    open();
    select({QStringLiteral("Alice")});
    EXPECT_FALSE(drop({app.write(QStringLiteral("p.png"), png())}));
    EXPECT_FALSE(drop({}));
    EXPECT_EQ(dialogs.messages(), QStringList());
    EXPECT_FALSE(window->PhotoChanged());

    const QByteArray photo = jpeg(64, 48, 8);
    EXPECT_TRUE(drop({app.write(QStringLiteral("a.jpg"), photo), app.file(QStringLiteral("p.png"))}));
    EXPECT_TRUE(window->PhotoChanged());
    EXPECT_EQ(window->PhotoFile(), app.file(QStringLiteral("a.jpg")));
    EXPECT_TRUE(window->SaveItem());
    EXPECT_EQ(photoOf(QStringLiteral("Alice")), photo);
}

TEST_F(frmSingerTest, AddItemChecksTheNameAndGivesTheShownPhotographToTheNewSinger)
{
    const QByteArray photo = jpeg(30, 30, 9);
    addSinger(QStringLiteral("O'Neil"), photo);
    open();
    select({QStringLiteral("O'Neil")});
    edit(QStringLiteral("name"), QString());
    EXPECT_FALSE(window->AddItem());
    EXPECT_EQ(dialogs.messages(), QStringList({QStringLiteral("Please input singer's name first!")}));
    dialogs.clear();
    edit(QStringLiteral("name"), QStringLiteral("O'Neil"));
    EXPECT_FALSE(window->AddItem());
    EXPECT_EQ(dialogs.messages(), QStringList({QStringLiteral("The singer's name existed already!")}));
    dialogs.clear();
    edit(QStringLiteral("name"), QStringLiteral("周杰伦"));
    EXPECT_TRUE(window->AddItem());
    EXPECT_EQ(dialogs.messages(), QStringList());
    EXPECT_EQ(names(), QStringList({QStringLiteral("O'Neil"), QStringLiteral("周杰伦")}));
    EXPECT_EQ(photoOf(QStringLiteral("周杰伦")), photo);
    QList<int> selected;
    window->ctlView()->GetViewSelections(selected);
    ASSERT_EQ(selected.size(), 2);
    EXPECT_EQ(window->ctlView()->MainItems().Text(selected[1]), QStringLiteral("周杰伦"));
}

TEST_F(frmSingerTest, SaveLooksForTheNameAsANumber)
{
    addSinger(QStringLiteral("Alice"));
    addSinger(QStringLiteral("Bob"));
    open();
    // Without a singer "0", a change to an existing name goes through.
    select({QStringLiteral("Alice")});
    edit(QStringLiteral("name"), QStringLiteral("Bob"));
    EXPECT_TRUE(window->SaveItem());
    EXPECT_EQ(names(), QStringList({QStringLiteral("Bob"), QStringLiteral("Bob")}));

    addSinger(QStringLiteral("0"));
    window->LoadData();
    ASSERT_TRUE(waitUntil([this] { return !window->ListLoading(); }));
    select({QStringLiteral("0")});
    edit(QStringLiteral("name"), QStringLiteral("Zed"));
    EXPECT_FALSE(window->SaveItem());
    EXPECT_EQ(dialogs.messages(), QStringList({QStringLiteral("The singer's name existed already!")}));

    dialogs.clear();
    window->ExecuteCommand(QStringLiteral("SelectAll"));
    edit(QStringLiteral("name"), QStringLiteral("Zed"));
    EXPECT_FALSE(window->SaveItem());
    EXPECT_EQ(dialogs.messages(), QStringList({QStringLiteral("Can't save more than one singer with same name!")}));

    select({QStringLiteral("0")});
    EXPECT_FALSE(window->SaveItem());
    EXPECT_EQ(dialogs.messages(), QStringList({QStringLiteral("No field need to update!")}));
}

TEST_F(frmSingerTest, DeleteKeepsTheSongsThatNameTheSinger)
{
    addSinger(QStringLiteral("Alice"));
    addSinger(QStringLiteral("Bob"));
    SongConnection()->execute(QStringLiteral("insert into song ([index], title, singer) values (1001, 'x', 'Alice')"));
    open();
    select({});
    EXPECT_FALSE(window->DeleteItem());
    EXPECT_EQ(dialogs.messages(), QStringList({QStringLiteral("Please select a singer to delete!")}));
    select({QStringLiteral("Alice")});
    EXPECT_TRUE(window->DeleteItem());
    EXPECT_EQ(names(), QStringList({QStringLiteral("Bob")}));
    auto rs = SongConnection()->openRecordset(QStringLiteral("select singer from song"));
    EXPECT_EQ(rs->text(0, 0), QStringLiteral("Alice"));
}

TEST_F(frmSingerTest, SearchNewSingerAddsTheNamesSongsUseOnce)
{
    addSinger(QStringLiteral("Alice"));
    for (const char* singer : {"Alice", "Bob", "Bob", "O'Neil", "周杰伦", ""})
        SongConnection()->execute(QStringLiteral("insert into song ([index], title, singer) values (1001, 't', '%1')")
                                      .arg(QString::fromUtf8(singer).replace(u'\'', QStringLiteral("''"))));
    SongConnection()->execute(QStringLiteral("insert into song ([index], title) values (1002, 'no singer')"));
    open();
    dialogs.answer(MsgAnswer::No);
    EXPECT_EQ(window->SearchNewSinger(), 0);
    EXPECT_EQ(names(), QStringList({QStringLiteral("Alice")}));

    dialogs.clear();
    EXPECT_EQ(window->SearchNewSinger(), 3);
    EXPECT_EQ(dialogs.messages().last(), QStringLiteral("3 new singer(s) added!"));
    EXPECT_EQ(dialogs.calls().front().icon, MsgIcon::Information);
    EXPECT_EQ(dialogs.calls().front().buttons, MsgButtons::YesNo);
    EXPECT_EQ(names(), QStringList({QStringLiteral("Alice"), QStringLiteral("Bob"), QStringLiteral("O'Neil"),
                                    QStringLiteral("周杰伦")}));
    ASSERT_TRUE(waitUntil([this] { return !window->ListLoading(); }));
    EXPECT_EQ(window->ctlView()->MainItems().Count(), 4);

    dialogs.clear();
    EXPECT_EQ(window->SearchNewSinger(), 0);
    EXPECT_EQ(dialogs.messages().last(), QStringLiteral("0 new singer(s) added!"));
}

TEST_F(frmSingerTest, RightHandPanelFollowsItsTwoSettings)
{
    open();
    QWidget* field = window->findChild<QWidget*>(QStringLiteral("picField"));
    QWidget* image = window->findChild<QWidget*>(QStringLiteral("fraImage"));
    QWidget* right = window->findChild<QWidget*>(QStringLiteral("picRight"));
    window->ExecuteCommand(QStringLiteral("hidepreview"));
    EXPECT_FALSE(image->isVisible());
    EXPECT_TRUE(field->isVisible());
    window->ExecuteCommand(QStringLiteral("HideProperty"));
    EXPECT_FALSE(right->isVisible());
    window->ExecuteCommand(QStringLiteral("showpreview"));
    EXPECT_TRUE(image->isVisible());
    EXPECT_FALSE(field->isVisible());
    EXPECT_EQ(image->height(), right->height());
    window->ExecuteCommand(QStringLiteral("showproperty"));
    EXPECT_TRUE(field->isVisible());
}

TEST_F(frmSingerTest, ExchangeThroughTheWindowAsksToRefreshAfterInformation)
{
    const QByteArray photo = jpeg(20, 20, 10);
    addSinger(QStringLiteral("A/B"), photo);
    SingerMenuFrame frame;
    window = std::make_unique<frmSinger>(frame);
    window->show();
    ASSERT_TRUE(waitUntil([this] { return !window->ListLoading(); }));
    dialogs.clear();
    bool finished = false;
    QObject::connect(window.get(), &frmSinger::ExchangeFinished, [&finished] { finished = true; });
    ASSERT_TRUE(window->ExportSinger());
    ASSERT_TRUE(waitUntil([&] { return finished; }));
    EXPECT_EQ(dialogs.messages().last(), QStringLiteral("1 singer(s) exported!"));
    EXPECT_EQ(readAll(app.file(QStringLiteral("Singer/A&B.jpg"))), photo);

    // The photograph alone comes back without the question; an information file brings it.
    SongConnection()->execute(QStringLiteral("delete from singer"));
    dialogs.clear();
    finished = false;
    ASSERT_TRUE(window->ImportSinger());
    ASSERT_TRUE(waitUntil([&] { return finished; }));
    EXPECT_EQ(dialogs.messages().last(), QStringLiteral("0 singers' information and 1 singers' image imported!"));
    EXPECT_EQ(photoOf(QStringLiteral("A/B")), photo);

    app.write(QStringLiteral("Singer/C.inf"), "[Default]\nType=band\n");
    dialogs.clear();
    finished = false;
    ASSERT_TRUE(window->ImportSinger());
    ASSERT_TRUE(waitUntil([&] { return finished; }));
    EXPECT_EQ(dialogs.messages().last(),
              QStringLiteral("You need refresh singer list to reflect the changes. Do you want to do it now?"));
    ASSERT_TRUE(waitUntil([this] { return !window->ListLoading() && window->ctlView()->MainItems().Count() == 2; }));

    SongCloseDatabase();
    dialogs.clear();
    EXPECT_FALSE(window->ExportSinger());
    EXPECT_EQ(dialogs.messages(), QStringList({QStringLiteral("Please login first")}));
}

}  // namespace
