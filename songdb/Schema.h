#pragma once
#include <QString>

namespace td {

// The Format and lowest Version a song database must carry in config.
inline const QString kSongDatabaseFormat = QStringLiteral("SongDatabase");
inline const QString kSongDatabaseVersion = QStringLiteral("8.1");

// Creates a new, empty song database file: the six tables, their indexes, and the Database rows
// Format, Version and Language. Throws AppError; an existing file is refused.
void CreateSongDatabase(const QString& path, const QString& language);

// Creates the template database (default.db): a valid database file without any table, into
// which exports and library databases copy their song and singer tables.
void CreateTemplateDatabase(const QString& path);

}  // namespace td
