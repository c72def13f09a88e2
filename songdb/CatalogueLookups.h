#pragma once
#include "shell/services/TextArray.h"
#include <QDateTime>
#include <QString>

namespace td {

// Song numbers: a valid one lies between MinIndex and MaxIndex of config; 0 means none.
long long SongMinIndex();
long long SongMaxIndex();
bool SongIndexFree(long long index);
bool SongCheckIndex(long long index);

bool LibraryExists(const QString& root);
void LoadLibraryPaths(TextArray& paths);
// Finds the library a full path lies in: library gets its root as stored, path the rest from the
// separator that ended the root. The roots are read again after a minute, or when forced.
bool GetLocalPath(QString& path, QString& library, bool force);
// The share under which other computers reach a library ("//host/share"), or empty text.
QString GetLibraryRemotePath(const QString& root);
// The playable media file of a song: on the local library, else on its share; empty if neither.
QString KtvGetFileById(long long id);
bool GetRegionNames(TextArray& names);

// The clock of the library path cache (tests); nullptr restores the real one.
void SetLookupClock(QDateTime (*now)());

}  // namespace td
