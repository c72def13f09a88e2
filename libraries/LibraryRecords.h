#pragma once
#include <QString>

namespace td {

class Connection;

// The statements of the library manager over the table library and the songs of a library, written
// once for the window and tunedesk-admin. Each throws AppError with the store's reason.

// The name other machines reach a library by: the root's last folder with its leading separator
// ("/srv/Songs/Hits" gives "/Hits"); "/" for a root ending in a separator; the whole root without one.
QString SharedAsFor(const QString& rootPath);

// Whether a library row has exactly this root_path (no folding of case or trailing separators).
bool LibraryRootTaken(Connection& db, const QString& rootPath);

// The songs whose library is exactly rootPath.
qint64 LibrarySongCount(Connection& db, const QString& rootPath);

// A library moved: its songs follow it to the new root. Answers the songs moved.
qint64 MoveLibrarySongs(Connection& db, const QString& oldRoot, const QString& newRoot);

// The songs of a library leave the songbook; their files stay on disk. Answers the songs removed.
qint64 DeleteLibrarySongs(Connection& db, const QString& rootPath);

}  // namespace td
