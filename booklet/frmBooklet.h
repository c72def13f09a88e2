#pragma once
#include "booklet/BookletPages.h"
#include "controls/WindowFrame.h"
#include <QWidget>
#include <functional>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;

namespace td {

// "Song booklet ...": the booklet for the guests' tables. The operator chooses the grouping, the
// columns, the paper, the region and the venue's name (kept in the application INI by "Save as
// default"); Preview reads the songs as a long job and shows Qt's print preview, "Save PDF" writes the
// booklet as a PDF file as a long job.
class frmBooklet : public QWidget {
    Q_OBJECT
public:
    explicit frmBooklet(WindowFrame& frame = NoFrame(), QWidget* parent = nullptr);
    ~frmBooklet() override;

    // The print preview; tests put a function of their own in its place. Empty restores the dialog.
    using Preview = std::function<void(QWidget* owner, const BookletOptions& options,
                                       const QList<BookletSection>& sections)>;
    static void SetPreview(Preview preview);

    QComboBox* cboGroup() const { return cboGroup_; }
    QSpinBox* spnColumns() const { return spnColumns_; }
    QComboBox* cboPaper() const { return cboPaper_; }
    QComboBox* cboRegion() const { return cboRegion_; }
    QLineEdit* txtVenue() const { return txtVenue_; }
    QPushButton* cmdPreview() const { return cmdPreview_; }
    QPushButton* cmdPdf() const { return cmdPdf_; }
    QPushButton* cmdSave() const { return cmdSave_; }
    QPushButton* cmdClose() const { return cmdClose_; }

    // The booklet the window's choices describe.
    BookletOptions Options() const;
    void SaveDefaults();
    void PreviewBooklet();
    void SavePdf();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void build();
    void load();

    WindowFrame& frame_;
    QComboBox* cboGroup_ = nullptr;
    QSpinBox* spnColumns_ = nullptr;
    QComboBox* cboPaper_ = nullptr;
    QComboBox* cboRegion_ = nullptr;
    QLineEdit* txtVenue_ = nullptr;
    QLabel* lblRequired_ = nullptr;
    QPushButton* cmdPreview_ = nullptr;
    QPushButton* cmdPdf_ = nullptr;
    QPushButton* cmdSave_ = nullptr;
    QPushButton* cmdClose_ = nullptr;
};

}  // namespace td
