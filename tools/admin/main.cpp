// tunedesk-admin: creates song databases and demo installations, runs statements and searches through
// the same layer as the console, and runs the console's long jobs without a window. Each command is a
// file of its own in this folder.
#include "tools/admin/AdminCommand.h"
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <cstring>
#include <memory>
#include <unistd.h>

namespace {

// Without XDG_RUNTIME_DIR (cron, ssh) Qt makes its own runtime folder but says so on stderr, which would
// spoil the one line a command prints for bad input; make the same folder quietly first.
void EnsureRuntimeFolder()
{
    if (!qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR"))
        return;
    const QString dir = QDir::tempPath() + QStringLiteral("/runtime-") + QString::number(getuid());
    if (!QDir().mkpath(dir))
        return;
    QFile::setPermissions(dir, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(dir));
}

}  // namespace

int main(int argc, char** argv)
{
    // Printed pages lay out text, which needs the fonts of a GUI application; no screen is needed.
    const bool pages =
        argc > 1 && (std::strcmp(argv[1], "print") == 0 || std::strcmp(argv[1], "booklet") == 0);
    if (pages && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (pages)
        EnsureRuntimeFolder();
    std::unique_ptr<QCoreApplication> app;
    if (pages)
        app = std::make_unique<QGuiApplication>(argc, argv);
    else
        app = std::make_unique<QCoreApplication>(argc, argv);
    return td::admin::RunCommand(app->arguments().mid(1));
}
