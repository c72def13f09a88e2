#include "shell/services/Shell.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Ini.h"
#include "shell/services/Seam.h"
#include <QDir>
#include <QProcess>

namespace td {
namespace {

// Starts a configured command (program and arguments) on one file, detached from the console.
bool startOn(const QString& commandLine, const QString& file)
{
    QStringList args = QProcess::splitCommand(commandLine);
    if (args.isEmpty())
        return false;
    const QString program = args.takeFirst();
    args << file;
    return QProcess::startDetached(program, args);
}

class DesktopShell : public ShellSeam {
public:
    bool open(const QString& path) override { return startOn(QStringLiteral("xdg-open"), path); }
    bool play(const QString& commandFile) override
    {
        return startOn(AppIniRead(QStringLiteral("PlayerCommand"), QStringLiteral("xdg-open")), commandFile);
    }
    bool edit(const QString& textFile) override
    {
        return startOn(AppIniRead(QStringLiteral("EditorCommand"), QStringLiteral("xdg-open")), textFile);
    }
};

}  // namespace

ShellSeam& Shell()
{
    return Seam<ShellSeam, DesktopShell>::get();
}

void SetShell(ShellSeam* seam)
{
    Seam<ShellSeam, DesktopShell>::install(seam);
}

bool OpenInternetShortcut(const QString& location)
{
    const QString file = QDir::current().filePath(QStringLiteral("Internet.url"));
    IniWrite(file, QStringLiteral("InternetShortcut"), QStringLiteral("URL"), location);
    // Desktops here do not open .url files themselves, so the location the shortcut holds is opened.
    if (Shell().open(location))
        return true;
    SayNoProgramStarted(location);
    return false;
}

void SayNoProgramStarted(const QString& file)
{
    MsgError(QStringLiteral("No program could be started for <") + file +
             QStringLiteral(">. Check the program settings (PlayerCommand, EditorCommand) or the desktop's "
                            "default applications."));
}

}  // namespace td
