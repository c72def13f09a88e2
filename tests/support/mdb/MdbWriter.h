#pragma once
// Writes legacy Access (.mdb) files, Jet 3 (Access 97) and Jet 4 (Access 2000), for the tests and the
// benchmarks: plain tables without indexes, every row on data pages, long values on their own pages.
#include <QString>
#include <QVariant>
#include <functional>
#include <vector>

namespace td::test {

// Column types, by their codes in the file.
enum class JetType : quint8 {
    Bool = 0x01,
    Byte = 0x02,
    Int = 0x03,
    Long = 0x04,
    Double = 0x07,
    DateTime = 0x08,
    Binary = 0x09,
    Text = 0x0A,
    Ole = 0x0B,
    Memo = 0x0C,
};

struct JetColumn {
    QString name;
    JetType type = JetType::Text;
    int length = 255;  // characters of a Text column, bytes of a Binary one
};

// A table and its rows. A row holds one value per column, an invalid QVariant being NULL: QString for
// text and memo, QByteArray for OLE and binary, bool, QDateTime, integers and doubles. A shorter row
// is written as Access left rows from before the table's last (variable) columns were added.
struct JetTable {
    QString name;
    std::vector<JetColumn> columns;
    std::vector<QVariantList> rows;
    // When set, rows are asked for one by one instead (rowCount of them), so that large tables need
    // not be held whole.
    std::function<QVariantList(qsizetype)> rowAt;
    qsizetype rowCount = 0;
};

struct JetFileOptions {
    int version = 4;       // 3: 2 KiB pages, texts in codePage; 4: 4 KiB pages, texts as UCS-2
    int codePage = 1252;   // the code page the file names; 936 keeps Jet 3 texts as GBK
    int textCodePage = 0;  // the one Jet 3 texts are really kept in, when it is not codePage
    QString password;      // the database password; empty for none
};

// Writes a new file with the tables. False, with the reason in error, when a value does not fit its
// column or the file cannot be written.
bool WriteJetDatabase(const QString& path, const JetFileOptions& options, const std::vector<JetTable>& tables,
                      QString* error = nullptr);

}  // namespace td::test
