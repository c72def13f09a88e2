#include "shell/services/AppPaths.h"
#include <QCoreApplication>
#include <QFileInfo>

namespace td {
namespace {

QString& appPathOverride()
{
    static QString path;
    return path;
}

QString& exeNameOverride()
{
    static QString name;
    return name;
}

QString executablePath()
{
    if (QCoreApplication::instance())
        return QCoreApplication::applicationFilePath();
    return QFileInfo(QStringLiteral("/proc/self/exe")).symLinkTarget();
}

}  // namespace

QString AppPath()
{
    if (!appPathOverride().isEmpty())
        return appPathOverride();
    return QFileInfo(executablePath()).absolutePath();
}

void SetAppPath(const QString& dir)
{
    appPathOverride() = dir;
}

QString AppExeName()
{
    if (!exeNameOverride().isEmpty())
        return exeNameOverride();
    return QFileInfo(executablePath()).completeBaseName();
}

void SetAppExeName(const QString& name)
{
    exeNameOverride() = name;
}

}  // namespace td
