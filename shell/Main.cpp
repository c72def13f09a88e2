#include "shell/Main.h"
#include "config/frmDatabase.h"
#include "config/MixerAlsa.h"
#include "controls/QtDialogs.h"
#include "shell/TerminationSignals.h"
#include "shell/WindowsLog.h"
#include "shell/mdiMain.h"
#include "shell/services/AppError.h"
#include "shell/services/AppLog.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Translate.h"
#include "songdb/SongSession.h"
#include <QApplication>
#include <QIcon>
#include <QPixmap>
#include <QTimer>
#include <memory>

namespace td {
namespace {

QString& sessionUser()
{
    static QString user;
    return user;
}

// The frame of the run: made by the first ShowMainWindow, freed by FreeMainWindow.
std::unique_ptr<mdiMain>& mainWindow()
{
    static std::unique_ptr<mdiMain> frame;
    return frame;
}

void loginFailed()
{
    MsgError(TranslateText(QStringLiteral("Login failed")));
    AppTerminate();
}

// The logo's square middle stands for the program in title bars and task lists.
QIcon ProgramIcon()
{
    const QPixmap logo(AppPath() + QStringLiteral("/Region/English/Logo.jpg"));
    if (logo.isNull())
        return {};
    const int side = qMin(logo.width(), logo.height());
    return QIcon(logo.copy((logo.width() - side) / 2, (logo.height() - side) / 2, side, side));
}

// The console answers through message boxes for as long as it runs.
struct MessageBoxesForTheRun {
    QtDialogs boxes;
    MessageBoxesForTheRun() { SetDialogs(&boxes); }
    ~MessageBoxesForTheRun() { SetDialogs(nullptr); }
};

}  // namespace

QString SessionUser()
{
    return sessionUser();
}

bool RunDatabaseDialog()
{
    OwnerFrame owner(DialogOwner());
    frmDatabase dialog(owner);
    dialog.exec();
    return dialog.Ok;
}

bool DatabaseLogin()
{
    sessionUser().clear();
    for (;;) {
        if (SongOpenDatabase()) {
            sessionUser() = QStringLiteral("admin");
            return true;
        }
        // The open has shown its own message; the dialog comes after it.
        if (!RunDatabaseDialog())
            return false;
    }
}

void ShowMainWindow()
{
    if (!mainWindow())
        mainWindow() = std::make_unique<mdiMain>();
    mdiMain* frame = mainWindow().get();
    SetDialogOwner(frame);
    frame->show();
    frame->ShowWindow(QStringLiteral("frmSong"));
}

void ChangeDatabase()
{
    try {
        if (!RunDatabaseDialog())
            return;  // the running session goes on untouched
        CloseAllWindows();
        if (!DatabaseLogin()) {
            loginFailed();
            return;
        }
        ShowMainWindow();
    } catch (const std::exception& e) {
        // The change is left; the session stands as it is.
        qCWarning(lcWindows) << "change of database left:" << ErrorText(e);
    }
}

void CloseAllWindows()
{
    SongCloseDatabase();
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (auto it = windows.rbegin(); it != windows.rend(); ++it) {
        QWidget* w = *it;
        if (w->objectName() == QLatin1String("mdiMain")) {
            // The frame stays loaded with its menus and toolbar; its children go.
            auto* frame = static_cast<mdiMain*>(w);
            frame->CloseChildren();
            frame->hide();
        } else if (w->objectName() != QLatin1String("frmLogin") && w->isVisible()) {
            w->close();
        }
    }
}

void AppTerminate()
{
    SongCloseDatabase();
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (auto it = windows.rbegin(); it != windows.rend(); ++it) {
        QWidget* w = *it;
        auto* frame = qobject_cast<mdiMain*>(w);
        if (frame && frame->unloading())
            continue;  // already going
        if (w->isVisible() || frame)
            w->close();
    }
    AppLogEvent(QStringLiteral("Application Terminated"));
    QCoreApplication::quit();
}

void FreeMainWindow()
{
    mainWindow().reset();
}

int Main(int argc, char** argv)
{
    QApplication app(argc, argv);
    // The sound library's complaints about a missing card would reach the terminal; the console runs quiet.
    SilenceAlsaMessages();
    MessageBoxesForTheRun messageBoxes;
    // The frame goes after the database has closed and before the application does.
    struct MainWindowOfTheRun {
        ~MainWindowOfTheRun()
        {
            SongCloseDatabase();
            FreeMainWindow();
        }
    } mainWindowOfTheRun;
    QApplication::setApplicationName(AppTitle());
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setWindowIcon(ProgramIcon());
    RegisterWindows();
    AppLogSystemInfo();
    AppLogEvent(QStringLiteral("Application Started. Version=") + AppVersion());
    if (!DatabaseLogin()) {
        loginFailed();
        return 0;
    }
    ShowMainWindow();
    OnTerminationSignal([] { AppTerminate(); });
    QObject::connect(&app, &QApplication::lastWindowClosed, &app, [] {
        if (!MainFrame() || MainFrame()->unloading())
            QApplication::quit();
    });
    return app.exec();
}

}  // namespace td
