#pragma once
#include <limits>
#include "controls/BusyWindow.h"
#include "controls/DataWindow.h"
#include "shell/CommandTarget.h"
#include "shell/services/TextArray.h"
#include "songdb/Recordset.h"
#include <QList>
#include <QVariantList>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>

class QCheckBox;
class QComboBox;
class QPushButton;
class QTabWidget;
class QTimer;

namespace td {

class BackgroundRead;
class ctlButtons;
class ctlDataFields;
class ctlDataView;
class PreviewPanel;
class SplitterBar;

// The songbook: the song list with its search panel, the property editor and the media tab on the
// right, the preview panel below them, and the button bar. Menus of the frame reach it through
// ExecuteCommand and PlaySong; it reaches the frame only through the frame it was made with.
class frmSong : public DataWindow, public CommandTarget {
    Q_OBJECT
public:
    explicit frmSong(WindowFrame& frame = NoFrame(), QWidget* parent = nullptr);
    ~frmSong() override;

    void ExecuteCommand(const QString& command) override;
    void PlaySong(const QString& source, const QString& mode) override;
    void StopSong();

    bool LoadFormat();
    void LoadSearchType();
    bool LoadData();
    // True while the values of a chosen search type are read.
    bool ValuesLoading() const;
    bool RefreshData();
    bool LoadFieldDatas(const QList<int>& selection);

    // Song records
    int AddFiles(const TextArray& files);
    bool AddItem();
    bool SaveItem();
    bool DeleteItem();
    bool IndexItems();
    bool RecountChars();
    void DetectSongChannels();
    int CountSongs();
    void ResetGrade();

    // Media tab
    void AddMedia();
    bool FindMediaFiles(const QString& root, TextArray& files);
    void SearchMedia();

    bool GetViewProperty() const;
    bool GetViewPreview() const;
    void SetViewProperty(bool visible);
    void SetViewPreview(bool visible);

    // Controls, by their names, for the frame and for tests.
    ctlDataView* ctlView() const { return ctlView_; }
    ctlDataFields* ctlFields() const { return ctlFields_; }
    ctlButtons* ctlButtonBar() const { return ctlButtons_; }
    ctlDataView* ctlMedia() const { return ctlMedia_; }
    QComboBox* cboSearchType() const { return cboSearchType_; }
    QComboBox* cboSearchValue() const { return cboSearchValue_; }
    QPushButton* cmdSearch() const { return cmdSearch_; }
    QComboBox* cboMedia() const { return cboMedia_; }
    QCheckBox* chkMedia() const { return chkMedia_; }
    QPushButton* cmdMedia() const { return cmdMedia_; }
    QTabWidget* tabRight() const { return tabRight_; }
    QWidget* picView() const { return picView_; }
    QWidget* picRight() const { return picRight_; }
    QWidget* picRight2() const { return picRight2_; }
    PreviewPanel* picMoni() const { return picMoni_; }
    SplitterBar* lblMove() const { return lblMove_; }
    SplitterBar* lblMove2() const { return lblMove2_; }
    QTimer* tmrLoadData() const { return tmrLoadData_; }
    Recordset* songRecordset() const { return rsMain_.get(); }

    // The command file for the room player, beside the program.
    static QString CommandFile();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void WindowClosing() override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Construction and load
    void buildControls();
    void buildSearchPanel();
    void buildRightPanel();
    void buildMediaPage();
    void connectEvents();
    void Form_Load();
    void prepareMediaTab();
    void selectedTabChanged();

    // Search
    void cboSearchType_Click();
    void cmdSearch_Click();
    QString searchCode() const;
    bool pinyinReadingsReady();

    // Layout
    void ArrangeMain();
    void ArrangeRight();
    void buildPanelLayouts();
    void moveMainSplitter(int left);
    void moveRightSplitter(int top);
    void checkViewMenus();
    void setViewFlag(const QString& key, const char* menuEntry, bool visible);

    // Events of the controls
    void ctlView_MouseUp(int button);
    void ctlFields_AfterValueChanged(int index, const QString& newValue);
    void ctlFields_Click(int index);
    void pickMediaFile();
    void showWindow(const char* name);
    void ctlMedia_DblClick();
    void ctlMedia_MouseUp(int button);
    void cboMedia_DropDown();

    // Records
    QVariantList bookmarksOf(const QList<int>& selection) const;
    QList<int> selection() const;
    int selectionOrSay(QList<int>& selected, const QString& message) const;
    int saveSelected(const QList<int>& selected, const QString& failure,
                     const std::function<void(int)>& prepare);
    bool anyFieldChanged() const;
    bool indexChangeRefused(int selected);
    bool indexRangeRefused(long long start, int count);
    bool addFileRecord(const QString& path, bool firstFile);
    void reselectAfterDelete(int position);

    // Hand-off
    QStringList selectedPaths(const QString& source, const QList<int>& selection);
    bool AddToPlayer(const QStringList& files, const QString& mode);
    void ListReadFailed(const QString& sql, const QString& description) override;
    void valuesReadFinished(bool ok);
    void showSearchValues(const TextArray& names);

    ctlButtons* ctlButtons_ = nullptr;
    QWidget* picButton_ = nullptr;
    QWidget* picView_ = nullptr;
    QWidget* picSearch_ = nullptr;
    QComboBox* cboSearchType_ = nullptr;
    QComboBox* cboSearchValue_ = nullptr;
    QPushButton* cmdSearch_ = nullptr;
    ctlDataView* ctlView_ = nullptr;
    SplitterBar* lblMove_ = nullptr;
    QWidget* picRight_ = nullptr;
    QWidget* picRight2_ = nullptr;
    QTabWidget* tabRight_ = nullptr;
    QWidget* picField_ = nullptr;
    ctlDataFields* ctlFields_ = nullptr;
    QWidget* picMedia_ = nullptr;
    QComboBox* cboMedia_ = nullptr;
    QPushButton* cmdMedia_ = nullptr;
    QCheckBox* chkMedia_ = nullptr;
    ctlDataView* ctlMedia_ = nullptr;
    SplitterBar* lblMove2_ = nullptr;
    PreviewPanel* picMoni_ = nullptr;
    QTimer* tmrLoadData_ = nullptr;

    std::shared_ptr<Recordset> rsMedia_;
    TextArray searchTypeCodes_;
    TextArray searchValueCodes_;
    int moveLeft_ = 0;          // the left of lblMove, in pixels
    // The top of lblMove2 within picRight; it starts below any window, so the first layout places it.
    int move2Top_ = std::numeric_limits<int>::max();
    // Layouts made while the window opens are provisional: the frame sizes it more than once.
    bool move2Settled_ = false;
    BackgroundRead* valuesRead_ = nullptr;
    QString valuesCode_;  // the search type whose values are being read
    std::optional<Hourglass> valuesCursor_;
};

}  // namespace td
