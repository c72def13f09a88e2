#include "shell/services/FilePaths.h"
#include "shell/services/AppError.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Ini.h"
#include "shell/services/Platform.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <sys/stat.h>

namespace td {
namespace {

bool isSeparator(QChar c)
{
    return c == u'/' || c == u'\\';
}

QString withSlashes(QString path)
{
    return path.replace(u'\\', u'/');
}

}  // namespace

QString FileKind(const QString& path)
{
    if (path.isEmpty())
        return {};
    struct stat st {};
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return {};
    return S_ISDIR(st.st_mode) ? QStringLiteral("p") : QStringLiteral("f");
}

QString LinkFileByPath(const QString& dir, const QString& file)
{
    QString d = withSlashes(dir);
    QString f = withSlashes(file);
    if (d.endsWith(u'/'))
        d.chop(1);
    if (f.startsWith(u'/'))
        f.remove(0, 1);
    return d + u'/' + f;
}

QString ParentPath(const QString& path)
{
    // Everything before the last separator: "/a/b" gives "/a", and so does "/a/".
    for (int i = int(path.size()) - 1; i >= 0; --i)
        if (isSeparator(path[i]))
            return path.left(i);
    return {};
}

QString FileNameOf(const QString& path)
{
    QString p = path;
    while (p.endsWith(QChar(0)))
        p.chop(1);
    int cut = -1;
    for (int i = 0; i < p.size(); ++i)
        if (isSeparator(p[i]))
            cut = i;
    return p.mid(cut + 1);
}

QString BaseNameOf(const QString& path)
{
    const QString name = FileNameOf(path);
    const int dot = int(name.indexOf(u'.'));
    return dot < 0 ? name : name.left(dot);
}

QString ExtensionOf(const QString& name)
{
    const int dot = int(name.lastIndexOf(u'.'));
    return dot < 0 ? QString() : name.mid(dot);
}

QString NetworkRoot()
{
    QString root = AppIniRead(QStringLiteral("NetworkRoot"), QStringLiteral("/net"));
    while (root.size() > 1 && root.endsWith(u'/'))
        root.chop(1);
    return root;
}

QString NativePath(const QString& stored)
{
    QString p = withSlashes(stored);
    if (p.startsWith(QLatin1String("//"))) {
        QString rest = p.mid(2);
        while (rest.startsWith(u'/'))
            rest.remove(0, 1);
        return NetworkRoot() + u'/' + rest;
    }
    return p;
}

QString ShareHostOf(const QString& path)
{
    const QString p = withSlashes(path);
    QString rest;
    if (p.startsWith(QLatin1String("//"))) {
        rest = p.mid(2);
    } else {
        const QString root = NetworkRoot() + u'/';
        if (!p.startsWith(root))
            return {};
        rest = p.mid(root.size());
    }
    return rest.section(u'/', 0, 0, QString::SectionSkipEmpty);
}

QString ComputerName()
{
    // The name came through a buffer of 16 characters.
    return Platform().computerName().left(15);
}

bool IsCdromDrive(const QString& driveRoot)
{
    QString root = withSlashes(driveRoot);
    while (root.size() > 1 && root.endsWith(u'/'))
        root.chop(1);
    return Platform().opticalDrives().contains(root);
}

}  // namespace td
