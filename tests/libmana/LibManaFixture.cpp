#include "LibManaFixture.h"
#include "controls/ctlDataFields.h"
#include "controls/ctlDataView.h"
#include "controls/frmProcess.h"
#include "libraries/frmLibMana.h"
#include "songdb/Connection.h"
#include "songdb/Schema.h"
#include "songdb/SongSession.h"
#include "support/QtApp.h"
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

namespace td::test {

LibManaFixture::LibManaFixture()
{
    EnsureQtApp();
    QFile::copy(QStringLiteral(TUNEDESK_SOURCE_DIR "/data/ListLibMana.ini"),
                dir.file(QStringLiteral("ListLibMana.ini")));
    if (!dir.openSongDatabase())
        ADD_FAILURE() << "the test database did not open";
    for (const char* name : {"a", "a2", "b"}) {
        const QString r = root(name);
        QDir().mkpath(r);
        sql(QStringLiteral("insert into library (root_path, shared_as, name) values ('%1', '/%2', '%2')")
                .arg(r, QString::fromLatin1(name)));
    }
    sql(QStringLiteral("insert into region (name) values ('China')"));
    dialogs.clear();
}

LibManaFixture::~LibManaFixture()
{
    window.reset();
    frmProcess::EndShown();
    SongCloseDatabase();
}

void LibManaFixture::sql(const QString& statement)
{
    SongConnection()->execute(statement);
}

QString LibManaFixture::value(const QString& statement)
{
    auto rs = SongConnection()->openRecordset(statement);
    return rs->RecordCount() > 0 ? rs->text(0, 0) : QStringLiteral("<no row>");
}

int LibManaFixture::count(const QString& where)
{
    return value(QStringLiteral("select count(*) from song where ") + where).toInt();
}

void LibManaFixture::addSongs(const QString& library, int n, bool files)
{
    for (int i = 1; i <= n; ++i) {
        const QString media = QStringLiteral("/%1.dat").arg(i, 4, 10, QLatin1Char('0'));
        if (files) {
            QFile f(library + media);
            f.open(QIODevice::WriteOnly);
            f.write("media");
        }
        sql(QStringLiteral("insert into song ([index], title, region, library, media_file) values "
                           "(%1, '月亮 %1', 'China', '%2', '%3')")
                .arg(i)
                .arg(library, media));
    }
}

void LibManaFixture::openWindow()
{
    window = std::make_unique<frmLibMana>();
    window->resize(900, 500);
    window->show();
    ASSERT_TRUE(waitUntil([this] { return !window->ListLoading(); }));
    dialogs.clear();
}

std::optional<bool> LibManaFixture::saveAndWait()
{
    std::optional<bool> result;
    window->SaveLibrary([&](bool ok) { result = ok; });
    waitUntil([&] { return result.has_value(); });
    return result;
}

bool LibManaFixture::waitUntil(const std::function<bool()>& done, int ms)
{
    QElapsedTimer clock;
    clock.start();
    while (!done() && clock.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    QCoreApplication::processEvents();
    return done();
}

void LibManaFixture::selectRoot(const QString& rootPath)
{
    ListItems& items = window->ctlView()->MainItems();
    QList<int> selected{0};
    for (int i = 1; i <= items.Count(); ++i) {
        const bool mine = items.Text(i) == rootPath;
        items.setSelected(i, mine);
        if (mine)
            selected << i;
    }
    ASSERT_EQ(selected.size(), 2) << "no row for " << rootPath.toStdString();
    window->LoadFieldDatas(selected);
}

void LibManaFixture::edit(const QString& field, const QString& value)
{
    ctlDataFields* fields = window->ctlFields();
    const int index = fields->GetFieldIndex(field);
    ASSERT_GT(index, 0) << field.toStdString();
    fields->SetField(index, QStringLiteral("value"), value);
    fields->SetField(index, QStringLiteral("changed"), true);
}

QStringList LibManaFixture::listedRoots() const
{
    QStringList roots;
    ListItems& items = window->ctlView()->MainItems();
    for (int i = 1; i <= items.Count(); ++i)
        roots << items.Text(i);
    return roots;
}

}  // namespace td::test
