#pragma once
#include "controls/WindowFrame.h"
#include <QWidget>

namespace td {

class ctlButtons;
class ctlDataFields;
class ctlDataView;

// A working window over one list of records, as the songbook, the singers and the library manager
// are: the list, the record editor and the button bar take their looks from the window's format file
// List<Name>.ini beside the program; a button gives its class word to ExecuteCommand; the list's
// counts and messages go to the frame's status panes. On close a list that is still filling stops,
// the list's column layout goes back to the format file and the window's menu leaves the frame.
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

    // What the window itself stops on close (a preview, ...), before the list stops.
    virtual void WindowClosing() {}
    // Stops a list that is still filling: the cancel of the list's status strip, when it shows.
    virtual void StopListLoading();

    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void viewStateChanged(int total, int selected, const QString& message);

    WindowFrame& frame_;
    QString listName_;
    QString formatFile_;
    Parts parts_;
    bool closed_ = false;
};

}  // namespace td
