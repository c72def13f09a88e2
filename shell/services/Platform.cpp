#include "shell/services/Platform.h"
#include "shell/services/Seam.h"
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>
#include <QStorageInfo>
#include <QSysInfo>
#include <sys/utsname.h>

namespace td {
namespace {

// File systems that hold no user files and so stand for no drive.
bool isPseudoFileSystem(const QByteArray& type)
{
    static const QList<QByteArray> pseudo = {
        "proc",       "sysfs",   "devtmpfs",    "devpts",  "cgroup",  "cgroup2",   "mqueue",   "tmpfs",
        "securityfs", "pstore",  "bpf",         "tracefs", "debugfs", "hugetlbfs", "configfs", "fusectl",
        "autofs",     "overlay", "binfmt_misc", "nsfs",    "ramfs",   "rpc_pipefs"};
    return pseudo.contains(type);
}

QString kdeFont()
{
    const QString file =
        QStandardPaths::locate(QStandardPaths::GenericConfigLocation, QStringLiteral("kdeglobals"));
    if (file.isEmpty())
        return {};
    QSettings kde(file, QSettings::IniFormat);
    const QString font = kde.value(QStringLiteral("General/font")).toString();
    return font.section(u',', 0, 0).trimmed();
}

QString gnomeFont()
{
    const QString gsettings = QStandardPaths::findExecutable(QStringLiteral("gsettings"));
    if (gsettings.isEmpty())
        return {};
    QProcess p;
    p.start(gsettings, {QStringLiteral("get"), QStringLiteral("org.gnome.desktop.interface"),
                        QStringLiteral("font-name")});
    if (!p.waitForFinished(2000) || p.exitCode() != 0)
        return {};
    // 'Cantarell 11': the family is what stands before the size.
    QString value = QString::fromUtf8(p.readAllStandardOutput()).trimmed();
    value.remove(u'\'');
    const qsizetype space = value.lastIndexOf(u' ');
    return space > 0 ? value.left(space).trimmed() : value;
}

class LinuxPlatform : public PlatformSeam {
public:
    QString computerName() override { return QSysInfo::machineHostName(); }

    OsVersion osVersion() override
    {
        OsVersion v;
        struct utsname u {};
        if (::uname(&u) == 0) {
            const QStringList parts = QString::fromLatin1(u.release).split(QLatin1Char('.'));
            v.major = parts.value(0).toInt();
            v.minor = parts.value(1).toInt();
            v.build = parts.value(2).section(QLatin1Char('-'), 0, 0).toInt();
        }
        v.csdVersion = QSysInfo::prettyProductName();
        return v;
    }

    QString desktopFontName() override
    {
        const QString kde = kdeFont();
        return kde.isEmpty() ? gnomeFont() : kde;
    }

    QStringList drives() override
    {
        QStringList out{QStringLiteral("/")};
        for (const QStorageInfo& s : QStorageInfo::mountedVolumes()) {
            if (!s.isValid() || isPseudoFileSystem(s.fileSystemType()))
                continue;
            if (!out.contains(s.rootPath()))
                out << s.rootPath();
        }
        return out;
    }

    QStringList opticalDrives() override
    {
        QStringList out;
        for (const QStorageInfo& s : QStorageInfo::mountedVolumes()) {
            const QByteArray type = s.fileSystemType();
            if (s.device().startsWith("/dev/sr") || s.device().startsWith("/dev/cdrom") ||
                type == "iso9660" || type == "udf")
                out << s.rootPath();
        }
        return out;
    }
};

}  // namespace

PlatformSeam& Platform()
{
    return Seam<PlatformSeam, LinuxPlatform>::get();
}

void SetPlatform(PlatformSeam* seam)
{
    Seam<PlatformSeam, LinuxPlatform>::install(seam);
}

}  // namespace td
