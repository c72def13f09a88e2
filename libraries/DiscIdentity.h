#pragma once
#include "shell/services/TextArray.h"
#include <QByteArray>
#include <QString>
#include <QStringList>

namespace td {

// The optical drives of the machine and what a disc in one of them is, behind one seam so tests can
// hand in a folder as the disc's files and an image file as its sectors.
class DiscDriveSeam {
public:
    virtual ~DiscDriveSeam() = default;
    // The drives, each by its mount point, or by its device while no disc is mounted from it.
    virtual QStringList drives() = 0;
    // Where the files of the drive's disc stand now: its mount point; for a device with no disc
    // mounted, the device itself (no folder, so the caller asks for a disc).
    virtual QString rootOf(const QString& drive) = 0;
    // The device or image whose sectors are the disc: the drive itself when it is one, else the
    // source of the file system mounted at it.
    virtual QString sectorsOf(const QString& drive) = 0;
};

DiscDriveSeam& DiscDrives();
// nullptr brings the machine's own drives back. The caller keeps ownership.
void SetDiscDrives(DiscDriveSeam* seam);

constexpr qint64 kDiscSectorSize = 2048;
constexpr qint64 kPrimaryDescriptorSector = 16;

// The volume serial number of a disc, as the other platform's file system driver makes it from the
// primary volume descriptor: four byte sums modulo 256, one for each byte position modulo 4, joined
// from the first (high byte) to the fourth.
quint32 VolumeSerialOf(const QByteArray& descriptor);
// A serial as the name of the disc's directory: upper-case hexadecimal without leading zeros.
QString DiscIdentityText(quint32 serial);

// The 2,048 bytes of sector 16 of a device or image; false with a reason in error when they cannot
// be read or are no ISO 9660 volume descriptor.
bool ReadPrimaryDescriptor(const QString& sectors, QByteArray& descriptor, QString& error);
// The identity of the disc in a drive, as DiscIdentityText writes it.
bool DiscIdentityOf(const QString& drive, QString& identity, QString& error);

// The folder of a Video CD's tracks below the root of its disc.
QString TrackFolderOf(const QString& root);
// The tracks of a Video CD whose files stand at root: the "*.dat" files of its MPEGAV folder. False
// when there is no such folder.
bool DiscTracks(const QString& root, TextArray& tracks);
// The tracks read from the sectors of an image or device without mounting it, as paths inside the
// disc ("/MPEGAV/AVSEQ01.DAT"). False, with a reason, when the image has no MPEGAV folder.
bool ImageTracks(const QString& sectors, QStringList& tracks, QString& error);

}  // namespace td
