#include "libraries/FinderDirectory.h"
#include "libraries/FileFinder.h"
#include "shell/services/Wildcard.h"
#include <QFile>
#include <QSet>
#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace td::finder {
namespace {

enum class EntryKind { File, Directory, Special, Gone };

class OpenDir {
public:
    explicit OpenDir(const QString& path)
    {
        const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (fd >= 0 && !(dir_ = ::fdopendir(fd)))
            ::close(fd);
    }
    ~OpenDir()
    {
        if (dir_)
            ::closedir(dir_);
    }
    OpenDir(const OpenDir&) = delete;
    OpenDir& operator=(const OpenDir&) = delete;

    DIR* get() const { return dir_; }
    int fd() const { return ::dirfd(dir_); }

private:
    DIR* dir_ = nullptr;
};

// The names a desktop hides in this directory: one name a line in its ".hidden" file.
QSet<QByteArray> HiddenList(int dirFd)
{
    QSet<QByteArray> names;
    const int fd = ::openat(dirFd, ".hidden", O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return names;
    QFile file;
    if (file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        for (QByteArray line : file.readAll().split('\n')) {
            if (line.endsWith('\r'))
                line.chop(1);
            if (!line.isEmpty())
                names.insert(line);
        }
    } else {
        ::close(fd);
    }
    return names;
}

// The type from the directory entry where it is known; a link or an unknown type is looked up,
// following the link, so a link counts as what it points to.
EntryKind KindOf(int dirFd, const dirent* entry)
{
    switch (entry->d_type) {
        case DT_REG:
            return EntryKind::File;
        case DT_DIR:
            return EntryKind::Directory;
        case DT_LNK:
        case DT_UNKNOWN:
            break;
        default:
            return EntryKind::Special;
    }
    struct stat st;
    if (::fstatat(dirFd, entry->d_name, &st, 0) != 0)
        return EntryKind::Gone;
    if (S_ISREG(st.st_mode))
        return EntryKind::File;
    return S_ISDIR(st.st_mode) ? EntryKind::Directory : EntryKind::Special;
}

bool IsReadOnly(int dirFd, const char* name)
{
    struct stat st;
    return ::fstatat(dirFd, name, &st, 0) == 0 && !(st.st_mode & S_IWUSR);
}

bool IsHidden(const char* name, const QSet<QByteArray>& hiddenList)
{
    return name[0] == '.' || (!hiddenList.isEmpty() && hiddenList.contains(QByteArray(name)));
}

bool IsDotOrDotDot(const char* name)
{
    return name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0));
}

bool WantsFile(int dirFd, const dirent* entry, EntryKind kind, int attributes)
{
    if (kind == EntryKind::Special)
        return attributes & ATTR_SYSTEM;
    // Write permission needs a look at the inode, so only when read-only files are to be left out.
    return (attributes & ATTR_READONLY) || !IsReadOnly(dirFd, entry->d_name);
}

void SortNames(QStringList& names)
{
    std::sort(names.begin(), names.end(), [](const QString& a, const QString& b) {
        const int c = a.compare(b, Qt::CaseInsensitive);
        return c != 0 ? c < 0 : a < b;
    });
}

}  // namespace

DirContent ReadDirectory(const QString& dir, const EntryFilter& filter)
{
    DirContent content;
    OpenDir handle(dir);
    if (!handle.get())
        return content;
    const int dirFd = handle.fd();
    struct stat self;
    if (::fstat(dirFd, &self) == 0) {
        content.device = self.st_dev;
        content.inode = self.st_ino;
    }
    content.opened = true;

    const bool showHidden = filter.attributes & ATTR_HIDDEN;
    const QSet<QByteArray> hiddenList = showHidden ? QSet<QByteArray>() : HiddenList(dirFd);
    while (const dirent* entry = ::readdir(handle.get())) {
        if (IsDotOrDotDot(entry->d_name))
            continue;
        if (!showHidden && IsHidden(entry->d_name, hiddenList))
            continue;
        const EntryKind kind = KindOf(dirFd, entry);
        if (kind == EntryKind::Directory) {
            content.dirs.append(QFile::decodeName(entry->d_name));
        } else if (kind != EntryKind::Gone && filter.patterns &&
                   WantsFile(dirFd, entry, kind, filter.attributes)) {
            QString name = QFile::decodeName(entry->d_name);
            if (filter.patterns->matches(name))
                content.files.append(std::move(name));
        }
    }
    SortNames(content.files);
    SortNames(content.dirs);
    return content;
}

}  // namespace td::finder
