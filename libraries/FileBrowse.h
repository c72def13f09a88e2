#pragma once
#include "shell/services/TextArray.h"
#include <QString>

class QWidget;

namespace td {

// The open-file dialog with multiple selection; false when cancelled.
bool BrowseFile(const QString& initDir, const QString& filter, TextArray& names);
// The folder picker; the chosen directory or empty text.
QString BrowsePath(QWidget* owner);

}  // namespace td
