#pragma once
#include "controls/OleColor.h"
#include <QString>
#include <vector>

namespace td {

// One command button of a button bar.
struct ButtonItem {
    QString Class;        // the command word the owner executes
    QString Caption;      // translated
    QString ToolTipText;  // translated
    bool Enabled = true;
    bool Visible = true;
    long BackColor = kSysButtonFace;
};

// Reads section Buttons and Button1..ButtonN. A missing file is an empty bar.
std::vector<ButtonItem> ReadButtonFormat(const QString& iniFile);

}  // namespace td
