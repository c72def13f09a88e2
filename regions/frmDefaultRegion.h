#pragma once
#include "controls/SettingsWindow.h"

class QComboBox;
class QLabel;

namespace td {

// The language of this console, kept in Region.ini. Only regions both installed and offered by the
// songbook are on offer; Apply switches every open window to the new language at once.
class frmDefaultRegion : public SettingsWindow {
    Q_OBJECT
public:
    explicit frmDefaultRegion(WindowFrame& frame = NoFrame(), QWidget* parent = nullptr);

    QComboBox* cboRegion() const { return cboRegion_; }

protected:
    void Apply() override;

private:
    void load();

    QLabel* lblRegion_ = nullptr;
    QComboBox* cboRegion_ = nullptr;
};

}  // namespace td
