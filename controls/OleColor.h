#pragma once
#include <QColor>
#include <QPalette>

namespace td {

// Colours as the format files and the controls' properties give them: 0x00BBGGRR for a fixed colour,
// or 0x800000nn for the system colour nn.
constexpr long kSysWindowText = long(qint32(0x80000008u));
constexpr long kSysGrayText = long(qint32(0x80000011u));
constexpr long kSysButtonFace = long(qint32(0x8000000Fu));
constexpr long kPureBlue = 0xFF0000;

bool IsSystemColor(long oleColor);
// The colour to paint with; system colours come from the palette.
QColor ColorFromOle(long oleColor, const QPalette& palette);

}  // namespace td

namespace td {
// A colour number as a format file writes it: decimal, or VB's "&H" hexadecimal; a 32-bit value.
long OleColorFromText(const QString& text);
}  // namespace td
