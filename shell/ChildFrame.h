#pragma once
#include "controls/WindowFrame.h"
#include <QPointer>
#include <QWidget>
#include <array>

namespace td {

class mdiMain;

// The frame as one working window sees it: made by mdiMain before the window, handed to the
// window's factory, bound to the window once it exists. It keeps the window's pane texts and its
// own menu, and lets the frame decide what the status bar and the menu bar show.
class ChildFrame final : public WindowFrame {
public:
    explicit ChildFrame(mdiMain& frame) : frame_(frame) {}

    void bind(QWidget* window) { window_ = window; }
    QWidget* window() const { return window_.data(); }
    // Made, bound and not closed.
    bool isOpen() const { return window_ && !closed_; }
    void setClosed(bool closed) { closed_ = closed; }
    QString ownMenu() const { return menu_; }
    QString paneText(StatusPane pane) const { return panes_[std::size_t(pane)]; }

    void setPane(StatusPane pane, const QString& text) override;
    void setOwnMenu(const QString& menuName) override;
    void popupMenu(const QString& menuName) override;
    void setMenuChecked(const QString& entry, bool checked) override;
    bool menuChecked(const QString& entry) const override;
    void showWindow(const QString& name) override;
    void windowClosed() override;
    QWidget* dialogOwner() const override;
    bool menuVisible(const QString& menuName) const override;
    void windowCommand(const QString& window, const QString& keyword) override;

private:
    mdiMain& frame_;
    QPointer<QWidget> window_;
    QString menu_;
    std::array<QString, 3> panes_;
    bool closed_ = false;
};

}  // namespace td
