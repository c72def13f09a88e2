// tunedesk-admin: creates song databases and demo installations, runs statements and searches through
// the same layer as the console, and runs the console's long jobs without a window. Each command is a
// file of its own in this folder.
#include "tools/admin/AdminCommand.h"
#include <QCoreApplication>
#include <QGuiApplication>
#include <cstring>
#include <memory>

int main(int argc, char** argv)
{
    // Printed pages lay out text, which needs the fonts of a GUI application; no screen is needed.
    const bool pages =
        argc > 1 && (std::strcmp(argv[1], "print") == 0 || std::strcmp(argv[1], "booklet") == 0);
    if (pages && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    std::unique_ptr<QCoreApplication> app;
    if (pages)
        app = std::make_unique<QGuiApplication>(argc, argv);
    else
        app = std::make_unique<QCoreApplication>(argc, argv);
    return td::admin::RunCommand(app->arguments().mid(1));
}
