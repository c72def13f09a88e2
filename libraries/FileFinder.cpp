#include "libraries/FileFinder.h"
#include "libraries/FinderDirectory.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Platform.h"
#include "shell/services/Wildcard.h"
#include <QDir>
#include <QStringBuilder>
#include <set>
#include <utility>
#include <vector>

namespace td {
namespace {

using finder::DirContent;
using finder::EntryFilter;
using finder::ReadDirectory;

FindProgress* g_progress = nullptr;

QString JoinPath(const QString& dir, const QString& name)
{
    return dir.endsWith(u'/') ? dir + name : QString(dir % u'/' % name);
}

void AppendPaths(TextArray& names, const QString& dir, const QStringList& entries)
{
    for (const QString& entry : entries)
        AppendItem(names, JoinPath(dir, entry));
}

struct QueuedDir {
    QString path;
    int depth;
};

// Walks the directories below the root first in, first out, so the walk is breadth first. A directory
// reached a second time (through a link) is not read again, so a link loop ends.
void WalkBelow(const QString& root, const DirContent& rootContent, int subDepth, const EntryFilter& filter,
               TextArray& names)
{
    std::set<std::pair<dev_t, ino_t>> seen{{rootContent.device, rootContent.inode}};
    std::vector<QueuedDir> queue;
    for (const QString& dir : rootContent.dirs)
        queue.push_back({JoinPath(root, dir), 1});

    for (size_t position = 0; position < queue.size(); ++position) {
        const QueuedDir entry = queue[position];  // a copy: the queue grows below
        const DirContent content = ReadDirectory(entry.path, filter);
        if (content.opened && seen.insert({content.device, content.inode}).second) {
            if (subDepth < 0 || entry.depth < subDepth)
                for (const QString& dir : content.dirs)
                    queue.push_back({JoinPath(entry.path, dir), entry.depth + 1});
            AppendPaths(names, entry.path, content.files);
        }
        if (g_progress)
            g_progress->step(qsizetype(position + 1), qsizetype(queue.size()), entry.path, UBound(names));
        if (FindCancelMark())
            break;
    }
}

void KeepFileNamesOnly(TextArray& names)
{
    for (qsizetype i = 1; i < names.size(); ++i)
        names[i] = names[i].mid(names[i].lastIndexOf(u'/') + 1);
}

QString WithoutTrailingSlash(const QString& path)
{
    return path.size() > 1 && path.endsWith(u'/') ? path.chopped(1) : path;
}

}  // namespace

std::atomic_bool& FindCancelMark()
{
    static std::atomic_bool mark{false};
    return mark;
}

void SetFindProgress(FindProgress* progress)
{
    g_progress = progress;
}

bool FindFiles(const QString& path, const QString& pattern, int subDepth, TextArray& names, int& attributes)
{
    names = NewTextArray();
    if (FileKind(path) != QLatin1String("p"))
        return false;
    if (attributes == 0)
        attributes = ATTR_READONLY | ATTR_ARCHIVE;

    if (attributes & ATTR_DIRECTORY) {
        AppendPaths(names, path, ReadDirectory(path, EntryFilter{nullptr, attributes}).dirs);
        return true;
    }

    const Wildcard patterns(pattern);
    const EntryFilter filter{&patterns, attributes};
    const DirContent rootContent = ReadDirectory(path, filter);
    AppendPaths(names, path, rootContent.files);
    if (subDepth == 0)
        return true;

    FindCancelMark() = false;
    WalkBelow(path, rootContent, subDepth, filter, names);
    return true;
}

bool FindFileNames(const QString& path, const QString& pattern, int subDepth, TextArray& names,
                   int& attributes)
{
    const bool ran = FindFiles(path, pattern, subDepth, names, attributes);
    KeepFileNamesOnly(names);
    return ran;
}

bool DirFileNames(const QString& path, const QString& pattern, TextArray& names, int& attributes)
{
    names = NewTextArray();
    if (path.isEmpty())
        return FindDrivers(names);

    TextArray found;
    int directoriesOnly = ATTR_DIRECTORY;
    FindFileNames(path, pattern, 0, found, directoriesOnly);
    for (qsizetype i = 1; i < found.size(); ++i)
        AppendItem(names, u'/' + found[i]);
    if (attributes == ATTR_DIRECTORY)
        return true;

    FindFileNames(path, pattern, 0, found, attributes);
    names += found.mid(1);
    return true;
}

QString GetParentPath(const QString& path)
{
    if (path.isEmpty())
        return {};
    const QString clean = QDir::cleanPath(QDir(path).absolutePath());
    const qsizetype cut = clean.lastIndexOf(u'/');
    if (clean == QLatin1String("/") || cut < 0)
        return {};
    return cut == 0 ? QStringLiteral("/") : clean.left(cut);
}

bool FindDrivers(TextArray& drivers)
{
    drivers = NewTextArray();
    for (const QString& drive : Platform().drives())
        AppendItem(drivers, drive);
    return true;
}

bool IsDriver(const QString& drive)
{
    const QString wanted = WithoutTrailingSlash(drive);
    for (const QString& known : Platform().drives())
        if (WithoutTrailingSlash(known) == wanted)
            return true;
    return false;
}

}  // namespace td
