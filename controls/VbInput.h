#pragma once
#include <Qt>

namespace td {

// Key codes, shift states and mouse buttons in the numbers the controls' events have always
// carried: virtual key codes, Shift 1 / Ctrl 2 / Alt 4, left 1 / right 2 / middle 4.
int VbKeyCode(int qtKey);
int VbShift(Qt::KeyboardModifiers modifiers);
int VbButton(Qt::MouseButtons buttons);

}  // namespace td
