#pragma once
#include <QString>
#include <vector>

namespace td {

// One list column as the format file describes it.
struct ViewColumn {
    QString Key;       // the column's section, such as "Col_name"
    QString Caption;   // heading, already in the interface language
    QString Table;     // kept for owners; the list never uses it
    QString Field;     // recordset field that feeds the column
    int Width = 1440;  // twips
    int Position = 0;  // 1-based display place; 0 keeps creation order
};

struct ViewFormat {
    bool MultiSelect = false;
    std::vector<ViewColumn> Columns;  // in creation order
};

// Reads section View and the columns named by the keys of ColPosition, in file order.
ViewFormat ReadViewFormat(const QString& iniFile);

// The layout a user leaves behind: display place and width of each column, in creation order.
struct ColumnLayout {
    QString Key;
    int Position = 0;
    double Width = 0;  // twips
};

// Rewrites ColPosition and each column's Width. Nothing is written for an empty layout.
void WriteViewLayout(const QString& iniFile, const std::vector<ColumnLayout>& columns);

// The text after the "Col_" prefix, cut by length whatever the prefix says.
QString ColumnSuffix(const QString& key);

// A format file's 16-bit number: rounded half to even, as the console always read them.
int FormatInteger(const QString& text);

}  // namespace td
