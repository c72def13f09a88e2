#include "shell/services/FilePaths.h"
#include "shell/services/Wildcard.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSet>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace td {
namespace {

const QString kHiddenList = QStringLiteral(".hidden");

QStringList readHiddenList(const QString& dir)
{
    QFile f(dir + u'/' + kHiddenList);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(f.readAll()).split(u'\n', Qt::SkipEmptyParts);
}

bool writeHiddenList(const QString& dir, const QStringList& names)
{
    const QString path = dir + u'/' + kHiddenList;
    if (names.isEmpty())
        return !QFileInfo::exists(path) || QFile::remove(path);
    return ReplaceFileContents(path, names.join(u'\n').toUtf8() + '\n', true);
}

}  // namespace

// The temporary has a name from the start: an unnamed one (O_TMPFILE, as QSaveFile makes) is linked in
// through /proc, which a process acting as another user may not do.
bool ReplaceFileContents(const QString& path, const QByteArray& bytes, bool flush)
{
    const QByteArray target = QFile::encodeName(path);
    QByteArray temp;
    int fd = -1;
    for (int attempt = 0; fd < 0 && attempt < 16; ++attempt) {
        temp = target + '.' + QByteArray::number(QRandomGenerator::global()->generate(), 36);
        fd = ::open(temp.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd < 0 && errno != EEXIST)
            return false;
    }
    if (fd < 0)
        return false;
    bool ok = ::fchmod(fd, 0644) == 0;
    for (qsizetype done = 0; ok && done < bytes.size();) {
        const ssize_t n = ::write(fd, bytes.constData() + done, size_t(bytes.size() - done));
        if (n < 0 && errno == EINTR)
            continue;
        ok = n > 0;
        done += ok ? n : 0;
    }
    ok = ok && (!flush || ::fsync(fd) == 0);
    ok = ::close(fd) == 0 && ok;
    ok = ok && ::rename(temp.constData(), target.constData()) == 0;
    if (!ok)
        ::unlink(temp.constData());
    return ok;
}

namespace {

bool hasWildcard(const QString& name)
{
    return name.contains(u'*') || name.contains(u'?');
}

// The paths a source stands for: itself, or the entries of its folder that match its last part.
QStringList expandSource(const QString& source)
{
    const QString name = FileNameOf(source);
    if (!hasWildcard(name))
        return FileKind(source).isEmpty() ? QStringList() : QStringList{source};
    const QString dir = ParentPath(source).isEmpty() ? QStringLiteral("/") : ParentPath(source);
    const Wildcard pattern(name);
    QStringList out;
    const auto entries = QDir(dir).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase);
    for (const QString& entry : entries)
        if (entry != kHiddenList && pattern.matches(entry))
            out << LinkFileByPath(dir, entry);
    return out;
}

bool copyFileOver(const QString& from, const QString& to)
{
    if (QFileInfo::exists(to) && !QFile::remove(to))
        return false;
    if (!QFile::copy(from, to))
        return false;
    if (IsFileHidden(from) && !FileNameOf(from).startsWith(u'.'))
        SetFileHidden(to);
    return true;
}

bool copyTree(const QString& from, const QString& to)
{
    if (FileKind(from) != QLatin1String("p"))
        return copyFileOver(from, to);
    if (!QDir().mkpath(to))
        return false;
    bool ok = true;
    const auto entries =
        QDir(from).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QString& entry : entries)
        ok = copyTree(from + u'/' + entry, to + u'/' + entry) && ok;
    return ok;
}

bool removeTree(const QString& path)
{
    if (FileKind(path) == QLatin1String("p"))
        return QDir(path).removeRecursively();
    if (IsFileHidden(path))
        SetFileHidden(path, false);
    return QFile::remove(path);
}

bool moveTree(const QString& from, const QString& to)
{
    const bool hidden = FileKind(from) == QLatin1String("f") && IsFileHidden(from);
    if (FileKind(to) == QLatin1String("f"))
        QFile::remove(to);
    if (QDir().rename(from, to)) {
        if (hidden) {
            SetFileHidden(from, false);
            SetFileHidden(to);
        }
        return true;
    }
    // Another file system: copy, then remove the original.
    return copyTree(from, to) && removeTree(from);
}

bool copyOrMove(int op, const QStringList& sources, const QString& target, bool intoFolder)
{
    const QString targetDir = intoFolder ? target : ParentPath(target);
    if (!targetDir.isEmpty() && !QDir().mkpath(targetDir))
        return false;
    bool ok = true;
    for (const QString& source : sources) {
        const QString dest = intoFolder ? LinkFileByPath(target, FileNameOf(source)) : target;
        if (QFileInfo(dest).absoluteFilePath() == QFileInfo(source).absoluteFilePath())
            continue;
        ok = (op == FO_MOVE ? moveTree(source, dest) : copyTree(source, dest)) && ok;
    }
    return ok;
}

}  // namespace

bool IsFileHidden(const QString& path)
{
    const QString name = FileNameOf(path);
    if (name.startsWith(u'.'))
        return true;
    return readHiddenList(ParentPath(path)).contains(name);
}

bool SetFileHidden(const QString& path, bool hidden)
{
    const QString dir = ParentPath(path);
    const QString name = FileNameOf(path);
    if (name.isEmpty() || name.startsWith(u'.'))
        return hidden;
    QStringList names = readHiddenList(dir);
    if (names.contains(name) == hidden)
        return true;
    if (hidden)
        names << name;
    else
        names.removeAll(name);
    return writeHiddenList(dir, names);
}

bool SetFilesHidden(const QString& dir, const QStringList& names)
{
    QStringList list = readHiddenList(dir);
    const qsizetype before = list.size();
    QSet<QString> known(list.cbegin(), list.cend());
    for (const QString& name : names)
        if (!name.isEmpty() && !name.startsWith(u'.') && !known.contains(name)) {
            known.insert(name);
            list << name;
        }
    return list.size() == before || writeHiddenList(dir, list);
}

bool FileOperation(int op, const QString& source, const QString& target)
{
    const QString from = NativePath(source);
    const QString to = NativePath(target);
    const QStringList sources = expandSource(from);
    if (sources.isEmpty())
        return false;

    switch (op) {
        case FO_DELETE: {
            bool ok = true;
            for (const QString& s : sources)
                ok = removeTree(s) && ok;
            return ok;
        }
        case FO_RENAME: {
            if (sources.size() != 1 || to.isEmpty())
                return false;
            const QString dest = to.contains(u'/') ? to : LinkFileByPath(ParentPath(sources.first()), to);
            if (!FileKind(dest).isEmpty())
                return false;
            return moveTree(sources.first(), dest);
        }
        case FO_COPY:
        case FO_MOVE: {
            if (to.isEmpty())
                return false;
            const bool intoFolder = hasWildcard(FileNameOf(from)) || FileKind(to) == QLatin1String("p");
            return copyOrMove(op, sources, to, intoFolder);
        }
        default:
            return false;
    }
}

}  // namespace td
