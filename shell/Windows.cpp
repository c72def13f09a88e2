#include "config/frmOptions.h"
#include "exchange/frmImportLib.h"
#include "libraries/frmLibMana.h"
#include "regions/frmAvailableRegion.h"
#include "regions/frmDefaultRegion.h"
#include "regions/frmGlobeRegion.h"
#include "shell/Main.h"
#include "shell/mdiMain.h"
#include "songbook/frmSong.h"

namespace td {

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
    mdiMain::registerWindow(QStringLiteral("frmLibMana"),
                            [](WindowFrame& frame) { return new frmLibMana(frame); });
    // The library manager's "update songbook" opens the import wizard over the frame.
    frmLibMana::SetImportWizard([](QWidget* owner, const QString& root) { ShowImportLibrary(root, owner); });
}

}  // namespace td
