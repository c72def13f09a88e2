#pragma once

class QWidget;

namespace td {

// Format files keep sizes in twips: 1440 to the inch, so 15 to a pixel at 96 dpi. The screen's
// logical dpi scales them, so a layout keeps its proportions on a high-dpi screen.
int TwipsToPixels(double twips, const QWidget* widget);
double PixelsToTwips(int pixels, const QWidget* widget);

}  // namespace td
