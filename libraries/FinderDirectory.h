#pragma once
#include <QString>
#include <QStringList>
#include <sys/types.h>

namespace td {
class Wildcard;
}

namespace td::finder {

// What one read of a directory keeps. Hidden entries (a name starting with "." or listed in the
// directory's ".hidden" file) only with the hidden flag; files without write permission only with
// the read-only flag; fifos, sockets and devices, which stand in for system files, only with the
// system flag. Patterns apply to files; no patterns means no files are wanted.
struct EntryFilter {
    const Wildcard* patterns = nullptr;
    int attributes = 0;
};

struct DirContent {
    bool opened = false;
    dev_t device = 0;  // identity of the directory, so a walk can tell a directory it saw before
    ino_t inode = 0;
    QStringList files;  // names, sorted without regard to case
    QStringList dirs;
};

DirContent ReadDirectory(const QString& dir, const EntryFilter& filter);

}  // namespace td::finder
