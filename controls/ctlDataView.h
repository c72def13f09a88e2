#pragma once
#include "controls/DataViewModel.h"
#include "controls/RecordRow.h"
#include "controls/ViewFormat.h"
#include <QElapsedTimer>
#include <QList>
#include <QWidget>
#include <functional>
#include <memory>

class QTimer;
class QTreeView;

namespace td {

class ctlDataView;
class StatusStrip;

// The rows of a data view as owners walk them, 1-based as everywhere in the console.
class ListItems {
public:
    explicit ListItems(ctlDataView& view) : view_(view) {}
    int Count() const;
    QString Text(int index) const;
    // Text of column n + 1.
    QString SubItems(int index, int n) const;
    Bookmark Tag(int index) const;
    QString Icon(int index) const;
    QString SmallIcon(int index) const;
    bool Selected(int index) const;
    void setSelected(int index, bool selected);
    // Rows from..to (1-based, inclusive) as one selection range: a thousand rows selected one by one
    // would each cost every later row insertion a look at every range.
    void setSelected(int from, int to, bool selected);
    void EnsureVisible(int index);
    // The one selected item, brought into view, as after an add.
    void SelectOnly(int index);

private:
    ctlDataView& view_;
};

// A list in report style over the owner's recordset, with a status strip below. Columns come from
// the format file; a row keeps only its texts, its record's bookmark (Tag) and its images.
class ctlDataView : public QWidget {
    Q_OBJECT
public:
    explicit ctlDataView(QWidget* parent = nullptr);
    ~ctlDataView() override;

    // The recordset shown. The window owns it; the list only looks at it, and finds nothing once
    // the window has let it go.
    Recordset* mrsMain() const { return mrsMain_.lock().get(); }
    void setMrsMain(std::weak_ptr<Recordset> rs) { mrsMain_ = std::move(rs); }
    ListItems& MainItems() { return items_; }

    QString IniFile() const { return iniFile_; }
    void setIniFile(const QString& file) { iniFile_ = file; }
    int View() const { return view_; }
    void setView(int view) { view_ = view; }  // report style is the one this list draws

    bool LoadViewFormat();
    bool SaveViewFormat();
    bool ClearViewData();
    // Fills or refreshes the list to the end before answering; no event runs in between.
    bool LoadViewData(int piMaxItem = 0);
    bool RefreshViewData();
    // Starts filling the whole list in slices from the event loop, the window live between them; a
    // pass under way stops first. LoadFinished comes at the end, as it does after the two above.
    void BeginLoadViewData();
    // The same for a refresh against rows the owner has just read again into the recordset it
    // handed (a requery done elsewhere): rows are verified, changed, removed and added in slices.
    void BeginRefreshViewData();
    bool Loading() const { return pass_ != nullptr; }
    // Stops a pass under way where it is, as the cancel button does; the rows so far stay.
    void StopLoading();
    // Runs a pass under way to its end at once.
    void FinishLoading();
    void SetViewIcons(const ImageList* icons, const QString& iconId, const QString& iconField);
    void SetViewSmallIcons(const ImageList* icons, const QString& iconId, const QString& iconField);

    // Selected rows at 1..count in list order; element 0 is 0. Answers the count.
    int GetViewSelections(QList<int>& selItems) const;
    int MoveFirst();
    int MovePrevious();
    int MoveNext();
    int MoveLast();
    int MoveTo(int index);
    int SelectAll();
    int DeSelect();
    // The list's own commands as menus and buttons name them: "first", "previous", "next", "last",
    // "selectall", "deselect" (lower case). False, doing nothing, for any other word.
    bool ListCommand(const QString& keyword);

    bool AddViewItem(Bookmark bookmark, int& item);
    bool SaveViewItem(Bookmark bookmark, int item);
    bool DeleteViewItem(int item);

    const std::vector<ViewColumn>& Columns() const { return columns_; }
    bool MultiSelect() const;
    QTreeView* list() const { return lvwMain_; }
    DataViewModel* model() const { return model_; }
    StatusStrip* statusStrip() const { return strip_; }

signals:
    void Click();
    void DblClick();
    void KeyDown(int keyCode, int shift);
    void KeyPress(int keyAscii);
    void KeyUp(int keyCode, int shift);
    void MouseDown(int button, int shift, int x, int y);
    void MouseMove(int button, int shift, int x, int y);
    void MouseUp(int button, int shift, int x, int y);
    void Resize();
    void ItemsSelected(const QList<int>& selItems);
    // A count of -1 means no news: the owner keeps what it shows.
    void StateChanged(int total, int selected, const QString& message);
    // A load or refresh pass has ended: at its end, on cancel, or failed (ok false, after its message).
    void LoadFinished(bool ok);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    std::weak_ptr<Recordset> mrsMain_;
    friend class ListItems;
    Recordset& recordset() const;
    RecordRow rowReader() const;
    void appendRecord(const RecordRow& reader, qsizetype position, QString& scratch);
    struct Pass;
    // How long a slice may run; a budget below zero runs the pass to its end.
    struct PassSlice {
        QElapsedTimer timer;
        qint64 budgetMs = -1;
    };
    static constexpr qint64 kSliceMs = 20;
    static PassSlice sliceTimer();
    bool beginPass(bool refreshing, int maxItems, bool requery);
    bool runPass(const PassSlice& slice);
    bool sliceOver(const PassSlice& slice) const;
    bool verifySome(const PassSlice& slice);
    void startAdding();
    bool addSome(const PassSlice& slice);
    bool endPass();
    bool runWholePass(bool refreshing, int maxItems);
    void nextSlice();
    void reportLoadFailure(const std::exception& e);
    void completeIfShort();
    void ColumnClick(int column);
    void ItemClick(const QModelIndex& index);
    void UpdateViewState();
    void Move(const QString& tag);

    bool isRowSelected(int row) const;
    void selectRow(int row, bool selected);
    void selectRows(int from, int to, bool selected);
    void selectOnly(int row, int keepFrom, int keepTo);
    void showRow(int row);

    QTreeView* lvwMain_ = nullptr;
    DataViewModel* model_ = nullptr;
    StatusStrip* strip_ = nullptr;
    ListItems items_{*this};
    QString iniFile_;
    int view_ = 3;
    std::vector<ViewColumn> columns_;
    ImageRule icon_, smallIcon_;
    const ImageList* icons_ = nullptr;
    const ImageList* smallIcons_ = nullptr;
    bool sorted_ = false;
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
    int lastMouseButton_ = 0;
    std::unique_ptr<Pass> pass_;
    QTimer* sliceTimer_ = nullptr;
};

}  // namespace td
