#include "controls/DropDownCombo.h"

namespace td {

void DropDownCombo::showPopup()
{
    emit DropDown();
    QComboBox::showPopup();
}

}  // namespace td
