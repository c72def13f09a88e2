#pragma once
#include <QString>
#include <algorithm>
#include <optional>
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

// The most rows a Count of a format file gives: a damaged count must not make a window build rows
// without end. The console always read counts as 16-bit numbers, so no working file counts further.
constexpr int kMostFormatRows = 32767;
// Each n, in ascending order, for which the file has a section prefix + n ("Button12").
std::vector<int> NumberedSections(const QString& iniFile, const QString& prefix);

// Rows 1 to count of a format file, each read by readRow from the section prefix + n. The rows without
// a section are all alike, so only the first of them is read and the rest are copies.
template <typename Row, typename ReadRow>
std::vector<Row> ReadNumberedRows(const QString& iniFile, const QString& prefix, int count, ReadRow readRow)
{
    std::vector<Row> rows;
    const std::vector<int> present = NumberedSections(iniFile, prefix);
    std::optional<Row> blank;
    for (int n = 1; n <= std::min(count, kMostFormatRows); ++n) {
        const QString section = prefix + QString::number(n);
        if (std::binary_search(present.begin(), present.end(), n))
            rows.push_back(readRow(section));
        else
            rows.push_back(blank ? *blank : *(blank = readRow(section)));
    }
    return rows;
}

}  // namespace td
