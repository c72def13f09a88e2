#pragma once
#include <QString>
#include <QStringList>
#include <vector>

namespace td {

// The Format and lowest Version a song database must carry in config.
inline const QString kSongDatabaseFormat = QStringLiteral("SongDatabase");
inline const QString kSongDatabaseVersion = QStringLiteral("8.1");

enum class ColumnType { Key, Integer, SmallInt, Text, Date, Blob };
struct SchemaColumn {
    const char* name;
    ColumnType type;
    const char* defaultValue = nullptr;
};
struct SchemaIndex {
    const char* name;     // behind the table's name and "_"
    const char* columns;  // as the statement lists them
};
struct SchemaTable {
    const char* name;
    std::vector<SchemaColumn> columns;
    std::vector<SchemaIndex> indexes;
};

// The tables of a song database, written once for both stores.
const std::vector<SchemaTable>& SongDatabaseTables();
// The statements that create a table and its indexes in SQLite or in PostgreSQL.
QStringList SchemaStatements(const SchemaTable& table, bool postgres);

// Creates a new, empty song database file: the six tables, their indexes, and the Database rows
// Format, Version and Language. Throws AppError; an existing file is refused. For a postgresql://
// address the database is made when missing, and one that already holds a songbook is refused.
void CreateSongDatabase(const QString& path, const QString& language);

// Creates the template database (default.db): a valid database file without any table, into
// which exports and library databases copy their song and singer tables.
void CreateTemplateDatabase(const QString& path);

}  // namespace td
