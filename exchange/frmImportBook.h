#pragma once
#include "controls/WindowFrame.h"
#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace td {

struct IndexClassOptions;

struct SongbookImportSettings;

// The songbook import wizard: brings the songs and singers of another song database, or of a legacy
// Access songbook, into the database in use. It closes after one import, whatever its outcome.
class frmImportBook : public QWidget {
    Q_OBJECT
public:
    explicit frmImportBook(WindowFrame& frame = NoFrame(), QWidget* parent = nullptr);

    // "index": the class whose option is on; "indexfrom": the text of txtFrom; "deletesong" and
    // "deletesinger": "1" or "0" after their boxes; anything else the empty text.
    QString GetImportClass(const QString& cls) const;

    QLabel* lblFrom() const { return lblFrom_; }
    QLabel* lblTo() const { return lblTo_; }
    QPushButton* cmdBrowse() const { return cmdBrowse_; }
    QRadioButton* optIndex(int i) const { return optIndex_[i]; }
    QLineEdit* txtFrom() const { return txtFrom_; }
    QCheckBox* chkDeleteSong() const { return chkDeleteSong_; }
    QCheckBox* chkDeleteSinger() const { return chkDeleteSinger_; }
    QCheckBox* chkGbk() const { return chkGbk_; }
    QLineEdit* txtRemark() const { return txtRemark_; }
    QPushButton* cmdImport() const { return cmdImport_; }
    QPushButton* cmdSave() const { return cmdSave_; }
    QPushButton* cmdClose() const { return cmdClose_; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void build();
    void load();
    void browse();
    void showSource(const QString& path);
    void saveDefaults();
    IndexClassOptions indexOptions() const;
    void startImport();
    SongbookImportSettings chosen() const;
    void closeWindow();

    WindowFrame& frame_;
    QLabel* lblFrom_ = nullptr;
    QLabel* lblTo_ = nullptr;
    QPushButton* cmdBrowse_ = nullptr;
    QRadioButton* optIndex_[3] = {};
    QLineEdit* txtFrom_ = nullptr;
    QCheckBox* chkDeleteSong_ = nullptr;
    QCheckBox* chkDeleteSinger_ = nullptr;
    QCheckBox* chkGbk_ = nullptr;
    QLineEdit* txtRemark_ = nullptr;
    QPushButton* cmdImport_ = nullptr;
    QPushButton* cmdSave_ = nullptr;
    QPushButton* cmdClose_ = nullptr;
};

}  // namespace td
