#pragma once
#include "controls/FieldFormat.h"
#include "songdb/Recordset.h"
#include <QVariant>
#include <QWidget>
#include <functional>
#include <memory>

class QLabel;
class QLineEdit;
class QPushButton;

namespace td {

class DropDownCombo;

// Opens the statement of a drop-down list; unset, the song database's SongOpenRecordset does.
using RecordsetOpener = std::function<std::unique_ptr<Recordset>(const QString& sql)>;

// The record editor: a column of rows with label, text box or combo, button and hint, drawn from
// the format file. It shows one or several selected records and writes only what the user changed.
class ctlDataFields : public QWidget {
    Q_OBJECT
public:
    explicit ctlDataFields(QWidget* parent = nullptr);
    ~ctlDataFields() override;

    // The recordset edited; the window owns it, the editor only looks at it.
    Recordset* mrsMain() const { return mrsMain_.lock().get(); }
    void setMrsMain(std::weak_ptr<Recordset> rs) { mrsMain_ = std::move(rs); }
    RecordsetOpener OpenRecordset;

    QString IniFile() const { return iniFile_; }
    void setIniFile(const QString& file) { iniFile_ = file; }

    bool LoadFieldFormat();
    // Bookmarks of the selected records at 1..count; element 0 is not used.
    bool LoadFieldDatas(const QVariantList& selBmks);
    QVariant GetField(int index, const QString& key) const;
    bool SetField(int index, const QString& key, const QVariant& value);
    int GetFieldIndex(const QString& field) const;
    int GetFieldCount() const { return int(fields_.size()); }
    bool AddData(QVariant& newBmk);
    bool SaveData(const QVariant& selBmk);
    bool DeleteData(const QVariant& selBmk);

    // The colour a row's value is drawn in, as an OLE colour (window text, grey text or blue).
    long ValueForeColor(int index) const;
    QLineEdit* txtValue(int index) const;
    DropDownCombo* cboValue(int index) const;
    QPushButton* cmdValue(int index) const;
    QLabel* lblCaption(int index) const;
    QLabel* lblHint(int index) const;

signals:
    void Click(int index);
    void DblClick(int index);
    void KeyDown(int index, int keyCode, int shift);
    void KeyPress(int index, int keyAscii);
    void KeyUp(int index, int keyCode, int shift);
    void MouseDown(int index, int button, int shift, int x, int y);
    void MouseMove(int index, int button, int shift, int x, int y);
    void MouseUp(int index, int button, int shift, int x, int y);
    // Connect directly: a handler may set cancel to refuse the edit.
    void BeforeValueChanged(int index, const QString& value, QString& newValue, bool& cancel);
    void AfterValueChanged(int index, const QString& value, const QString& newValue);

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::weak_ptr<Recordset> mrsMain_;
    struct RowControls {
        QLabel* lblCaption = nullptr;
        QLineEdit* txtValue = nullptr;
        DropDownCombo* cboValue = nullptr;
        QPushButton* cmdValue = nullptr;
        QLabel* lblHint = nullptr;
        bool guard = false;
        long foreColor = 0;
    };
    RowControls makeRow(int index);
    void applyRow(int index);
    void layoutRows();
    DataField& field(int index) { return fields_[std::size_t(index - 1)]; }
    const DataField& field(int index) const { return fields_[std::size_t(index - 1)]; }
    bool isRow(int index) const { return index >= 1 && index <= GetFieldCount(); }
    void setBothTexts(int index, const QString& text);
    void setForeColor(int index, long oleColor);
    void colorByEnabled(int index);
    void setValueTip(int index);
    void showClassControl(int index, bool textBox);
    void clearRows();
    bool loadBookmark(const QVariant& bookmark);
    bool mergeBookmarks(const QVariantList& selBmks);
    void valueEdited(int index, QWidget* control);
    void fillDropDown(int index);
    std::unique_ptr<Recordset> openList(const QString& sql) const;
    void writeFields(bool changedOnly);
    Recordset& recordset() const;
    void seekOrThrow(const QVariant& bookmark);
    void failed(const QString& text, const std::exception& e, bool cancelUpdate);
    double formatTwips(const QString& key, double def) const;

    QString iniFile_;
    bool captionVisible_ = true;
    bool buttonVisible_ = true;
    std::vector<DataField> fields_;
    std::vector<RowControls> rows_;  // element 0: the template that gives the default sizes
};

}  // namespace td
