#include "SongbookFixture.h"
#include "songbook/PreviewPanel.h"
#include "controls/ctlDataFields.h"
#include "controls/ctlDataView.h"
#include "shell/Main.h"
#include "shell/mdiMain.h"
#include "shell/services/Ini.h"
#include "songbook/frmSong.h"
#include "songdb/Connection.h"
#include "songdb/Schema.h"
#include "songdb/SongSession.h"
#include "support/QtApp.h"
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTimer>

namespace td::test {

bool RecordingShell::play(const QString& commandFile)
{
    played << commandFile;
    QFile f(commandFile);
    commandLines.clear();
    if (f.open(QIODevice::ReadOnly))
        for (const QByteArray& line : f.readAll().split('\n'))
            if (!line.trimmed().isEmpty())
                commandLines << QString::fromUtf8(line.trimmed());
    return playerStarts;
}

SongbookFixture::SongbookFixture()
{
    EnsureQtApp();
    // The preview plays, but nothing reaches a screen or a speaker.
    PreviewPanel::PlayerOutput() = {QStringLiteral("null"), QStringLiteral("null"), {}};
    for (const char* name : {"ListSong.ini", "ListMedia.ini"})
        QFile::copy(QStringLiteral(TUNEDESK_SOURCE_DIR "/data/") + QString::fromLatin1(name),
                    dir.file(QString::fromLatin1(name)));
    if (!dir.openSongDatabase())
        ADD_FAILURE() << "the test database did not open";
    QDir().mkpath(libRoot());
    sql(QStringLiteral("insert into library (root_path, name) values ('") + libRoot() +
        QStringLiteral("', 'Test')"));
    sql(QStringLiteral("insert into region (name) values ('China')"));
    dialogs.clear();
}

SongbookFixture::~SongbookFixture()
{
    frame.reset();
    SongCloseDatabase();
}

void SongbookFixture::sql(const QString& statement)
{
    SongConnection()->execute(statement);
}

QString SongbookFixture::value(const QString& statement)
{
    auto rs = SongConnection()->openRecordset(statement);
    return rs->RecordCount() > 0 ? rs->text(0, 0) : QStringLiteral("<no row>");
}

qint64 SongbookFixture::addSong(const QString& title, const QString& singer, const QString& region, int index,
                                const QString& more)
{
    auto quoted = [](QString v) {
        return v.isNull() ? QStringLiteral("null") : u'\'' + v.replace(u'\'', QStringLiteral("''")) + u'\'';
    };
    sql(QStringLiteral("insert into song ([index], title, singer, region, chars, grade, remark) values (%1, "
                       "%2, %3, %4, %5, 0, %6)")
            .arg(index)
            .arg(quoted(title), quoted(singer), quoted(region))
            .arg(title.size())
            .arg(quoted(more)));
    return value(QStringLiteral("select max(id) from song")).toLongLong();
}

QString SongbookFixture::makeFile(const QString& relative)
{
    return dir.write(relative, QByteArray("media"));
}

void SongbookFixture::openSongbook()
{
    RegisterWindows();
    frame = std::make_unique<mdiMain>();
    song = dynamic_cast<frmSong*>(frame->ShowWindow(QStringLiteral("frmSong")));
    ASSERT_NE(song, nullptr);
    song->tmrLoadData()->stop();  // the test fills the list itself
    ASSERT_TRUE(loadList());
    dialogs.clear();
}

bool SongbookFixture::loadList()
{
    return song->LoadData() && waitForList();
}

bool SongbookFixture::waitForList()
{
    return waitWhile([this] { return song->ListLoading(); });
}

bool SongbookFixture::waitForValues()
{
    return waitWhile([this] { return song->ValuesLoading(); });
}

bool SongbookFixture::waitWhile(const std::function<bool()>& busy)
{
    QElapsedTimer clock;
    clock.start();
    while (busy() && clock.elapsed() < 10000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return !busy();
}

void SongbookFixture::select(const QList<int>& rows)
{
    ctlDataView* view = song->ctlView();
    view->MoveTo(rows.first());
    for (int r : rows)
        view->MainItems().setSelected(r, true);
    QList<int> selection;
    view->GetViewSelections(selection);
    song->LoadFieldDatas(selection);
}

QStringList SongbookFixture::listedTitles() const
{
    ctlDataView* view = song->ctlView();
    int column = 0;
    for (std::size_t c = 0; c < view->Columns().size(); ++c)
        if (view->Columns()[c].Field.compare(QStringLiteral("title"), Qt::CaseInsensitive) == 0)
            column = int(c);
    QStringList titles;
    for (int i = 1; i <= view->MainItems().Count(); ++i)
        titles << view->MainItems().SubItems(i, column);
    return titles;
}

int SongbookFixture::row(const QString& title) const
{
    return int(listedTitles().indexOf(title)) + 1;
}

void SongbookFixture::edit(const QString& field, const QString& text)
{
    ctlDataFields* fields = song->ctlFields();
    fields->SetField(fields->GetFieldIndex(field), QStringLiteral("value"), text);
}

QString SongbookFixture::logPane() const
{
    return frame->pane(QStringLiteral("log"));
}

}  // namespace td::test
