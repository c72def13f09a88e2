#include "controls/UiYield.h"
#include <QCoreApplication>

namespace td {

void UiYield::now()
{
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
