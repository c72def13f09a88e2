#pragma once
#include <QString>

namespace td {

// The program directory: where the executable lies, unless a test or tool pointed it elsewhere.
// Format files, Region/, KtvPublic/, Singer/, reports, event.log and the application INI lie there.
QString AppPath();
void SetAppPath(const QString& dir);

// The executable's name without extension ("tunedesk"); tests may override it.
QString AppExeName();
void SetAppExeName(const QString& name);

}  // namespace td
