#include "booklet/frmBooklet.h"
#include "checks/frmCheckBook.h"
#include "checks/frmPrint.h"
#include "config/frmOptions.h"
#include "exchange/frmExportBook.h"
#include "exchange/frmImportBook.h"
#include "exchange/frmImportLib.h"
#include "libraries/frmCopyDisc.h"
#include "libraries/frmLibMana.h"
#include "regions/frmAvailableRegion.h"
#include "regions/frmDefaultRegion.h"
#include "regions/frmGlobeRegion.h"
#include "shell/Main.h"
#include "shell/mdiMain.h"
#include "singers/frmSinger.h"
#include "songbook/frmSong.h"
#include <QTimer>

namespace td {

namespace {

// Each track the disc copy puts into a library becomes a song through the songbook, opened if need be.
// A songbook that is still reading its list takes the tracks once it has it, in the order they came.
int AddCopiedTracks(const TextArray& files)
{
    mdiMain* main = MainFrame();
    if (!main)
        return 0;
    auto* song = qobject_cast<frmSong*>(main->child(QStringLiteral("frmSong")));
    if (!song) {
        song = qobject_cast<frmSong*>(main->ShowWindow(QStringLiteral("frmSong")));
        if (song)
            song->LoadData();
    }
    if (!song)
        return 0;
    if (song->ListLoading()) {
        QTimer::singleShot(50, song, [files] { AddCopiedTracks(files); });
        return 0;
    }
    return song->AddFiles(files);
}

}  // namespace

void RegisterWindows()
{
    // The working windows register here as they are built; menus that reach a window not yet
    // registered say so.
    mdiMain::registerWindow(QStringLiteral("frmSong"), [](WindowFrame& frame) { return new frmSong(frame); });
    mdiMain::registerWindow(QStringLiteral("frmAvailableRegion"),
                            [](WindowFrame& frame) { return new frmAvailableRegion(frame); });
    mdiMain::registerWindow(QStringLiteral("frmGlobeRegion"),
                            [](WindowFrame& frame) { return new frmGlobeRegion(frame); });
    mdiMain::registerWindow(QStringLiteral("frmDefaultRegion"),
                            [](WindowFrame& frame) { return new frmDefaultRegion(frame); });
    mdiMain::registerWindow(QStringLiteral("frmOptions"),
                            [](WindowFrame& frame) { return new frmOptions(frame); });
    mdiMain::registerWindow(QStringLiteral("frmImportBook"),
                            [](WindowFrame& frame) { return new frmImportBook(frame); });
    mdiMain::registerWindow(QStringLiteral("frmExportBook"),
                            [](WindowFrame& frame) { return new frmExportBook(frame); });
    mdiMain::registerWindow(QStringLiteral("frmLibMana"),
                            [](WindowFrame& frame) { return new frmLibMana(frame); });
    mdiMain::registerWindow(QStringLiteral("frmSinger"), [](WindowFrame& frame) { return new frmSinger(frame); });
    mdiMain::registerWindow(QStringLiteral("frmCheckBook"),
                            [](WindowFrame& frame) { return new frmCheckBook(frame); });
    mdiMain::registerWindow(QStringLiteral("frmPrint"), [](WindowFrame& frame) { return new frmPrint(frame); });
    mdiMain::registerWindow(QStringLiteral("frmBooklet"),
                            [](WindowFrame& frame) { return new frmBooklet(frame); });
    // The library manager's "update songbook" opens the import wizard over the frame.
    frmLibMana::SetImportWizard([](QWidget* owner, const QString& root) { ShowImportLibrary(root, owner); });
    mdiMain::registerWindow(QStringLiteral("frmCopyDisc"),
                            [](WindowFrame& frame) { return new frmCopyDisc(frame); });
    frmCopyDisc::SetAddFiles(AddCopiedTracks);
}

}  // namespace td
