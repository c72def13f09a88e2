#pragma once
#include "shell/services/JobHost.h"
#include "shell/services/TextArray.h"
#include <QString>
#include <functional>

namespace td {

// The directory a disc gets in a library: the library path and the disc's identity, so the same disc
// lands in the same place whenever it is loaded.
QString DiscDirectoryOf(const QString& library, const QString& identity);

// Copies one track through a temporary file beside the target that is renamed only once complete, so
// no half-written track ever stands under its own name. False, with the reason, when it fails.
bool CopyTrackFile(const QString& from, const QString& to, QString& error);

struct DiscCopyEvents {
    // Track i of n is under way (1-based), before its copy.
    std::function<void(int i, int n)> step;
    // The track stands in the disc's directory (copied now or there before) and belongs to the songbook.
    std::function<void(const QString& target)> copied;
};

struct DiscCopyReport {
    int done = 0;           // tracks handed to copied()
    bool complete = false;  // every track was done
};

// The copy loop of a disc: each track goes into directory unless a file of its name is there already,
// and is handed to copied() either way. A failed copy is reported and ends the loop; what was copied
// before stays. When all tracks are done the count is reported.
DiscCopyReport CopyDiscTracks(const QString& directory, const TextArray& tracks, JobHost& host,
                              const DiscCopyEvents& events);

}  // namespace td
