#pragma once
#include "checks/PrintList.h"
#include "controls/WindowFrame.h"
#include <QWidget>
#include <functional>
#include <memory>

class QComboBox;
class QLabel;
class QListWidget;
class QPushButton;

namespace td {

class Recordset;
struct SongList;

// "Songbook printing wizard ...": the operator picks the fields, up to three conditions and up to
// three sort fields; Preview writes SongList.xlsx beside the program as a long job, shows the print
// preview of the same list (any printer of the system, or a PDF) and offers to save the workbook.
class frmPrint : public QWidget {
    Q_OBJECT
public:
    explicit frmPrint(WindowFrame& frame = NoFrame(), QWidget* parent = nullptr);
    ~frmPrint() override;

    // The print preview; tests put a function of their own in its place. Empty restores the dialog.
    using Preview = std::function<void(QWidget* owner, const SongList& list, const QStringList& fields)>;
    static void SetPreview(Preview preview);

    QListWidget* lstSelect() const { return lstSelect_; }
    QComboBox* cboField(int i) const { return cboField_[i]; }
    QComboBox* cboCompare(int i) const { return cboCompare_[i]; }
    QComboBox* cboValue(int i) const { return cboValue_[i]; }
    QComboBox* cboOrder(int i) const { return cboOrder_[i]; }
    QPushButton* cmdPreview() const { return cmdPreview_; }
    QPushButton* cmdSave() const { return cmdSave_; }
    QPushButton* cmdClose() const { return cmdClose_; }

    // The statement of the window's choices.
    QString Statement() const;
    // Fills the value list of a condition from its field, as a click on the field does.
    void FieldClick(int i);
    void SaveDefaults();
    void PreviewSonglist();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void build();
    void load();
    PrintChoice choice() const;
    QString fieldOf(const QComboBox* box) const;

    WindowFrame& frame_;
    QList<PrintField> fields_;
    std::unique_ptr<Recordset> types_;
    QListWidget* lstSelect_ = nullptr;
    QComboBox* cboField_[3] = {};
    QComboBox* cboCompare_[3] = {};
    QComboBox* cboValue_[3] = {};
    QComboBox* cboOrder_[3] = {};
    QLabel* lblRequired_ = nullptr;
    QPushButton* cmdPreview_ = nullptr;
    QPushButton* cmdSave_ = nullptr;
    QPushButton* cmdClose_ = nullptr;
};

}  // namespace td
