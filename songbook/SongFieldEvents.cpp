// What the property editor's edits and field buttons do.
#include "controls/ctlDataFields.h"
#include "shell/services/Dialogs.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Translate.h"
#include "songbook/frmSong.h"
#include "songdb/CatalogueLookups.h"
#include "songdb/SongStatements.h"

namespace td {

namespace {

QString MediaFilter()
{
    const QString types =
        SongReadValue(QString(), QStringLiteral("FileType"), QStringLiteral("*.vob;*.dat;*.mp3;*.avi"));
    return TranslateText(QStringLiteral("Media files")) + u'(' + types + QStringLiteral(")|") + types +
           QStringLiteral("|All Files(*.*)|*.*");
}

}  // namespace

// A new title brings its length along, spaces counted.
void frmSong::ctlFields_AfterValueChanged(int index, const QString& newValue)
{
    if (ctlFields_->GetField(index, QStringLiteral("field")).toString().toLower() != u"title")
        return;
    const int chars = ctlFields_->GetFieldIndex(QStringLiteral("chars"));
    ctlFields_->SetField(chars, QStringLiteral("value"), QString::number(newValue.size()));
}

void frmSong::ctlFields_Click(int index)
{
    const QString field = ctlFields_->GetField(index, QStringLiteral("field")).toString().toLower();
    if (field == u"index")
        IndexItems();
    else if (field == u"chars")
        RecountChars();
    else if (field == u"singer")
        showWindow("frmSinger");
    else if (field == u"region")
        showWindow("frmAvailableRegion");
    else if (field == u"order_time")
        ctlFields_->SetField(index, QStringLiteral("value"), 0);
    else if (field == u"library")
        showWindow("frmLibMana");
    else if (field == u"media_file")
        pickMediaFile();
}

void frmSong::showWindow(const char* name)
{
    Frame().showWindow(QString::fromLatin1(name));
}

// The file must lie in a library: the song keeps its library root and the path below it.
void frmSong::pickMediaFile()
{
    const int libraryField = ctlFields_->GetFieldIndex(QStringLiteral("library"));
    const int mediaField = ctlFields_->GetFieldIndex(QStringLiteral("media_file"));
    OpenFileRequest request;
    request.title = TranslateText(QStringLiteral("Select media file"));
    request.initialDir = NativePath(ctlFields_->GetField(libraryField, QStringLiteral("value")).toString());
    request.filter = MediaFilter();
    const QStringList chosen = Dialogs().openFiles(request);
    if (chosen.isEmpty() || chosen.first().isEmpty())
        return;
    QString rest = chosen.first(), library;
    if (!GetLocalPath(rest, library, true)) {
        MsgError(QStringLiteral("The selected file < ") + chosen.first() +
                 QStringLiteral(" > is out of all libraries, the player can't play it!"));
        return;
    }
    ctlFields_->SetField(mediaField, QStringLiteral("value"), rest);
    ctlFields_->SetField(libraryField, QStringLiteral("value"), library);
}

}  // namespace td
