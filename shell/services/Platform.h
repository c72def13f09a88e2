#pragma once
#include <QString>
#include <QStringList>

namespace td {

struct OsVersion {
    int major = 0, minor = 0, build = 0, platformId = 0;
    QString csdVersion;
};

// Facts about the machine and desktop, behind one seam so tests can fix them.
class PlatformSeam {
public:
    virtual ~PlatformSeam() = default;
    virtual QString computerName() = 0;
    virtual OsVersion osVersion() = 0;
    // The desktop's configured general font family, or empty text when the desktop has none.
    virtual QString desktopFontName() = 0;
    // Mount points that stand in for drives, "/" first.
    virtual QStringList drives() = 0;
    // Mount points of optical drives (CD/DVD) that hold a disc.
    virtual QStringList opticalDrives() = 0;
};

PlatformSeam& Platform();
void SetPlatform(PlatformSeam* seam);

}  // namespace td
