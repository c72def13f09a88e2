#pragma once
#include "shell/services/TextArray.h"
#include <QString>
#include <atomic>

class QWidget;

namespace td {

// Attribute flags of the finder. 0 means the default 33 (read-only + archive).
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

bool FindFiles(const QString& path, const QString& pattern, int subDepth, TextArray& names, int& attributes);
bool FindFileNames(const QString& path, const QString& pattern, int subDepth, TextArray& names, int& attributes);
bool DirFileNames(const QString& path, const QString& pattern, TextArray& names, int& attributes);
QString GetParentPath(const QString& path);
bool FindDrivers(TextArray& drivers);
bool IsDriver(const QString& drive);
bool BrowseFile(const QString& initDir, const QString& filter, TextArray& names);
QString BrowsePath(QWidget* owner);

}  // namespace td
