#include "songdb/JournalMode.h"
#include "shell/services/AppPaths.h"
#include "shell/services/FilePaths.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <sqlite3.h>
#include <sys/vfs.h>

namespace td {

namespace {

// statfs() f_type values of the kernel's network file systems; FUSE mounts all report one value.
constexpr quint32 kNfs = 0x6969;
constexpr quint32 kSmb = 0x517B;
constexpr quint32 kCifs = 0xFF534D42;
constexpr quint32 kSmb2 = 0xFE534D42;
constexpr quint32 kFuse = 0x65735546;
constexpr quint32 kOtherNetwork[] = {
    0x01021997,  // 9p
    0x00C36400,  // Ceph
    0x5346414F,  // AFS
    0x6B414653,  // kAFS
    0x73757245,  // Coda
    0x0000564C,  // NCP
    0x7461636F,  // OCFS2, a disk shared by several machines
    0x01161970,  // GFS2, the same
};

// FUSE file systems that reach another machine. "fuseblk" (NTFS and the like on a local disk) and
// the unknown ones count as local.
bool IsNetworkFuse(const QString& type)
{
    static const QStringList network = {
        QStringLiteral("fuse"),  // no subtype given: davfs2 and others of its age
        QStringLiteral("fuse.sshfs"),    QStringLiteral("fuse.rclone"),    QStringLiteral("fuse.s3fs"),
        QStringLiteral("fuse.gcsfuse"),  QStringLiteral("fuse.glusterfs"), QStringLiteral("fuse.ceph-fuse"),
        QStringLiteral("fuse.smbnetfs"), QStringLiteral("fuse.curlftpfs"), QStringLiteral("fuse.gvfsd-fuse"),
        QStringLiteral("fuse.davfs"),
    };
    return network.contains(type);
}

// mountinfo writes a space, tab, newline and backslash of a mount point as an octal escape.
QString UnescapeMountPoint(const QByteArray& field)
{
    QByteArray out;
    for (qsizetype i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && i + 3 < field.size()) {
            bool ok = false;
            const int code = field.mid(i + 1, 3).toInt(&ok, 8);
            if (ok) {
                out += char(code);
                i += 3;
                continue;
            }
        }
        out += field[i];
    }
    return QString::fromUtf8(out);
}

bool IsBelow(const QString& path, const QString& dir)
{
    if (dir == QLatin1String("/"))
        return path.startsWith(u'/');
    return path == dir || path.startsWith(dir + u'/');
}

// The type of the mount that holds path, from /proc/self/mountinfo: the deepest mount point above it.
QString MountTypeOf(const QString& path)
{
    QFile f(QStringLiteral("/proc/self/mountinfo"));
    if (!f.open(QIODevice::ReadOnly))
        return {};
    QString type;
    qsizetype deepest = -1;
    for (const QByteArray& line : f.readAll().split('\n')) {
        // id parent major:minor root mount-point options [optional fields] - type source super-options
        const QList<QByteArray> fields = line.split(' ');
        const qsizetype dash = fields.indexOf("-");
        if (fields.size() < 5 || dash < 0 || dash + 1 >= fields.size())
            continue;
        const QString mountPoint = UnescapeMountPoint(fields[4]);
        if (IsBelow(path, mountPoint) && mountPoint.size() >= deepest) {
            deepest = mountPoint.size();
            type = QString::fromUtf8(fields[dash + 1]);
        }
    }
    return type;
}

QString FirstText(sqlite3* db, const char* sql)
{
    sqlite3_stmt* st = nullptr;
    QString text;
    if (sqlite3_prepare_v2(db, sql, -1, &st, nullptr) == SQLITE_OK && sqlite3_step(st) == SQLITE_ROW)
        text = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 0)));
    sqlite3_finalize(st);
    return text;
}

}  // namespace

FileSystemKind FileSystemKindOfMagic(quint32 fsType, const QString& fuseType)
{
    switch (fsType) {
        case kNfs:
            return FileSystemKind::Nfs;
        case kSmb:
            return FileSystemKind::Smb;
        case kCifs:
            return FileSystemKind::Cifs;
        case kSmb2:
            return FileSystemKind::Smb2;
        case kFuse:
            if (fuseType == QLatin1String("fuse.sshfs"))
                return FileSystemKind::Sshfs;
            return IsNetworkFuse(fuseType) ? FileSystemKind::OtherNetwork : FileSystemKind::Local;
        default:
            break;
    }
    for (quint32 magic : kOtherNetwork)
        if (fsType == magic)
            return FileSystemKind::OtherNetwork;
    return FileSystemKind::Local;
}

FileSystemKind FileSystemKindOf(const QString& path)
{
    const QFileInfo info(path);
    QString target = info.exists() ? info.absoluteFilePath() : info.absolutePath();
    struct statfs fs {};
    if (statfs(QFile::encodeName(target).constData(), &fs) != 0)
        return FileSystemKind::Unknown;
    const quint32 magic = quint32(fs.f_type);
    if (magic != kFuse)
        return FileSystemKindOfMagic(magic);
    const QString canonical = QFileInfo(target).canonicalFilePath();
    return FileSystemKindOfMagic(magic, MountTypeOf(canonical.isEmpty() ? target : canonical));
}

JournalChoice ChooseJournal(FileSystemKind kind, const QString& path, const QString& networkRoot)
{
    if (kind != FileSystemKind::Local)
        return JournalChoice::RollbackJournal;
    QString p = path;
    p.replace(u'\\', u'/');
    if (p.startsWith(QLatin1String("//")))
        return JournalChoice::RollbackJournal;
    p = QDir::cleanPath(p);
    QString root = QDir::cleanPath(QString(networkRoot).replace(u'\\', u'/'));
    // An empty root, or the whole tree as root, would make every disk a share.
    if (!networkRoot.isEmpty() && root != QLatin1String("/") && p.startsWith(root + u'/'))
        return JournalChoice::RollbackJournal;
    return JournalChoice::WriteAheadLog;
}

void ApplyJournalMode(sqlite3* db, const QString& file)
{
    const QFileInfo info(file);
    JournalChoice choice = ChooseJournal(FileSystemKindOf(file), info.absoluteFilePath(), NetworkRoot());
    // A link from a local folder into the share mount counts as the share.
    const QString canonical = info.canonicalFilePath();
    if (!canonical.isEmpty() && choice == JournalChoice::WriteAheadLog)
        choice = ChooseJournal(FileSystemKind::Local, canonical, NetworkRoot());
    // This console's own KtvPublic folder is what the other machines of the site reach as a share:
    // a database in it is used over the network by them, so it keeps the journal that works there.
    const QString ownShare = QFileInfo(AppPath() + QStringLiteral("/KtvPublic")).canonicalFilePath();
    if (choice == JournalChoice::WriteAheadLog && !ownShare.isEmpty())
        choice = ChooseJournal(FileSystemKind::Local,
                               canonical.isEmpty() ? info.absoluteFilePath() : canonical, ownShare);
    const bool wal = choice == JournalChoice::WriteAheadLog;
    // The answer is the mode in force: the old one when the change was refused (the file is busy).
    const QString mode = FirstText(db, wal ? "PRAGMA journal_mode=WAL" : "PRAGMA journal_mode=DELETE");
    // NORMAL is safe only with the log: a commit can then be lost at a power cut, never corrupt the file.
    const bool logInForce = wal && mode.compare(QLatin1String("wal"), Qt::CaseInsensitive) == 0;
    sqlite3_exec(db, logInForce ? "PRAGMA synchronous=NORMAL" : "PRAGMA synchronous=FULL", nullptr, nullptr,
                 nullptr);
}

QString JournalModeOf(sqlite3* db)
{
    return FirstText(db, "PRAGMA journal_mode");
}

int SynchronousOf(sqlite3* db)
{
    return FirstText(db, "PRAGMA synchronous").toInt();
}

}  // namespace td
