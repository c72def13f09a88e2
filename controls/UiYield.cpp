#include "controls/UiYield.h"
#include "shell/services/LongJobs.h"
#include <QCoreApplication>

namespace td {

void UiYield::now()
{
    JobYieldScope job;
    QCoreApplication::processEvents();
    timer_.restart();
}

bool UiYield::ifDue()
{
    if (!due())
        return false;
    now();
    return true;
}

}  // namespace td
