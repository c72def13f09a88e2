#include "shell/mdiMain.h"
#include "regions/WindowText.h"
#include "shell/AboutBox.h"
#include "shell/ChildFrame.h"
#include "shell/CommandTarget.h"
#include "shell/FrameGeometry.h"
#include "shell/Main.h"
#include "shell/MenuAccessKeys.h"
#include "shell/ToolbarIcons.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Shell.h"
#include "shell/services/Translate.h"
#include "songdb/SongSession.h"
#include <QAction>
#include <QCloseEvent>
#include <QDateTime>
#include <QLabel>
#include <QLayout>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QStatusBar>
#include <QStyle>
#include <QTimer>
#include <QToolBar>
#include <utility>

namespace td {
namespace {

QHash<QString, mdiMain::WindowFactory>& factories()
{
    static QHash<QString, mdiMain::WindowFactory> f;
    return f;
}

QPointer<mdiMain>& theFrame()
{
    static QPointer<mdiMain> frame;
    return frame;
}

const QStringList kPaneKeys = {QStringLiteral("total"), QStringLiteral("selected"), QStringLiteral("log"),
                               QStringLiteral("date"), QStringLiteral("time")};

}  // namespace

mdiMain* MainFrame()
{
    return theFrame().data();
}

void mdiMain::registerWindow(const QString& name, WindowFactory factory)
{
    factories().insert(name, std::move(factory));
}
bool mdiMain::isRegistered(const QString& name)
{
    return factories().contains(name);
}

mdiMain::mdiMain(QWidget* parent) : QMainWindow(parent)
{
    setObjectName(QStringLiteral("mdiMain"));
    setWindowTitle(QStringLiteral("Tunedesk"));
    theFrame() = this;
    area_ = new QMdiArea(this);
    area_->setObjectName(QStringLiteral("mdiArea"));
    area_->setViewMode(QMdiArea::SubWindowView);
    // A settings window opened over the maximized songbook keeps its own size.
    area_->setOption(QMdiArea::DontMaximizeSubWindowOnActivation);
    setCentralWidget(area_);
    // The child in front writes the status panes; a frame that loses the focus keeps what it shows.
    connect(area_, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow* sub) {
        if (sub && sub->widget())
            setActiveChild(sub->widget());
    });
    buildMenus();
    new MenuAccessKeys(menuBar());
    buildToolbar();
    buildStatusBar();
    ExportWindowText(this);
    ApplyWindowText(this);
    // The clock starts after the designed texts are kept, so the time is never taken for a caption.
    auto* clock = new QTimer(this);
    connect(clock, &QTimer::timeout, this, &mdiMain::updateClock);
    clock->start(1000);
    updateClock();
    // The songbook and singer menus appear only while their windows are open.
    for (const char* m : {"mnuSong", "mnuMedia", "mnuSinger"})
        menus_.value(QString::fromLatin1(m))->menuAction()->setVisible(false);
    RestoreFrameGeometry(this);
}

mdiMain::~mdiMain()
{
    // Children go first, while the menus they report their going to still exist.
    delete std::exchange(area_, nullptr);
    if (theFrame() == this)
        theFrame() = nullptr;
}

void mdiMain::buildStatusBar()
{
    auto* bar = new QStatusBar(this);
    bar->setObjectName(QStringLiteral("staMain"));
    setStatusBar(bar);
    for (const QString& key : kPaneKeys) {
        auto* label = new QLabel(this);
        label->setObjectName(QStringLiteral("staMain_") + key);
        label->setFrameShape(QFrame::StyledPanel);
        label->setMinimumWidth(key == QLatin1String("log") ? 260 : 110);
        label->setContentsMargins(4, 0, 4, 0);
        if (key == QLatin1String("log"))
            bar->addWidget(label, 1);
        else
            bar->addPermanentWidget(label);
        panes_.insert(key, label);
    }
    // total and selected stand at the left, before the log.
    bar->insertWidget(0, panes_.value(QStringLiteral("total")));
    bar->insertWidget(1, panes_.value(QStringLiteral("selected")));
}

void mdiMain::updateClock()
{
    const QDateTime now = QDateTime::currentDateTime();
    setPane(QStringLiteral("date"), QLocale::system().toString(now.date(), QLocale::ShortFormat));
    setPane(QStringLiteral("time"), now.time().toString(QStringLiteral("HH:mm:ss")));
}

void mdiMain::setPane(const QString& key, const QString& text)
{
    if (QLabel* l = panes_.value(key))
        l->setText(text);
}

QString mdiMain::pane(const QString& key) const
{
    QLabel* l = panes_.value(key);
    return l ? l->text() : QString();
}

QString mdiMain::pane(StatusPane pane) const
{
    return this->pane(kPaneKeys[int(pane)]);
}

void mdiMain::showPane(StatusPane pane, const QString& text)
{
    setPane(kPaneKeys[int(pane)], text);
}

QAction* mdiMain::menuAction(const QString& name) const
{
    return actions_.value(name);
}
QMenu* mdiMain::menu(const QString& name) const
{
    return menus_.value(name);
}

void mdiMain::buildToolbar()
{
    struct Button {
        const char *key, *caption, *menuEntry, *themeIcon;
        QStyle::StandardPixmap icon;
    };
    static const Button buttons[] = {
        {"login", "Login ...", "mnuLogin", "system-users", QStyle::SP_DialogApplyButton},
        {"library", "Library ...", "mnuManaLib", "folder-music", QStyle::SP_DirHomeIcon},
        {"copydisc", "Copy media files from disc to library ...", "mnuToolCopy", "media-optical",
         QStyle::SP_DriveCDIcon},
        {"print", "Print songbook ...", "mnuToolPrint", "document-print", QStyle::SP_FileDialogDetailedView},
        {"database", "Database ...", "mnuConfData", "network-server", QStyle::SP_DriveHDIcon},
        {"options", "Options ...", "mnuConfOptions", "preferences-system", QStyle::SP_FileDialogContentsView},
        {"help", "Help", "mnuHelpCont", "help-contents", QStyle::SP_DialogHelpButton},
        {"about", "About", "mnuAbout", "help-about", QStyle::SP_MessageBoxInformation},
    };
    tlbDefault_ = addToolBar(QStringLiteral("tlbDefault"));
    tlbDefault_->setObjectName(QStringLiteral("tlbDefault"));
    tlbDefault_->setToolButtonStyle(Qt::ToolButtonIconOnly);
    tlbDefault_->setIconSize(QSize(24, 24));
    int index = 1;
    for (const Button& b : buttons) {
        const QString key = QString::fromLatin1(b.key);
        const QIcon icon = ToolbarIcon(b.themeIcon, b.icon, style());
        QAction* a = tlbDefault_->addAction(icon, QString::fromLatin1(b.caption));
        a->setObjectName(QStringLiteral("tlbDefault(%1)").arg(index++));
        a->setData(key);
        a->setToolTip(QString::fromLatin1(b.caption));
        toolbarMenu_.insert(key, QString::fromLatin1(b.menuEntry));
        connect(a, &QAction::triggered, this, [this, key] { toolbarClick(key); });
    }
}

void mdiMain::toolbarClick(const QString& key)
{
    // Button and menu entry are one action.
    if (QAction* entry = actions_.value(toolbarMenu_.value(key)))
        entry->trigger();
}

bool mdiMain::guard()
{
    if (SongDatabaseOpen())
        return true;
    MsgInfo(TranslateText(QStringLiteral("Please login first")));
    return false;
}

void mdiMain::guarded(const QString& window)
{
    if (guard())
        ShowWindow(window);
}

ChildFrame* mdiMain::frameOf(const QWidget* w) const
{
    if (!w)
        return nullptr;
    for (const auto& f : childFrames_)
        if (f->window() == w)
            return f.get();
    return nullptr;
}

bool mdiMain::isOpenChild(const QWidget* w) const
{
    const ChildFrame* f = frameOf(w);
    return f && f->isOpen();
}

QWidget* mdiMain::child(const QString& name) const
{
    if (!area_)
        return nullptr;
    for (QMdiSubWindow* sub : area_->subWindowList())
        if (isOpenChild(sub->widget()) && sub->widget()->objectName() == name)
            return sub->widget();
    return nullptr;
}

QList<QWidget*> mdiMain::children() const
{
    QList<QWidget*> out;
    if (!area_)
        return out;
    for (QMdiSubWindow* sub : area_->subWindowList())
        if (isOpenChild(sub->widget()))
            out << sub->widget();
    return out;
}

QWidget* mdiMain::ShowWindow(const QString& name)
{
    if (QWidget* w = child(name)) {
        area_->setActiveSubWindow(qobject_cast<QMdiSubWindow*>(w->parentWidget()));
        setActiveChild(w);
        w->setFocus();
        return w;
    }
    const auto factory = factories().value(name);
    if (!factory) {
        MsgInfo(TranslateText(QStringLiteral("This window is not available in this version yet.")));
        return nullptr;
    }
    auto frame = std::make_unique<ChildFrame>(*this);
    QWidget* w = factory(*frame);
    if (!w)
        return nullptr;
    w->setObjectName(name);
    w->setAttribute(Qt::WA_DeleteOnClose);
    QMdiSubWindow* sub = area_->addSubWindow(w);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    frame->bind(w);
    childFrames_.push_back(std::move(frame));
    // A window that hides for good has closed, whether or not it says so itself.
    w->installEventFilter(this);
    connect(w, &QObject::destroyed, this, &mdiMain::childDestroyed);
    if (w->layout())
        w->layout()->activate();
    if (w->minimumSize() == w->maximumSize()) {
        // A settings window keeps the size its texts need, in the middle of the area.
        sub->setWindowFlags(Qt::SubWindow | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                            Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
        sub->adjustSize();
        sub->move(std::max(0, (area_->width() - sub->width()) / 2),
                  std::max(0, (area_->height() - sub->height()) / 3));
        sub->show();
    } else {
        if (sub->size().width() < 400)
            sub->resize(area_->size() * 0.9);
        sub->showMaximized();
    }
    setActiveChild(w);
    updateOwnMenus();
    w->setFocus();
    return w;
}

void mdiMain::CloseChildren()
{
    const auto subs = area_->subWindowList(QMdiArea::CreationOrder);
    for (auto it = subs.rbegin(); it != subs.rend(); ++it)
        (*it)->close();
}

bool mdiMain::eventFilter(QObject* watched, QEvent* event)
{
    // Hidden by itself (not with the frame, and not as a minimized child): the window has closed.
    if (event->type() == QEvent::HideToParent || event->type() == QEvent::ShowToParent) {
        auto* w = qobject_cast<QWidget*>(watched);
        ChildFrame* f = frameOf(w);
        auto* sub = w ? qobject_cast<QMdiSubWindow*>(w->parentWidget()) : nullptr;
        if (f && event->type() == QEvent::HideToParent && !(sub && sub->isMinimized()))
            f->windowClosed();
        else if (f && event->type() == QEvent::ShowToParent && !f->isOpen()) {
            f->setClosed(false);
            updateOwnMenus();
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void mdiMain::setActiveChild(QWidget* w)
{
    active_ = isOpenChild(w) ? w : nullptr;
    // The panes show what the window in front last wrote; with none in front they are empty.
    const ChildFrame* f = frameOf(active_);
    for (StatusPane p : {StatusPane::Total, StatusPane::Selected, StatusPane::Log})
        showPane(p, f ? f->paneText(p) : QString());
}

QWidget* mdiMain::nextActiveChild(const QWidget* leaving) const
{
    if (!area_)
        return nullptr;  // the frame itself is going
    if (QMdiSubWindow* current = area_->currentSubWindow())
        if (current->widget() != leaving && isOpenChild(current->widget()))
            return current->widget();
    const auto subs = area_->subWindowList(QMdiArea::ActivationHistoryOrder);
    for (auto it = subs.rbegin(); it != subs.rend(); ++it)
        if ((*it)->widget() != leaving && isOpenChild((*it)->widget()))
            return (*it)->widget();
    return nullptr;
}

// The one place where the windows' own menus appear and go: a menu shows while a window that
// calls it its own is open.
void mdiMain::updateOwnMenus()
{
    for (const auto& f : childFrames_)
        if (!f->ownMenu().isEmpty())
            ownMenus_.insert(f->ownMenu());
    for (const QString& name : std::as_const(ownMenus_)) {
        bool open = false;
        for (const auto& f : childFrames_)
            open = open || (f->isOpen() && f->ownMenu() == name);
        if (QMenu* m = menus_.value(name))
            m->menuAction()->setVisible(open);
    }
}

void mdiMain::childClosed(const QWidget* w)
{
    if (!active_ || active_ == w)
        setActiveChild(nextActiveChild(w));
    updateOwnMenus();
}

void mdiMain::childDestroyed()
{
    // The window is gone; so is its frame, and the panes it showed.
    std::erase_if(childFrames_, [](const auto& f) { return !f->window(); });
    if (!isOpenChild(active_))
        setActiveChild(nextActiveChild(nullptr));
    updateOwnMenus();
}

CommandTarget* mdiMain::target(const QString& window)
{
    // A command to a child window loads that window if needed.
    QWidget* w = child(window);
    if (!w)
        w = ShowWindow(window);
    return dynamic_cast<CommandTarget*>(w);
}

void mdiMain::songCommand(const QString& keyword)
{
    if (CommandTarget* t = target(QStringLiteral("frmSong")))
        t->ExecuteCommand(keyword);
}

void mdiMain::songPlay(const QString& action)
{
    if (CommandTarget* t = target(QStringLiteral("frmSong")))
        t->PlaySong(QStringLiteral("songbook"), action);
}

void mdiMain::singerCommand(const QString& keyword)
{
    if (CommandTarget* t = target(QStringLiteral("frmSinger")))
        t->ExecuteCommand(keyword);
}

void mdiMain::fillWindowMenu()
{
    QMenu* m = menus_.value(QStringLiteral("mnuWindow"));
    m->clear();
    const auto subs = area_->subWindowList();
    for (QMdiSubWindow* sub : subs) {
        if (!isOpenChild(sub->widget()))
            continue;  // closed, and about to go
        QAction* a = m->addAction(sub->windowTitle());
        a->setCheckable(true);
        a->setChecked(sub == area_->activeSubWindow());
        connect(a, &QAction::triggered, this, [this, sub] { area_->setActiveSubWindow(sub); });
    }
}

void mdiMain::openUserGuide()
{
    OpenInternetShortcut(AppPath() + QStringLiteral("/userguide_home.htm"));
}

void mdiMain::showAbout()
{
    AboutBox box(this);
    box.exec();
}

void mdiMain::closeEvent(QCloseEvent* event)
{
    // Whatever closes the frame ends the program. The frame's place is kept for the next start, and
    // the children close first, so each keeps its own layout.
    if (!unloading_) {
        unloading_ = true;
        SaveFrameGeometry(this);
        CloseChildren();
        AppTerminate();
    }
    event->accept();
}

}  // namespace td
