#include "support/QtApp.h"
#include <QApplication>

namespace td::test {

void EnsureQtApp()
{
    if (QApplication::instance())
        return;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "tunedesk-test";
    static char* argv[] = {name, nullptr};
    new QApplication(argc, argv);
}

}  // namespace td::test
