#pragma once
#include "booklet/BookletPages.h"
#include "controls/WindowFrame.h"
#include <QWidget>
#include <functional>
#include <memory>

class QComboBox;
class QPrinter;
class QPrintPreviewWidget;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;

namespace td {

// "Song booklet ...": the booklet for the guests' tables. The operator chooses the grouping, the
// columns, the paper, the region and the venue's name (kept in the application INI by "Save as
// default"); Preview reads the songs as a long job and shows the pages in Qt's print preview beside the
// choices, Print sends them to a printer of the system, "Save PDF" writes the booklet as a PDF file as a
// long job.
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
    QPushButton* cmdPrint() const { return cmdPrint_; }
    QPrintPreviewWidget* preview() const { return preview_; }
    QPushButton* cmdPdf() const { return cmdPdf_; }
    QPushButton* cmdSave() const { return cmdSave_; }
    QPushButton* cmdClose() const { return cmdClose_; }

    // The booklet the window's choices describe.
    BookletOptions Options() const;
    void SaveDefaults();
    void PreviewBooklet();
    void PrintBooklet();
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
    QPushButton* cmdPrint_ = nullptr;
    QPushButton* cmdPdf_ = nullptr;
    QPushButton* cmdSave_ = nullptr;
    QPushButton* cmdClose_ = nullptr;
    std::unique_ptr<QPrinter> printer_;
    QPrintPreviewWidget* preview_ = nullptr;
    // What the preview shows: the booklet as it was read at the last Preview.
    BookletOptions shown_;
    QList<BookletSection> sections_;
    bool read_ = false;
};

}  // namespace td
