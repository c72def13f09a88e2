#pragma once
#include <QString>

namespace td::test {

// A file system of its own on a folder for the life of a test, so that a test meets a full disk, a
// read-only disk or a share that goes away as the console would. Mounting needs root (as CI runs);
// elsewhere works() is false and the test skips itself.
class MountedFolder {
public:
    enum class Kind {
        SmallDisk,  // an empty tmpfs of the given size
        ReadOnly,   // the folder's own content, seen read-only through a bind mount
    };
    MountedFolder(const QString& folder, Kind kind, qint64 sizeBytes = 0);
    ~MountedFolder();
    MountedFolder(const MountedFolder&) = delete;
    MountedFolder& operator=(const MountedFolder&) = delete;

    bool works() const { return mounted_; }
    QString why() const { return why_; }  // why the mount failed
    // Takes the file system away at once, even while files on it are open, as a lost share does.
    void unmount();

private:
    QString folder_;
    bool mounted_ = false;
    QString why_;
};

#define SKIP_UNLESS_MOUNTED(m) \
    if (!(m).works())          \
    GTEST_SKIP() << "cannot mount a file system here: " << qPrintable((m).why())

// Fills the file system that holds folder with one file until a write finds no room; answers the
// file's path (removing it frees the space again).
QString FillDisk(const QString& folder);

}  // namespace td::test
