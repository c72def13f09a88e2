#include "libraries/LibrarySongFiles.h"
#include "shell/services/AppError.h"
#include "shell/services/AppPaths.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Ini.h"
#include "shell/services/TextStore.h"
#include "songdb/Connection.h"
#include "songdb/Recordset.h"
#include "songdb/SongStatements.h"
#include <QDate>
#include <QFile>

namespace td {

namespace {

const QString kAFile = QStringLiteral("f");
// Marks waiting beyond this many are set before the next song, so a long pass that dies loses few.
constexpr qsizetype kMarksPerFlush = 4096;

QString quoted(QString value)
{
    return value.replace(u'\'', QStringLiteral("''"));
}

QString libraryFile(const QString& rootPath, const QString& name)
{
    return LinkFileByPath(NativePath(rootPath), name);
}

void writeMarker(const QString& rootPath, qint64 updated)
{
    const QString marker = libraryFile(rootPath, QStringLiteral("ktvlibrary.ini"));
    IniWrite(marker, QStringLiteral("Default"), QStringLiteral("nSong"), QString::number(updated));
    IniWrite(marker, QStringLiteral("Default"), QStringLiteral("lupd"),
             QDate::currentDate().toString(QStringLiteral("yyyy-MM-dd")));
}

// The hidden marks that could not be set are failures of the songs they belong to.
void flushMarks(HiddenMarks& marks, JobHost& host)
{
    for (const QString& dir : marks.flush())
        host.Fail(QStringLiteral("SetSongInfoToLibrary failed. Err = Cannot mark the song files of ") + dir +
                  QStringLiteral(" hidden"));
}

// The library manager's update once the library is chosen. Throws AppError; started tells whether the
// progress window stands.
LibraryUpdate updateSongFiles(Connection& db, const QString& rootPath, JobHost& host, bool& started)
{
    LibraryUpdate result;
    if (FileKind(NativePath(rootPath)) != QLatin1String("p")) {
        host.Fail(QStringLiteral("Invaild root path < ") + rootPath + QStringLiteral(" > !"));
        return result;
    }
    std::unique_ptr<Recordset> rs;
    try {
        rs =
            db.openRecordset(QStringLiteral("select * from song where library='") + quoted(rootPath) + u'\'');
    } catch (const std::exception& e) {
        host.Fail(QStringLiteral("Open Song table failed!") + ErrSuffix(e));
        return result;
    }
    if (rs->RecordCount() == 0) {
        host.Inform(QStringLiteral("There is no song in selected library need to be updated!"));
        return result;
    }
    const qint64 count = rs->RecordCount();
    if (host.Ask(
            QString::number(count) + QStringLiteral(" song(s) in selected library will be updated, process?"),
            MsgButtons::OkCancel) == MsgAnswer::Cancel)
        return result;

    host.StartProcess(QString(), QStringLiteral("Update Library ..."), 0, count, true);
    started = true;
    HiddenMarks marks;
    qint64 done = 0;
    rs->MoveFirst();
    for (;;) {
        if (rs->IsEOF()) {
            flushMarks(marks, host);
            writeMarker(rootPath, result.updated);
            result.completed = true;
            break;
        }
        if (SetSongInfoToLibrary(*rs, host, marks))
            ++result.updated;
        else if (host.Ask(QStringLiteral("An error occurs, do you want to process anyway?"),
                          MsgButtons::OkCancel) == MsgAnswer::Cancel)
            break;
        if (marks.pending() >= kMarksPerFlush)
            flushMarks(marks, host);
        rs->MoveNext();
        host.Processing(++done);
        if (JobStopWanted(host))
            break;
    }
    flushMarks(marks, host);
    rs->Close();
    host.EndProcess();
    // Also after an interruption, with what was done until then.
    host.Inform(QString::number(result.updated) +
                QStringLiteral(" song(s) in selected library were updated successfully!"));
    return result;
}

}  // namespace

HiddenMarks::~HiddenMarks()
{
    flush();
}

void HiddenMarks::add(const QString& path)
{
    byFolder_[ParentPath(path)] << FileNameOf(path);
    ++pending_;
}

QStringList HiddenMarks::flush()
{
    QStringList failed;
    for (auto it = byFolder_.cbegin(); it != byFolder_.cend(); ++it)
        if (!SetFilesHidden(it.key(), it.value()))
            failed << it.key();
    byFolder_.clear();
    pending_ = 0;
    return failed;
}

QString SongInfoPath(const QString& library, const QString& mediaFile)
{
    return NativePath(LinkFileByPath(library, mediaFile)) + QStringLiteral(".son");
}

void WriteSongInfo(Recordset& rs, HiddenMarks& marks)
{
    const QString path = SongInfoPath(rs.Fields(QStringLiteral("library")).Text(),
                                      rs.Fields(QStringLiteral("media_file")).Text());
    const QString media = path.chopped(4);
    if (FileKind(media) != kAFile)
        return;
    const QString section = rs.Fields(QStringLiteral("region")).Text();
    // Other regions' sections stay as they are; the first column, the row's id, means nothing elsewhere.
    QString text = FileKind(path) == kAFile ? ReadTextStore(path) : QString();
    for (int c = 1; c < rs.FieldCount(); ++c) {
        const Field field = rs.Fields(c);
        WriteTextValue(text, section, field.Name(), field.Text());
    }
    WriteTextStore(path, text);
    marks.add(path);
}

bool SetSongInfoToLibrary(Recordset& rs, JobHost& host, HiddenMarks& marks)
{
    try {
        WriteSongInfo(rs, marks);
        return true;
    } catch (const std::exception& e) {
        host.Fail(QStringLiteral("SetSongInfoToLibrary failed. Err = ") + ErrorText(e));
        return false;
    }
}

bool SetSongInfoToLibrary(Recordset& rs, JobHost& host)
{
    HiddenMarks marks;
    if (!SetSongInfoToLibrary(rs, host, marks))
        return false;
    flushMarks(marks, host);
    return true;
}

LibraryUpdate UpdateLibrary(Connection& db, const QString& rootPath, JobHost& host)
{
    bool started = false;
    try {
        return updateSongFiles(db, rootPath, host, started);
    } catch (const std::exception& e) {
        if (started)
            host.EndProcess();
        host.Fail(QStringLiteral("UpdateLibrary failed! ") + ErrSuffix(e));
        return {};
    }
}

bool CreateLibraryDatabase(const QString& rootPath)
{
    const QString target = libraryFile(rootPath, QStringLiteral("library.db"));
    if (FileKind(target) == kAFile) {
        SetFileHidden(target, false);
        QFile::setPermissions(target, QFile::permissions(target) | QFile::WriteOwner);
        if (!QFile::remove(target))
            return false;
    }
    if (!FileOperation(FO_COPY, LinkFileByPath(AppPath(), QStringLiteral("default.db")), target))
        return false;
    SetFileHidden(target);
    return SongExecute(QStringLiteral("select * into song in '") + quoted(target) +
                       QStringLiteral("' from song where id=-1")) &&
           SongExecute(QStringLiteral("select * into singer in '") + quoted(target) +
                       QStringLiteral("' from singer where name='***xxx'"));
}

}  // namespace td
