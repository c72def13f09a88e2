#pragma once
#include "shell/services/Platform.h"

namespace td::test {

// A machine with fixed facts; installs itself for the life of the object.
class FakePlatform : public PlatformSeam {
public:
    FakePlatform() { SetPlatform(this); }
    ~FakePlatform() override { SetPlatform(nullptr); }

    QString name = QStringLiteral("KTV-CONSOLE-01");
    OsVersion version{6, 1, 76, 2, QStringLiteral("Debian 12")};
    QString font;
    QStringList mounts{QStringLiteral("/")};
    QStringList optical;

    QString computerName() override { return name; }
    OsVersion osVersion() override { return version; }
    QString desktopFontName() override { return font; }
    QStringList drives() override { return mounts; }
    QStringList opticalDrives() override { return optical; }
};

}  // namespace td::test
