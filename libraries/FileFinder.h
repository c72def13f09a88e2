#pragma once
#include "shell/services/TextArray.h"
#include <QString>
#include <atomic>

namespace td {

// Attribute flags of the finder. 0 means the default 33 (read-only + archive). Here a file without write
// permission for its owner is read-only, and fifos, sockets and devices are system files.
enum FindAttr { ATTR_READONLY = 1, ATTR_HIDDEN = 2, ATTR_SYSTEM = 4, ATTR_DIRECTORY = 16, ATTR_ARCHIVE = 32 };

// Progress of a walk, for a progress dialog; the walk calls it after each directory.
struct FindProgress {
    virtual ~FindProgress() = default;
    // Queue position and length, the directory just read and the names found so far.
    virtual void step(qsizetype position, qsizetype queued, const QString& dir, qsizetype found) = 0;
};

// The cancel mark of a walk; the caller sets it from a progress dialog.
std::atomic_bool& FindCancelMark();
void SetFindProgress(FindProgress* progress);

// Full paths of the files below path whose names match pattern ("*.mpg;*.dat", no regard to case; empty
// means all), breadth first, names sorted without regard to case within each directory. subDepth 0 reads
// path alone, n descends n levels, -1 has no limit. Hidden files and directories (a name starting with
// "." or listed in the directory's ".hidden" file) are found and walked only with ATTR_HIDDEN. With
// ATTR_DIRECTORY the result is the direct subdirectories of path instead. attributes 0 becomes 33.
// False, with an empty list, when path is no directory.
bool FindFiles(const QString& path, const QString& pattern, int subDepth, TextArray& names, int& attributes);
// As FindFiles, with the names alone.
bool FindFileNames(const QString& path, const QString& pattern, int subDepth, TextArray& names,
                   int& attributes);
// The content of one directory for a browser: its subdirectories first, each marked by a leading "/"
// (no name can hold one), then its files unless attributes are exactly ATTR_DIRECTORY. An empty path
// gives the drives.
bool DirFileNames(const QString& path, const QString& pattern, TextArray& names, int& attributes);
// The directory above path, without a trailing "/" except for "/" itself; empty above "/".
QString GetParentPath(const QString& path);
// Mount points stand in for drives.
bool FindDrivers(TextArray& drivers);
bool IsDriver(const QString& drive);

}  // namespace td
