#include "shell/Main.h"
#include "shell/mdiMain.h"

namespace td {

void RegisterWindows()
{
    // The working windows register here as they are built; menus that reach a window not yet
    // registered say so.
}

}  // namespace td
