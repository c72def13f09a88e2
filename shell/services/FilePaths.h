#pragma once
#include <QString>
#include <QStringList>

namespace td {

// "f" for a file, "p" for a directory, empty text for nothing there.
QString FileKind(const QString& path);

// Path helpers with "/" as separator; "\" in stored data is accepted as a separator too.
QString LinkFileByPath(const QString& dir, const QString& file);
QString ParentPath(const QString& path);
QString FileNameOf(const QString& path);
QString BaseNameOf(const QString& path);
QString ExtensionOf(const QString& name);

// A stored path made native: "\" becomes "/", and a share "\\host\name\rest" or "//host/name/rest"
// lies under NetworkRoot (application INI, default "/net") as <NetworkRoot>/host/name/rest.
QString NativePath(const QString& stored);
QString NetworkRoot();
// The host of a path under NetworkRoot, or empty text.
QString ShareHostOf(const QString& path);

QString ComputerName();
bool IsCdromDrive(const QString& driveRoot);

// Shell file operation codes, as the original call numbers them.
enum FileOp { FO_MOVE = 1, FO_COPY = 2, FO_DELETE = 3, FO_RENAME = 4 };
// Copy, move, rename or delete; the source may carry wildcards ("dir/*.*"); missing target folders
// are created without asking.
// Writes bytes to a new file beside path and renames it over path, so a reader never sees half of it;
// flushed to disk first where asked. False, with nothing left behind, when any step fails.
bool ReplaceFileContents(const QString& path, const QByteArray& bytes, bool flush);
bool FileOperation(int op, const QString& source, const QString& target);

// Marks a file hidden the way Linux desktops read it: its name goes into the folder's ".hidden" list.
bool SetFileHidden(const QString& path, bool hidden = true);
bool IsFileHidden(const QString& path);
// Marks many files of one folder hidden with one rewrite of its list; false when the list cannot be written.
bool SetFilesHidden(const QString& dir, const QStringList& names);

}  // namespace td
