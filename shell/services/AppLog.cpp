#include "shell/services/AppLog.h"
#include "shell/services/AppError.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Ini.h"
#include "shell/services/Platform.h"
#include <QDateTime>

namespace td {
namespace {

constexpr int kRingSize = 500;

QString eventLogFile()
{
    return AppPath() + QStringLiteral("/event.log");
}

void writeLogLine(const QString& label, const QString& text)
{
    const QString file = eventLogFile();
    long long index =
        IntegerValue(IniRead(file, QStringLiteral("Default"), QStringLiteral("Index"), QStringLiteral("0")));
    ++index;
    if (index > kRingSize || index < 1)
        index = 1;
    const QString key = QStringLiteral("%1").arg(index, 3, 10, QLatin1Char('0'));
    IniWrite(file, QStringLiteral("Default"), QStringLiteral("Index"), key);
    const QDateTime now = QDateTime::currentDateTime();
    const QString line = now.toString(QStringLiteral("yyyy/MM/dd HH:mm:ss")) + QStringLiteral("  App:") +
                         AppExeName() + QStringLiteral("  ") + label + text;
    IniWrite(file, QStringLiteral("Event"), key, line);
}

template <typename F>
void guarded(const char* failure, F&& body)
{
    try {
        body();
    } catch (const std::exception& e) {
        MsgError(QString::fromLatin1(failure) + ErrSuffix(e));
    }
}

}  // namespace

QString AppVersion()
{
    return QStringLiteral("%1.%2 Build %3")
        .arg(TUNEDESK_VERSION_MAJOR)
        .arg(TUNEDESK_VERSION_MINOR, 2, 10, QLatin1Char('0'))
        .arg(TUNEDESK_VERSION_PATCH, 4, 10, QLatin1Char('0'));
}

QString WindowsVersionText()
{
    const OsVersion v = Platform().osVersion();
    QString csd = v.csdVersion;
    const qsizetype nul = csd.indexOf(QChar(0));
    if (nul >= 0)
        csd.truncate(nul);
    return QStringLiteral("Major%1 Minor%2 Build%3 PlatformId%4 CSDVersion%5")
        .arg(v.major)
        .arg(v.minor)
        .arg(v.build)
        .arg(v.platformId)
        .arg(csd);
}

void AppLogSystemInfo()
{
    guarded("App log system information failed! ", [] {
        const QString file = eventLogFile();
        IniWrite(file, QStringLiteral("System"), QStringLiteral("Windows"), WindowsVersionText());
        IniWrite(file, QStringLiteral("System"), QStringLiteral("AppVersion"), AppVersion());
        IniWrite(file, QStringLiteral("System"), QStringLiteral("AppPath"), AppPath());
    });
}

void AppLogEvent(const QString& text)
{
    guarded("App Log Event failed! ", [&] { writeLogLine(QStringLiteral("Event:"), text); });
}

void AppLogError(const QString& text)
{
    guarded("App Log Error failed! ", [&] { writeLogLine(QStringLiteral("Error:"), text); });
}

}  // namespace td
