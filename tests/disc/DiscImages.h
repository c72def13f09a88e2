#pragma once
#include "libraries/DiscIdentity.h"
#include <QHash>
#include <QString>
#include <QStringList>
#include <utility>

namespace td::test {

// Drives whose discs are a folder of files and an image beside it for the sectors: the way a test
// holds a disc where it cannot mount one. Installs itself for the life of the object.
class FakeDiscDrives : public DiscDriveSeam {
public:
    FakeDiscDrives() { SetDiscDrives(this); }
    ~FakeDiscDrives() override { SetDiscDrives(nullptr); }

    // A drive that holds the disc whose files are root and whose sectors are image.
    void insert(const QString& drive, const QString& root, const QString& image)
    {
        if (!list.contains(drive))
            list << drive;
        roots[drive] = root;
        sectors[drive] = image;
    }

    QStringList drives() override { return list; }
    QString rootOf(const QString& drive) override { return roots.value(drive, drive); }
    QString sectorsOf(const QString& drive) override { return sectors.value(drive, drive); }

    QStringList list;
    QHash<QString, QString> roots;
    QHash<QString, QString> sectors;
};

using Track = std::pair<QString, QByteArray>;

// Whether xorriso is there to make images.
bool CanMakeImages();
// Makes an ISO 9660 image of a folder that holds the given files (paths relative to the disc's root,
// "MPEGAV/AVSEQ01.DAT"), with fixed dates, so the same content always gives the same image. The
// folder stays as the disc's files; answers the image's path, or empty text when xorriso failed.
QString MakeDiscImage(const QString& folder, const QList<Track>& files, const QString& volumeId,
                      const QString& image);

}  // namespace td::test
