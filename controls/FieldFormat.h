#pragma once
#include <QString>
#include <vector>

namespace td {

// One edit row of a record editor.
struct DataField {
    QString Caption;  // translated
    QString Hint;     // translated
    QString Table;    // never read from the file
    QString Field;
    bool Enabled = true;
    QString Class;    // "label", "text", "combo", "list"; anything else acts as a combo
    QString ClassEx;  // label text, "password", or the statement of a drop-down list
    QString Cmd;      // translated button caption; empty for no button
    QString Value;
    bool Changed = false;
};

struct FieldFormat {
    bool CaptionVisible = true;
    bool ButtonVisible = true;
    std::vector<DataField> Fields;
};

// Reads section Fields and Field1..FieldN; a row with LinkCol takes caption and field from that column.
FieldFormat ReadFieldFormat(const QString& iniFile);

}  // namespace td
