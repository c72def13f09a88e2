// The singer exchange: photographs byte for byte through export and import, the names a file system
// cannot hold, half a pair of files, files that are no photograph, a folder that cannot be written.
#include "shell/services/Ini.h"
#include "singers/SingerExchange.h"
#include "songdb/Connection.h"
#include "songdb/RecordAccess.h"
#include "songdb/Schema.h"
#include "support/TempAppDir.h"
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <deque>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace td;

namespace {

// Writes down what the job shows and answers its questions from a script, then with OK (or No).
// The cancel button is pressed once the progress reaches cancelAt.
class ScriptedHost : public JobHost {
public:
    void StartProcess(const QString&, const QString& hint, qint64, qint64 max, bool) override
    {
        shown << QStringLiteral("start %1 %2").arg(hint).arg(max);
    }
    void Processing(qint64 value) override { progress = value; }
    bool IsProcessCanceled() override { return cancelAt >= 0 && progress >= cancelAt; }
    void ResumeProcess() override { cancelAt = -1; }
    void EndProcess() override {}
    MsgAnswer Ask(const QString& text, MsgButtons buttons, const QString& = {}) override
    {
        shown << QStringLiteral("ask ") + text;
        if (!script.empty()) {
            const MsgAnswer a = script.front();
            script.pop_front();
            return a;
        }
        return buttons == MsgButtons::OkCancel ? MsgAnswer::Ok : MsgAnswer::No;
    }
    void Inform(const QString& text, const QString& = {}) override { shown << QStringLiteral("info ") + text; }
    void Fail(const QString& text, const QString& = {}) override { shown << QStringLiteral("fail ") + text; }

    QStringList starting(const QString& prefix) const
    {
        QStringList out;
        for (const QString& s : shown)
            if (s.startsWith(prefix))
                out << s.mid(prefix.size());
        return out;
    }

    QStringList shown;
    std::deque<MsgAnswer> script;
    qint64 progress = 0;
    qint64 cancelAt = -1;
};

// A JPEG as far as the exchange can tell: its start and end marks around random bytes.
QByteArray photograph(qsizetype size, quint32 seed)
{
    QByteArray bytes(size, '\0');
    QRandomGenerator rng(seed);
    for (char& b : bytes)
        b = char(rng.bounded(256));
    bytes[0] = char(0xFF);
    bytes[1] = char(0xD8);
    bytes[2] = char(0xFF);
    bytes[size - 2] = char(0xFF);
    bytes[size - 1] = char(0xD9);
    return bytes;
}

QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

struct Singer {
    QString name;
    QByteArray photo;  // empty: none
    QString type, description, remark;  // "\x01" stands for NULL
};

const QString kNull = QStringLiteral("\x01");

class SingerExchangeTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir().mkpath(folder()));
        source = makeDatabase(QStringLiteral("source.db"));
        target = makeDatabase(QStringLiteral("target.db"));
    }

    std::unique_ptr<Connection> makeDatabase(const QString& name)
    {
        CreateSongDatabase(app.file(name), QStringLiteral("English"));
        return OpenConnection(app.file(name));
    }

    void add(Connection& db, const Singer& s)
    {
        auto rs = db.openRecordset(QStringLiteral("select * from singer where name is null"));
        rs->AddNew();
        rs->Fields(QStringLiteral("name")).setValue(s.name);
        const std::pair<const char*, QString> fields[] = {
            {"type", s.type}, {"description", s.description}, {"remark", s.remark}};
        for (const auto& [field, value] : fields)
            if (value != kNull)
                rs->Fields(QString::fromLatin1(field)).setValue(value);
        rs->Update();
        if (!s.photo.isEmpty())
            StoreImageFile(*rs, app.write(QStringLiteral("in.jpg"), s.photo));
        rs->Close();
    }

    // The photograph of the singer of that name, or "<none>"; "<no singer>" when there is none.
    QByteArray photoOf(Connection& db, const QString& name)
    {
        auto rs = db.openRecordset(QStringLiteral("select * from singer where name='") +
                                   QString(name).replace(u'\'', QStringLiteral("''")) + u'\'');
        if (rs->RecordCount() != 1)
            return rs->RecordCount() == 0 ? "<no singer>" : "<several>";
        rs->MoveFirst();
        const QString out = app.file(QStringLiteral("out.jpg"));
        QFile::remove(out);
        return WriteImageFile(*rs, out) ? readAll(out) : QByteArray("<none>");
    }

    QStringList rows(Connection& db)
    {
        auto rs = db.openRecordset(
            QStringLiteral("select name, type, description, remark, image_len from singer order by name"));
        QStringList out;
        for (qsizetype r = 0; r < rs->RecordCount(); ++r) {
            QStringList cells;
            for (int c = 0; c < rs->FieldCount(); ++c)
                cells << rs->text(r, c);  // an empty key may come back as NULL or as empty text
            out << cells.join(u'|');
        }
        return out;
    }

    QString folder() const { return app.file(QStringLiteral("Singer")); }
    QString inFolder(const QString& file) const { return QDir(folder()).filePath(file); }

    test::TempAppDir app;
    std::unique_ptr<Connection> source;
    std::unique_ptr<Connection> target;
    ScriptedHost host;
};

TEST(SingerFileNames, SanitiseAndComeBack)
{
    const struct {
        const char* name;
        const char* file;
        const char* back;
    } cases[] = {
        {"A/B", "A&B", "A/B"},
        {"A\\B", "A&B", "A/B"},
        {"A&B", "A&B", "A/B"},
        {"Q|R:S?T*U", "Q&R&S&T&U", "Q/R/S/T/U"},
        {"<The \"Best\">", "The Best", "The Best"},
        {"O'Neil", "O'Neil", "O'Neil"},
        {"周杰倫/蔡依林", "周杰倫&蔡依林", "周杰倫/蔡依林"},
    };
    for (const auto& c : cases) {
        const QString name = QString::fromUtf8(c.name);
        EXPECT_EQ(SingerFileName(name), QString::fromUtf8(c.file)) << c.name;
        EXPECT_EQ(SingerNameOfFile(QStringLiteral("/x/Singer/") + SingerFileName(name) + QStringLiteral(".inf")),
                  QString::fromUtf8(c.back))
            << c.name;
    }
    // The name ends at the first dot.
    EXPECT_EQ(SingerNameOfFile(QStringLiteral("/x/A.B.inf")), QStringLiteral("A"));
}

TEST_F(SingerExchangeTest, PhotographsAndFieldsComeBackByteForByte)
{
    // Sizes around the store's block boundaries, and names a file system cannot hold as they stand.
    const QList<Singer> singers = {
        {QStringLiteral("Alice"), photograph(100000, 1), QStringLiteral("female"), QStringLiteral("Pop"), kNull},
        {QStringLiteral("A/B"), photograph(100001, 2), QStringLiteral("band"), kNull, QStringLiteral("r")},
        {QStringLiteral("O'Neil"), photograph(99999, 3), kNull, QStringLiteral("It's"), kNull},
        {QStringLiteral("周杰伦"), photograph(250017, 4), QStringLiteral("male"), QStringLiteral("台湾"),
         QStringLiteral("歌星")},
        {QStringLiteral("Tiny"), photograph(5, 5), kNull, kNull, kNull},
        {QStringLiteral("NoPhoto"), QByteArray(), QStringLiteral("mix"), QString(), kNull},
    };
    for (const Singer& s : singers)
        add(*source, s);
    QDir(folder()).removeRecursively();

    const SingerExchangeResult out = ExportSingers(*source, folder(), host);
    EXPECT_EQ(out.exported, 6);
    EXPECT_EQ(host.starting(QStringLiteral("fail ")), QStringList());
    EXPECT_EQ(host.starting(QStringLiteral("ask ")),
              QStringList({QStringLiteral("Export all singers' image & information to folder <") + folder() +
                               QStringLiteral("> ?"),
                           QStringLiteral("Folder <") + folder() + QStringLiteral("> no exist, create it?"),
                           QStringLiteral("6 singer(s) need to be exported, process?")}));
    EXPECT_EQ(host.shown.last(), QStringLiteral("info 6 singer(s) exported!"));
    EXPECT_EQ(readAll(inFolder(QStringLiteral("A&B.jpg"))), singers[1].photo);
    EXPECT_EQ(readAll(inFolder(QStringLiteral("周杰伦.jpg"))), singers[3].photo);
    EXPECT_FALSE(QFile::exists(inFolder(QStringLiteral("Tiny.inf"))));  // no field, no information file
    EXPECT_FALSE(QFile::exists(inFolder(QStringLiteral("NoPhoto.jpg"))));
    EXPECT_EQ(IniRead(inFolder(QStringLiteral("A&B.inf")), QStringLiteral("Default"), QStringLiteral("remark"), {}),
              QStringLiteral("r"));

    ScriptedHost in;
    const SingerExchangeResult back = ImportSingers(*target, folder(), in);
    EXPECT_EQ(back.infos, 5);
    EXPECT_EQ(back.images, 5);
    EXPECT_EQ(in.shown.last(), QStringLiteral("info 5 singers' information and 5 singers' image imported!"));
    for (const Singer& s : singers)
        EXPECT_EQ(photoOf(*target, s.name), s.photo.isEmpty() ? QByteArray("<none>") : s.photo)
            << s.name.toStdString();
    // A missing key reads as empty text.
    EXPECT_EQ(rows(*target), QStringList({
                                 QStringLiteral("A/B|band||r|100001"),
                                 QStringLiteral("Alice|female|Pop||100000"),
                                 QStringLiteral("NoPhoto|mix|||0"),
                                 QStringLiteral("O'Neil||It's||99999"),
                                 QStringLiteral("Tiny||||5"),
                                 QStringLiteral("周杰伦|male|台湾|歌星|250017"),
                             }));
}

TEST_F(SingerExchangeTest, ImportUpdatesSingersOfTheSameNameAndKeepsTheirPhotographWithoutAPicture)
{
    const QByteArray old = photograph(3000, 7);
    add(*target, {QStringLiteral("O'Neil"), old, QStringLiteral("male"), QStringLiteral("old"), QStringLiteral("x")});
    IniWrite(inFolder(QStringLiteral("O'Neil.inf")), QStringLiteral("Default"), QStringLiteral("Type"),
             QStringLiteral("band"));
    const SingerExchangeResult r = ImportSingers(*target, folder(), host);
    EXPECT_EQ(r.infos, 1);
    EXPECT_EQ(r.images, 0);
    EXPECT_EQ(rows(*target), QStringList({QStringLiteral("O'Neil|band|||3000")}));
    EXPECT_EQ(photoOf(*target, QStringLiteral("O'Neil")), old);
    EXPECT_TRUE(host.starting(QStringLiteral("info ")).contains(
        QStringLiteral("There isn't any singer's image need to be imported!")));
}

TEST_F(SingerExchangeTest, APictureWithoutInformationMakesASinger)
{
    const QByteArray photo = photograph(4000, 8);
    app.write(QStringLiteral("Singer/A&B.jpg"), photo);
    const SingerExchangeResult r = ImportSingers(*target, folder(), host);
    EXPECT_EQ(host.starting(QStringLiteral("info ")),
              QStringList({QStringLiteral("There isn't any singer's information need to be imported!"),
                           QStringLiteral("0 singers' information and 1 singers' image imported!")}));
    EXPECT_EQ(r.images, 1);
    EXPECT_EQ(photoOf(*target, QStringLiteral("A/B")), photo);
}

TEST_F(SingerExchangeTest, FilesThatAreNoJpegAreRefusedAndChangeNothing)
{
    const QByteArray kept = photograph(2000, 9);
    add(*target, {QStringLiteral("Kept"), kept, kNull, kNull, kNull});
    QByteArray png("\x89PNG\r\n\x1a\n", 8);
    png += QByteArray(500, 'p');
    const QByteArray whole = photograph(6000, 10);
    app.write(QStringLiteral("Singer/Kept.jpg"), png);
    app.write(QStringLiteral("Singer/Cut.jpg"), whole.left(3000));
    app.write(QStringLiteral("Singer/Empty.jpg"), QByteArray());
    QByteArray padded = whole + QByteArray(16, '\0');
    app.write(QStringLiteral("Singer/Padded.jpg"), padded);

    const SingerExchangeResult r = ImportSingers(*target, folder(), host);
    EXPECT_EQ(r.images, 1);
    const QStringList failures = host.starting(QStringLiteral("fail "));
    ASSERT_EQ(failures.size(), 3) << failures.join(u'\n').toStdString();
    for (const QString& f : failures)
        EXPECT_TRUE(f.startsWith(QStringLiteral("Only jpg file support. <"))) << f.toStdString();
    EXPECT_EQ(photoOf(*target, QStringLiteral("Kept")), kept);
    EXPECT_EQ(photoOf(*target, QStringLiteral("Cut")), QByteArray("<no singer>"));
    EXPECT_EQ(photoOf(*target, QStringLiteral("Empty")), QByteArray("<no singer>"));
    EXPECT_EQ(photoOf(*target, QStringLiteral("Padded")), padded);
}

TEST_F(SingerExchangeTest, A30MegabytePhotographTravelsWhole)
{
    const QByteArray big = photograph(30 * 1024 * 1024 + 7, 15);
    add(*source, {QStringLiteral("Big"), big, kNull, kNull, kNull});
    EXPECT_EQ(ExportSingers(*source, folder(), host).exported, 1);
    EXPECT_EQ(readAll(inFolder(QStringLiteral("Big.jpg"))), big);
    EXPECT_EQ(ImportSingers(*target, folder(), host).images, 1);
    EXPECT_EQ(photoOf(*target, QStringLiteral("Big")), big);
}

TEST_F(SingerExchangeTest, EmptyTableAndCancelledCountStillSayHowManyWereExported)
{
    ExportSingers(*source, folder(), host);
    EXPECT_EQ(host.starting(QStringLiteral("info ")),
              QStringList({QStringLiteral("There isn't any singer need to export!"),
                           QStringLiteral("0 singer(s) exported!")}));

    add(*source, {QStringLiteral("Alice"), photograph(100, 11), kNull, kNull, kNull});
    ScriptedHost cancelled;
    cancelled.script = {MsgAnswer::Ok, MsgAnswer::Cancel};
    EXPECT_EQ(ExportSingers(*source, folder(), cancelled).exported, 0);
    EXPECT_EQ(cancelled.shown.last(), QStringLiteral("info 0 singer(s) exported!"));
    EXPECT_FALSE(QFile::exists(inFolder(QStringLiteral("Alice.jpg"))));
}

TEST_F(SingerExchangeTest, CancelAtTheFirstQuestionsDoesNothing)
{
    QDir(folder()).removeRecursively();
    host.script = {MsgAnswer::Cancel};
    EXPECT_FALSE(ExportSingers(*source, folder(), host).closed);
    ScriptedHost second;
    second.script = {MsgAnswer::Ok, MsgAnswer::Cancel};
    EXPECT_FALSE(ExportSingers(*source, folder(), second).closed);
    EXPECT_FALSE(QFileInfo::exists(folder()));

    ScriptedHost import;
    EXPECT_FALSE(ImportSingers(*target, folder(), import).closed);
    EXPECT_EQ(import.starting(QStringLiteral("info ")),
              QStringList({QStringLiteral("Folder <") + folder() + QStringLiteral("> no exist, can't import!")}));
}

TEST_F(SingerExchangeTest, StoppedInformationImportSkipsThePicturesAndKeepsWhatWasDone)
{
    for (const char* name : {"A", "B", "C"}) {
        IniWrite(inFolder(QString::fromLatin1(name) + QStringLiteral(".inf")), QStringLiteral("Default"),
                 QStringLiteral("remark"), QStringLiteral("r"));
        app.write(QStringLiteral("Singer/") + QString::fromLatin1(name) + QStringLiteral(".jpg"), photograph(50, 12));
    }
    host.cancelAt = 2;
    host.script = {MsgAnswer::Ok, MsgAnswer::Ok, MsgAnswer::Yes};
    const SingerExchangeResult r = ImportSingers(*target, folder(), host);
    EXPECT_EQ(r.infos, 2);
    EXPECT_EQ(r.images, 0);
    EXPECT_EQ(rows(*target), QStringList({QStringLiteral("A|||r|0"), QStringLiteral("B|||r|0")}));
    EXPECT_EQ(host.shown.last(), QStringLiteral("info 2 singers' information and 0 singers' image imported!"));
}

TEST_F(SingerExchangeTest, AFolderThatCannotBeWrittenIsRefusedBeforeAnyFile)
{
    add(*source, {QStringLiteral("Alice"), photograph(100, 13), QStringLiteral("female"), kNull, kNull});
    // Root writes through the mode bits; /proc refuses a new file to everyone.
    QString readOnly = folder();
    if (geteuid() == 0) {
        readOnly = QStringLiteral("/proc");
    } else {
        ASSERT_TRUE(QDir().mkpath(readOnly));
        QFile::setPermissions(readOnly, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    }
    const SingerExchangeResult r = ExportSingers(*source, readOnly, host);
    QFile::setPermissions(readOnly, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    EXPECT_EQ(r.exported, 0);
    EXPECT_EQ(host.starting(QStringLiteral("fail ")),
              QStringList({QStringLiteral("Folder <") + readOnly + QStringLiteral("> is read-only, can't export!")}));
    EXPECT_EQ(host.shown.last(), QStringLiteral("info 0 singer(s) exported!"));
    EXPECT_FALSE(QFile::exists(QDir(readOnly).filePath(QStringLiteral("Alice.jpg"))));
}

TEST_F(SingerExchangeTest, AdminCommandsRunTheSameExchange)
{
    const QString admin = QStringLiteral(TUNEDESK_BINARY_DIR "/tunedesk-admin");
    if (!QFile::exists(admin))
        GTEST_SKIP() << "tunedesk-admin not built";
    const QByteArray photo = photograph(123457, 14);
    add(*source, {QStringLiteral("周杰伦/蔡依林"), photo, QStringLiteral("mix"), kNull, kNull});
    source.reset();
    target.reset();
    auto run = [&](const QStringList& args, QByteArray* out = nullptr) {
        QProcess p;
        p.start(admin, args);
        p.waitForFinished(30000);
        if (out)
            *out = p.readAllStandardOutput();
        return p.exitCode();
    };
    QByteArray out;
    EXPECT_EQ(run({QStringLiteral("singers"), QStringLiteral("export"), app.file(QStringLiteral("source.db")),
                   folder()},
                  &out),
              0);
    EXPECT_TRUE(out.contains("1 singer(s) exported!")) << out.toStdString();
    EXPECT_EQ(run({QStringLiteral("singers"), QStringLiteral("import"), app.file(QStringLiteral("target.db")),
                   folder()},
                  &out),
              0);
    EXPECT_TRUE(out.contains("1 singers' information and 1 singers' image imported!")) << out.toStdString();
    target = OpenConnection(app.file(QStringLiteral("target.db")));
    EXPECT_EQ(photoOf(*target, QStringLiteral("周杰伦/蔡依林")), photo);

    EXPECT_EQ(run({QStringLiteral("singers"), QStringLiteral("import"), app.file(QStringLiteral("target.db")),
                   app.file(QStringLiteral("nowhere"))}),
              2);
    EXPECT_EQ(run({QStringLiteral("singers"), QStringLiteral("swap")}), 2);
}

}  // namespace
