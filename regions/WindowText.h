#pragma once
#include <QString>

class QWidget;

namespace td {

// Every window's load begins with ExportWindowText on itself and then ApplyWindowText. The first
// keeps the designed English texts in Res<window name>.tmp beside the program; the second shows
// them in the interface language, and can run again on an open window after a language change.
void ExportWindowText(QWidget* window);
void ApplyWindowText(QWidget* window);

// Loads a region's language and brings every open window to it; "True" on success, else empty text.
QString SetRegionAndApply(const QString& name);
// The program's directory, "/Region/" and the default region name.
QString GetRegionFolder();

// Res<window name>.tmp in the program's directory.
QString WindowTextFile(const QWidget* window);

// Forgets the interface font, so the next ApplyWindowText asks for it again (tests).
void ResetWindowTextFont();

}  // namespace td
