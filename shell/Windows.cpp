#include "shell/Main.h"
#include "shell/mdiMain.h"
#include "songbook/frmSong.h"

namespace td {

void RegisterWindows()
{
    // The working windows register here as they are built; menus that reach a window not yet
    // registered say so.
    mdiMain::registerWindow(QStringLiteral("frmSong"), [](WindowFrame& frame) { return new frmSong(frame); });
}

}  // namespace td
