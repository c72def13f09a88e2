#pragma once
#include "controls/WindowFrame.h"
#include <QHash>
#include <QMainWindow>
#include <QPointer>
#include <QSet>
#include <functional>
#include <memory>
#include <vector>

class QAction;
class QLabel;
class QMdiArea;
class QMenu;
class QToolBar;

namespace td {

class ChildFrame;
class CommandTarget;

// The frame: menu bar, toolbar and status bar around the working windows. It holds no data; every
// menu entry and toolbar button routes to a window's ExecuteCommand or opens a window.
class mdiMain : public QMainWindow {
    Q_OBJECT
public:
    // Makes a working window (frmSong, frmSinger, frmLibMana, ...) as a child of the frame. The window
    // reaches the frame only through the WindowFrame handed to it, which stays valid for its life.
    using WindowFactory = std::function<QWidget*(WindowFrame&)>;

    explicit mdiMain(QWidget* parent = nullptr);
    ~mdiMain() override;

    static void registerWindow(const QString& name, WindowFactory factory);
    static bool isRegistered(const QString& name);

    // Shows the named window inside the frame, loading it when needed, and gives it the focus.
    QWidget* ShowWindow(const QString& name);
    // The open child window of that name, or nullptr; a window that has closed is not open.
    QWidget* child(const QString& name) const;
    QList<QWidget*> children() const;
    QMdiArea* area() const { return area_; }
    // The child whose panes the status bar shows, or nullptr.
    QWidget* activeChild() const { return active_.data(); }
    // Closes every child window, the last opened first.
    void CloseChildren();

    // Status bar panes by key: total, selected, log, date, time.
    QString pane(const QString& key) const;
    QString pane(StatusPane pane) const;

    // Menu entries and menus by their names ("mnuSongSave", "mnuSong").
    QAction* menuAction(const QString& name) const;
    QMenu* menu(const QString& name) const;
    QToolBar* toolbar() const { return tlbDefault_; }

    // Runs a toolbar button's click by its key ("login", "database", ...); an unknown key does nothing.
    void toolbarClick(const QString& key);
    // True while the frame is being unloaded; the end of the program is then under way.
    bool unloading() const { return unloading_; }

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    friend class ChildFrame;
    void buildMenus();
    QMenu* addMenu(QMenu* parent, const char* name, const char* caption);
    QAction* addEntry(QMenu* menu, const char* name, const char* caption, const char* shortcut,
                      std::function<void()> handler);
    void buildStatusBar();
    void buildToolbar();
    void updateClock();
    void setPane(const QString& key, const QString& text);
    void fillWindowMenu();
    // The children: which one is in front, what the status bar and the menu bar show for them.
    ChildFrame* frameOf(const QWidget* w) const;
    bool isOpenChild(const QWidget* w) const;
    void setActiveChild(QWidget* w);
    QWidget* nextActiveChild(const QWidget* leaving) const;
    void showPane(StatusPane pane, const QString& text);
    void updateOwnMenus();
    void childClosed(const QWidget* w);
    void childDestroyed();
    bool guard();
    void guarded(const QString& window);
    void songCommand(const QString& keyword);
    void songPlay(const QString& action);
    void singerCommand(const QString& keyword);
    void openUserGuide();
    void showAbout();
    CommandTarget* target(const QString& window);

    QMdiArea* area_ = nullptr;
    QToolBar* tlbDefault_ = nullptr;
    QHash<QString, QLabel*> panes_;
    QHash<QString, QAction*> actions_;
    QHash<QString, QMenu*> menus_;
    QHash<QString, QString> toolbarMenu_;  // toolbar key -> menu entry name
    std::vector<std::unique_ptr<ChildFrame>> childFrames_;
    QPointer<QWidget> active_;
    QSet<QString> ownMenus_;  // every menu a window has called its own
    bool unloading_ = false;
};

// The one frame of the run, or nullptr before it is made.
mdiMain* MainFrame();

}  // namespace td
