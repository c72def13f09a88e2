#pragma once
#include "controls/BusyWindow.h"
#include "controls/WindowFrame.h"
#include "songdb/Recordset.h"
#include <QWidget>
#include <memory>
#include <optional>

namespace td {

class BackgroundRead;
class ctlButtons;
class ctlDataFields;
class ctlDataView;

// A working window over one list of records, as the songbook, the singers and the library manager
// are: the list, the record editor and the button bar take their looks from the window's format file
// List<Name>.ini beside the program; a button gives its class word to ExecuteCommand; the list's
// counts and messages go to the frame's status panes. The window owns the list's recordset: LoadList
// reads it in the background and fills the list in slices, the window live all along, and hands the
// controls a weak handle. On close a list that is still loading stops, the list's column layout goes
// back to the format file and the window's menu leaves the frame.
class DataWindow : public QWidget {
    Q_OBJECT
public:
    // listName "Song" gives the format file ListSong.ini.
    DataWindow(WindowFrame& frame, const QString& listName, QWidget* parent = nullptr);

    // The window's commands, from its buttons and from the frame's menus; unknown ones do nothing.
    virtual void ExecuteCommand(const QString& command) = 0;

    WindowFrame& Frame() const { return frame_; }
    // <program dir>/List<Name>.ini, as the last LoadFormats set it.
    QString FormatFile() const { return formatFile_; }

    void SetPane(StatusPane pane, const QString& text) { frame_.setPane(pane, text); }
    void SetLogPane(const QString& text) { SetPane(StatusPane::Log, text); }

    // True from LoadList or RefreshList until the list has all its rows, was stopped, or the read failed.
    bool ListLoading() const;

protected:
    struct Parts {
        ctlDataView* view = nullptr;
        ctlDataFields* fields = nullptr;  // may be missing
        ctlButtons* buttons = nullptr;    // may be missing
        QString countWord;                // after the total: " song(s)"
        QString menu;                     // the window's own menu on the frame: "mnuSong"
    };
    // Wires the controls once they are made: button clicks, the list's state, the window's menu.
    void BindParts(const Parts& parts);
    // The designed texts kept, then shown in the interface language; every window's load begins so.
    void LoadWindowText();
    // Gives the format file to the list, the buttons and the editor, and loads their formats.
    void LoadFormats();

    // Starts the list's search: the statement is read on a connection of its own in the background,
    // then the list fills in slices. A read or fill under way gives way. False, after the message of
    // ListReadFailed, when no database is open.
    bool LoadList(const QString& sql);
    // Reads the list's statement again in the background and brings the list up to date in slices,
    // keeping its selection; false while a load is under way or there is no list.
    bool RefreshList();
    // Drops a read under way and stops a fill where it is; a click on the last rows completes it later.
    void StopListLoading();
    // A failed read of LoadList; by default "<statement runner> failed!" with the statement.
    virtual void ListReadFailed(const QString& sql, const QString& description);

    // What the window itself stops on close (a preview, ...), before the list stops.
    virtual void WindowClosing() {}

    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;

    // The list's recordset; the window owns it and hands the controls weak handles.
    std::shared_ptr<Recordset> rsMain_;

private:
    void viewStateChanged(int total, int selected, const QString& message);
    void listReadFinished(bool ok);
    void startRead(const QString& sql);

    WindowFrame& frame_;
    QString listName_;
    QString formatFile_;
    Parts parts_;
    bool closed_ = false;
    BackgroundRead* listRead_ = nullptr;
    bool refreshing_ = false;              // the read under way is a refresh of the list shown
    std::optional<Hourglass> listCursor_;  // shows while the rows are read
};

}  // namespace td
