#include "shell/services/JobHost.h"

namespace td {

bool JobStopWanted(JobHost& host)
{
    if (host.StopRequested())
        return true;
    if (!host.IsProcessCanceled())
        return false;
    if (host.Ask(QStringLiteral("Do you want to cancel the process?"), MsgButtons::YesNo) == MsgAnswer::Yes)
        return true;
    host.ResumeProcess();
    return false;
}

}  // namespace td
