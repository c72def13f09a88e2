#pragma once
#include "controls/WindowFrame.h"
#include <QDialog>
#include <QStringList>

class QCheckBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;

namespace td {

struct IndexClassOptions;

struct LibraryImportSettings;

// The library import wizard: fills the songbook from the song information files of one library.
// Shown modally by the library manager for the library it hands over; it closes after one import,
// whatever its outcome.
class frmImportLib : public QDialog {
    Q_OBJECT
public:
    frmImportLib(const QString& libraryPath, WindowFrame& frame = NoFrame());

    // "index": the class whose option is on ("import", "index", "blank"); "indexfrom": the text of
    // txtFrom; anything else the empty text.
    QString GetImportClass(const QString& cls) const;

    QListWidget* lstRegion() const { return lstRegion_; }
    QRadioButton* optIndex(int i) const { return optIndex_[i]; }
    QLineEdit* txtFrom() const { return txtFrom_; }
    QCheckBox* chkIndex() const { return chkIndex_; }
    QLineEdit* txtRemark() const { return txtRemark_; }
    QLabel* lblFrom() const { return lblFrom_; }
    QLabel* lblTo() const { return lblTo_; }
    QPushButton* cmdImport() const { return cmdImport_; }
    QPushButton* cmdSave() const { return cmdSave_; }
    QPushButton* cmdClose() const { return cmdClose_; }
    // False when the window could not load and has closed again.
    bool loaded() const { return loaded_; }

private:
    void build();
    void load();
    void optionClick();
    void saveDefaults();
    IndexClassOptions indexOptions() const;
    void startImport();
    LibraryImportSettings chosen() const;

    WindowFrame& frame_;
    QString library_;
    QStringList regionNames_;  // from 1; the last one "" for songs without a region
    QLabel* lblFrom_ = nullptr;
    QLabel* lblTo_ = nullptr;
    QListWidget* lstRegion_ = nullptr;
    QRadioButton* optIndex_[3] = {};
    QLineEdit* txtFrom_ = nullptr;
    QCheckBox* chkIndex_ = nullptr;
    QLineEdit* txtRemark_ = nullptr;
    QPushButton* cmdImport_ = nullptr;
    QPushButton* cmdSave_ = nullptr;
    QPushButton* cmdClose_ = nullptr;
    bool loaded_ = false;
};

// Shows the wizard for a library over the frame's window and runs it to its end.
void ShowImportLibrary(const QString& libraryPath, WindowFrame& frame);
// The same over a window of the main frame (the library manager's), so the songbook can be refreshed.
void ShowImportLibrary(const QString& libraryPath, QWidget* owner);

}  // namespace td
