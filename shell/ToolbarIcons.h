#pragma once
#include <QIcon>
#include <QStyle>

namespace td {

// A toolbar picture: the desktop theme's icon of that name, else the fallback the console draws itself
// (a question mark for help, a gear for options) or takes from the style.
QIcon ToolbarIcon(const char* themeName, QStyle::StandardPixmap fallback, const QStyle* style);

// The console's own drawings, for the buttons whose style pictures read as something else.
QIcon HelpIcon();
QIcon OptionsIcon();

}  // namespace td
