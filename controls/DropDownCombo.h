#pragma once
#include <QComboBox>

namespace td {

// A combo box that says when its list is about to drop down, so the list can be filled fresh.
class DropDownCombo : public QComboBox {
    Q_OBJECT
public:
    using QComboBox::QComboBox;
    void showPopup() override;

signals:
    void DropDown();
};

}  // namespace td
