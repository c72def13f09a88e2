#pragma once
#include "controls/DataWindow.h"
#include "shell/CommandTarget.h"
#include <QList>

class QGroupBox;
class QLabel;
class QPushButton;

namespace td {

class ctlButtons;
class ctlDataFields;
class ctlDataView;
class JobRunner;
class PhotoView;
class SplitterBar;

// The singer list: the singers that songs name, their fields and a photograph of each, the search for
// names that songs use and the list lacks, and the exchange with the Singer folder beside the program.
class frmSinger : public DataWindow, public CommandTarget {
    Q_OBJECT
public:
    explicit frmSinger(WindowFrame& frame = NoFrame(), QWidget* parent = nullptr);
    ~frmSinger() override;

    void ExecuteCommand(const QString& command) override;
    bool LoadFormat();
    bool LoadData();
    bool LoadFieldDatas(const QList<int>& selection);
    bool RefreshData();

    bool AddItem();
    bool SaveItem();
    bool DeleteItem();
    // Adds a singer for every name songs use that the list lacks; answers how many.
    int SearchNewSinger();
    // The exchange with the Singer folder runs as a job; ExchangeFinished comes when it has ended.
    bool ExportSinger();
    bool ImportSinger();

    // Shows the picture of a .jpg file; an empty name clears it. False, after its message, for a
    // missing file or one that is no JPEG.
    bool LoadPhoto(const QString& file);
    // The buttons under the photograph, and a file dropped on it.
    void LoadPhotoFromDialog();
    void ClearPhoto();
    bool DropPhoto(const QString& file);

    bool GetViewProperty() const;
    bool GetViewPreview() const;
    void SetViewProperty(bool visible);
    void SetViewPreview(bool visible);

    ctlDataView* ctlView() const { return ctlView_; }
    ctlDataFields* ctlFields() const { return ctlFields_; }
    ctlButtons* ctlButtonBar() const { return ctlButtons_; }
    PhotoView* imgPhoto() const { return imgPhoto_; }
    QPushButton* cmdLoad() const { return cmdLoad_; }
    QPushButton* cmdClear() const { return cmdClear_; }
    bool PhotoChanged() const { return photoChanged_; }
    QString PhotoFile() const { return photoFile_; }
    bool ExchangeRunning() const;

signals:
    void ExchangeFinished();

protected:
    void WindowClosing() override;
    void ListReadFailed(const QString& sql, const QString& description) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildControls();
    QList<int> selection() const;
    QString nameValue() const;
    bool nameTaken(const QString& name, const QString& failure);
    bool savePhotoTo(Bookmark bookmark);
    void arrangeMain();
    void arrangeRight();
    void moveMainSplitter(int left);
    void moveRightSplitter(int top);
    void setViewFlag(const QString& key, const char* menuEntry, bool visible);
    bool runExchange(bool exporting);

    ctlButtons* ctlButtons_ = nullptr;
    ctlDataView* ctlView_ = nullptr;
    ctlDataFields* ctlFields_ = nullptr;
    QWidget* picButton_ = nullptr;
    QWidget* picView_ = nullptr;
    SplitterBar* lblMove_ = nullptr;
    QWidget* picRight_ = nullptr;
    QGroupBox* fraImage_ = nullptr;
    QWidget* picImage_ = nullptr;
    PhotoView* imgPhoto_ = nullptr;
    QLabel* label2_ = nullptr;
    QLabel* label3_ = nullptr;
    QPushButton* cmdLoad_ = nullptr;
    QPushButton* cmdClear_ = nullptr;
    SplitterBar* lblMove2_ = nullptr;
    QWidget* picField_ = nullptr;
    JobRunner* runner_ = nullptr;

    bool photoChanged_ = false;
    QString photoFile_;
    int moveLeft_ = 1 << 20;  // beyond any width: the first arrangement puts it at two thirds
    int move2Top_ = -1;       // unset: the photograph takes the upper half
};

}  // namespace td
