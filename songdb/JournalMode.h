#pragma once
#include <QString>

struct sqlite3;

namespace td {

// Every song row the console writes is its own commit, so the cost of one commit decides how fast
// a batch of rows goes in. On a local disk the write-ahead log makes a commit one append to the
// log; on a network share the log's shared-memory index cannot be shared between machines, and
// the rollback journal, slower but safe wherever file locks work, is kept.

// The kind of file system a file lies on, as far as the journal choice cares.
enum class FileSystemKind { Local, Nfs, Smb, Cifs, Smb2, Sshfs, OtherNetwork, Unknown };

enum class JournalChoice {
    WriteAheadLog,    // journal_mode=WAL, synchronous=NORMAL
    RollbackJournal,  // journal_mode=DELETE, synchronous=FULL
};

// The kind of a statfs() f_type; fuseType is the mount's type as /proc/self/mountinfo names it
// ("fuse.sshfs"), read only for FUSE mounts, which share one f_type.
FileSystemKind FileSystemKindOfMagic(quint32 fsType, const QString& fuseType = {});

// The kind of the file system that holds path (the file, or its folder when the file isn't there
// yet); Unknown when neither can be looked at.
FileSystemKind FileSystemKindOf(const QString& path);

// Rollback journal for every network kind, for an unknown kind, for a share path "//host/..." and
// for a path below networkRoot (the mount folder of shares); the write-ahead log otherwise.
JournalChoice ChooseJournal(FileSystemKind kind, const QString& path, const QString& networkRoot);

// Sets the journal of a connection opened read-write on file, by the choice above with the
// console's NetworkRoot. Never fails: a file whose journal cannot be changed now (another console
// holds it) keeps the one it has, and then stays at synchronous=FULL.
void ApplyJournalMode(sqlite3* db, const QString& file);

// The connection's journal_mode and synchronous as SQLite reports them ("wal", 1).
QString JournalModeOf(sqlite3* db);
int SynchronousOf(sqlite3* db);

}  // namespace td
