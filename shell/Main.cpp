#include "shell/Main.h"
#include "shell/services/AppLog.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Translate.h"
#include <QApplication>

namespace td {

int Main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(AppTitle());
    AppLogSystemInfo();
    AppLogEvent(QStringLiteral("Application Started. Version=") + AppVersion());
    // The song database and the main window are not part of this build yet: say so and end in order.
    MsgInfo(TranslateText(QStringLiteral("Tunedesk ")) + AppVersion() + QStringLiteral("\n\n") +
            TranslateText(QStringLiteral("The song database and the main window are not available in this build yet.")));
    AppLogEvent(QStringLiteral("Application Terminated"));
    return 0;
}

}  // namespace td
