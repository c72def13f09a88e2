#pragma once
#include "controls/SettingsWindow.h"

class QLabel;
class QLineEdit;
class QTabWidget;
class QWidget;

namespace td {

// Three values of the song database, in its config table, so they travel with it: the media file
// patterns and the bounds of song numbers.
class frmOptions : public SettingsWindow {
    Q_OBJECT
public:
    explicit frmOptions(WindowFrame& frame = NoFrame(), QWidget* parent = nullptr);

    QTabWidget* tbsOpti() const { return tbsOpti_; }
    QLineEdit* txtFileType() const { return txtFileType_; }
    QLineEdit* txtMinIndex() const { return txtMinIndex_; }
    QLineEdit* txtMaxIndex() const { return txtMaxIndex_; }

protected:
    // The numbers are tested first, each with its own message; a failed test writes nothing.
    void Apply() override;

private:
    void tabClick();
    QLineEdit* addBox(const char* name, const char* label, int row);

    QTabWidget* tbsOpti_ = nullptr;
    QWidget* fraOpti_ = nullptr;
    QLineEdit* txtFileType_ = nullptr;
    QLineEdit* txtMinIndex_ = nullptr;
    QLineEdit* txtMaxIndex_ = nullptr;
};

}  // namespace td
