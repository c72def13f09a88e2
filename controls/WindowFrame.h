#pragma once
#include <QString>

class QWidget;

namespace td {

// The three panes of the frame's status bar that the window in front writes.
enum class StatusPane { Total, Selected, Log };

// What a working window sees of the frame it lives in. The frame hands every window its own, bound
// to that window when the window is made, so the window never names itself and never looks for the
// frame. Pane texts are kept per window: a write shows while the window is the frame's active child,
// and the window's last texts come back when it is activated again.
class WindowFrame {
public:
    virtual ~WindowFrame() = default;

    virtual void setPane(StatusPane pane, const QString& text) = 0;
    // The window's own menu on the frame's menu bar ("mnuSong"): the frame shows it while the
    // window is open and hides it when the window closes.
    virtual void setOwnMenu(const QString& menuName) = 0;
    // Pops up a menu of the frame by its name ("mnuMedia") at the mouse.
    virtual void popupMenu(const QString& menuName) = 0;
    // The check mark of a menu entry by its name ("mnuSongViewProperty").
    virtual void setMenuChecked(const QString& entry, bool checked) = 0;
    virtual bool menuChecked(const QString& entry) const = 0;
    // Shows another working window by its name ("frmSinger") and gives it the focus.
    virtual void showWindow(const QString& name) = 0;
    // The window is closing: its panes and its menu leave the frame.
    virtual void windowClosed() = 0;
    // The owner of the dialogs the window shows; nullptr leaves them without one.
    virtual QWidget* dialogOwner() const = 0;
    // Whether a menu of the frame ("mnuSong") is on the menu bar now, that is, its window is open.
    virtual bool menuVisible(const QString& /*menuName*/) const { return false; }
    // Hands a command keyword to another working window ("frmSong", "refresh"), loading it if needed.
    virtual void windowCommand(const QString& /*window*/, const QString& /*keyword*/) {}
};

// The frame of a modal dialog: no panes, no menus, only the window it stands over.
class OwnerFrame : public WindowFrame {
public:
    explicit OwnerFrame(QWidget* owner = nullptr) : owner_(owner) {}
    void setPane(StatusPane, const QString&) override {}
    void setOwnMenu(const QString&) override {}
    void popupMenu(const QString&) override {}
    void setMenuChecked(const QString&, bool) override {}
    bool menuChecked(const QString&) const override { return false; }
    void showWindow(const QString&) override {}
    void windowClosed() override {}
    QWidget* dialogOwner() const override { return owner_; }

private:
    QWidget* owner_;
};

// The frame of a window made on its own (tests, benchmarks, tools): everything does nothing.
WindowFrame& NoFrame();

}  // namespace td
