// tunedesk-admin: creates song databases and demo installations, runs statements and searches through
// the same layer as the console, and runs the console's long jobs without a window. Each command is a
// file of its own in this folder.
#include "tools/admin/AdminCommand.h"
#include <QCoreApplication>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    return td::admin::RunCommand(app.arguments().mid(1));
}
