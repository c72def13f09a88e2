#include "libraries/DiscIdentity.h"
#include "libraries/FileFinder.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Seam.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>

namespace td {
namespace {

// SCSI peripheral type 5: a CD or DVD drive.
bool isOpticalBlockDevice(const QString& name)
{
    QFile type(QStringLiteral("/sys/block/") + name + QStringLiteral("/device/type"));
    if (!type.open(QIODevice::ReadOnly))
        return false;
    return type.readAll().trimmed() == "5";
}

QString mountPointOfDevice(const QString& device)
{
    const QString canonical = QFileInfo(device).canonicalFilePath();
    for (const QStorageInfo& s : QStorageInfo::mountedVolumes()) {
        const QString source = QString::fromLocal8Bit(s.device());
        if (source == device || (!canonical.isEmpty() && QFileInfo(source).canonicalFilePath() == canonical))
            return s.rootPath();
    }
    return {};
}

class MachineDiscDrives : public DiscDriveSeam {
public:
    QStringList drives() override
    {
        QStringList out;
        const QStringList blocks =
            QDir(QStringLiteral("/sys/block")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        for (const QString& name : blocks) {
            if (!isOpticalBlockDevice(name))
                continue;
            const QString device = QStringLiteral("/dev/") + name;
            const QString mounted = mountPointOfDevice(device);
            out << (mounted.isEmpty() ? device : mounted);
        }
        // Images mounted through a loop device are discs too.
        for (const QStorageInfo& s : QStorageInfo::mountedVolumes()) {
            const QByteArray type = s.fileSystemType();
            if ((type == "iso9660" || type == "udf") && !out.contains(s.rootPath()))
                out << s.rootPath();
        }
        return out;
    }

    QString rootOf(const QString& drive) override
    {
        if (QFileInfo(drive).isDir())
            return drive;
        const QString mounted = mountPointOfDevice(drive);
        return mounted.isEmpty() ? drive : mounted;
    }

    QString sectorsOf(const QString& drive) override
    {
        if (!QFileInfo(drive).isDir())
            return drive;
        return QString::fromLocal8Bit(QStorageInfo(drive).device());
    }
};

using DriveSeam = Seam<DiscDriveSeam, MachineDiscDrives>;

quint32 littleEndian32(const QByteArray& b, qsizetype at)
{
    return quint32(quint8(b[at])) | quint32(quint8(b[at + 1])) << 8 | quint32(quint8(b[at + 2])) << 16 |
           quint32(quint8(b[at + 3])) << 24;
}

// One directory record of an ISO 9660 directory.
struct DirRecord {
    QString name;
    quint32 extent = 0;
    quint32 size = 0;
    bool directory = false;
};

bool readSectors(QFile& disc, quint32 sector, quint32 bytes, QByteArray& out)
{
    if (!disc.seek(qint64(sector) * kDiscSectorSize))
        return false;
    out = disc.read(bytes);
    return out.size() == qint64(bytes);
}

DirRecord recordAt(const QByteArray& b, qsizetype at)
{
    DirRecord r;
    r.extent = littleEndian32(b, at + 2);
    r.size = littleEndian32(b, at + 10);
    r.directory = (quint8(b[at + 25]) & 0x02) != 0;
    const int nameLength = quint8(b[at + 32]);
    QString name = QString::fromLatin1(b.mid(at + 33, nameLength));
    // "AVSEQ01.DAT;1" is AVSEQ01.DAT; a name without extension keeps a lone dot ("MPEGAV." is rare).
    name = name.section(u';', 0, 0);
    if (name.endsWith(u'.'))
        name.chop(1);
    r.name = name;
    return r;
}

// The records of a directory, without its "." and ".." entries. Records never cross a sector.
bool readDirectory(QFile& disc, const DirRecord& dir, QList<DirRecord>& out)
{
    QByteArray b;
    if (dir.size > 64 * 1024 * 1024 || !readSectors(disc, dir.extent, dir.size, b))
        return false;
    qsizetype at = 0;
    while (at < b.size()) {
        const int length = quint8(b[at]);
        if (length == 0) {
            at = (at / kDiscSectorSize + 1) * kDiscSectorSize;
            continue;
        }
        if (length < 34 || at + length > b.size())
            return false;
        const int nameLength = quint8(b[at + 32]);
        if (!(nameLength == 1 && quint8(b[at + 33]) <= 1))
            out << recordAt(b, at);
        at += length;
    }
    return true;
}

}  // namespace

DiscDriveSeam& DiscDrives()
{
    return DriveSeam::get();
}

void SetDiscDrives(DiscDriveSeam* seam)
{
    DriveSeam::install(seam);
}

quint32 VolumeSerialOf(const QByteArray& descriptor)
{
    quint8 sums[4] = {0, 0, 0, 0};
    for (qsizetype i = 0; i < descriptor.size(); ++i)
        sums[i % 4] = quint8(sums[i % 4] + quint8(descriptor[i]));
    return quint32(sums[0]) << 24 | quint32(sums[1]) << 16 | quint32(sums[2]) << 8 | quint32(sums[3]);
}

QString DiscIdentityText(quint32 serial)
{
    return QString::number(serial, 16).toUpper();
}

bool ReadPrimaryDescriptor(const QString& sectors, QByteArray& descriptor, QString& error)
{
    QFile disc(sectors);
    if (sectors.isEmpty() || !disc.open(QIODevice::ReadOnly)) {
        error = QStringLiteral("Cannot read the disc in ") + sectors + u' ' + disc.errorString();
        return false;
    }
    if (!readSectors(disc, kPrimaryDescriptorSector, kDiscSectorSize, descriptor)) {
        error = QStringLiteral("The disc in ") + sectors + QStringLiteral(" has no volume descriptor");
        return false;
    }
    if (quint8(descriptor[0]) != 1 || descriptor.mid(1, 5) != "CD001") {
        error = QStringLiteral("The disc in ") + sectors + QStringLiteral(" is no ISO 9660 volume");
        return false;
    }
    return true;
}

bool DiscIdentityOf(const QString& drive, QString& identity, QString& error)
{
    QByteArray descriptor;
    if (!ReadPrimaryDescriptor(DiscDrives().sectorsOf(drive), descriptor, error))
        return false;
    identity = DiscIdentityText(VolumeSerialOf(descriptor));
    return true;
}

QString TrackFolderOf(const QString& root)
{
    return LinkFileByPath(root, QStringLiteral("MPEGAV"));
}

bool DiscTracks(const QString& root, TextArray& tracks)
{
    int attributes = 0;
    return FindFiles(TrackFolderOf(root), QStringLiteral("*.dat"), 0, tracks, attributes);
}

bool ImageTracks(const QString& sectors, QStringList& tracks, QString& error)
{
    QByteArray descriptor;
    if (!ReadPrimaryDescriptor(sectors, descriptor, error))
        return false;
    QFile disc(sectors);
    disc.open(QIODevice::ReadOnly);
    QList<DirRecord> top;
    if (!readDirectory(disc, recordAt(descriptor, 156), top)) {
        error = QStringLiteral("The root folder of ") + sectors + QStringLiteral(" cannot be read");
        return false;
    }
    for (const DirRecord& folder : top) {
        if (!folder.directory || folder.name.compare(QLatin1String("MPEGAV"), Qt::CaseInsensitive) != 0)
            continue;
        QList<DirRecord> files;
        if (!readDirectory(disc, folder, files)) {
            error = QStringLiteral("The MPEGAV folder of ") + sectors + QStringLiteral(" cannot be read");
            return false;
        }
        std::sort(files.begin(), files.end(), [](const DirRecord& a, const DirRecord& b) {
            return a.name.compare(b.name, Qt::CaseInsensitive) < 0;
        });
        for (const DirRecord& f : files)
            if (!f.directory && f.name.endsWith(QLatin1String(".dat"), Qt::CaseInsensitive))
                tracks << QStringLiteral("/") + folder.name + u'/' + f.name;
        return true;
    }
    error = QStringLiteral("No MPEGAV folder on ") + sectors;
    return false;
}

}  // namespace td
