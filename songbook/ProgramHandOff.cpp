// Songs to the room player, command.spe beside the program handed to the shell's "play", or the first
// of them to the preview in the window's own panel.
#include "controls/ctlDataView.h"
#include "shell/services/AppError.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Dialogs.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Ini.h"
#include "shell/services/Shell.h"
#include "songbook/PreviewPanel.h"
#include "songbook/frmSong.h"
#include "songdb/CatalogueLookups.h"

namespace td {

namespace {

constexpr int kMostSongsAtOnce = 50;
const QString kSection = QStringLiteral("Default");

}  // namespace

QString frmSong::CommandFile()
{
    return AppPath() + QStringLiteral("/command.spe");
}

// The paths in selection order; a song whose file can't be found gives an empty path.
QStringList frmSong::selectedPaths(const QString& source, const QList<int>& selection)
{
    QStringList paths;
    const bool songbook = source == u"songbook";
    ctlDataView* view = songbook ? ctlView_ : ctlMedia_;
    Recordset* rs = view->mrsMain();
    for (qsizetype i = 1; i < selection.size(); ++i) {
        if (!rs || !rs->setBookmark(view->MainItems().Tag(selection[i])))
            throw AppError(QStringLiteral("Bookmark is invalid."));
        if (songbook)
            paths << KtvGetFileById(rs->Fields(QStringLiteral("ID")).Value().toLongLong());
        else
            paths << rs->Fields(QStringLiteral("Position")).Text();
    }
    return paths;
}

void frmSong::PlaySong(const QString& source, const QString& mode)
{
    const QString from = source.toLower();
    QList<int> selection{0};
    if (from == u"songbook")
        ctlView_->GetViewSelections(selection);
    else if (from == u"media")
        ctlMedia_->GetViewSelections(selection);
    const int n = int(selection.size()) - 1;
    if (n == 0) {
        MsgInfo(QStringLiteral("No song or media selected!"));
        return;
    }
    if (n > kMostSongsAtOnce) {
        MsgError(QStringLiteral("Can't add too many songs at one time."));
        return;
    }
    try {
        const QStringList paths = selectedPaths(from, selection);
        if (mode == u"p" || mode == u"a" || mode == u"i") {
            AddToPlayer(paths, mode);
            return;
        }
        if (mode != u"preview")
            return;
        if (paths.first().isEmpty()) {
            MsgError(QStringLiteral("Can't find selected song."));
            return;
        }
        picMoni_->Preview(paths.first());
    } catch (const std::exception& e) {
        MsgError(QStringLiteral("Play song failed. ") + ErrSuffix(e));
    }
}

void frmSong::StopSong()
{
    picMoni_->StopSong();
}

// Only the first line carries the chosen mode; every later song is appended. A file that occurs
// twice keeps one line, with the value of its last write.
bool frmSong::AddToPlayer(const QStringList& files, const QString& mode)
{
    const QString commandFile = CommandFile();
    IniDeleteSection(commandFile, kSection);
    for (qsizetype i = 0; i < files.size(); ++i) {
        if (FileKind(files[i]) != u"f")
            continue;
        if (!IniWrite(commandFile, kSection, files[i], i == 0 ? mode : QStringLiteral("a"))) {
            MsgError(QStringLiteral("AddToPlayer failed! ") +
                     ErrSuffix(QStringLiteral("Permission denied: ") + commandFile));
            return false;
        }
    }
    if (!Shell().play(commandFile)) {
        SayNoProgramStarted(commandFile);
        return false;
    }
    return true;
}

}  // namespace td
