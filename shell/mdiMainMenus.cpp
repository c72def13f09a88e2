#include "shell/CommandTarget.h"
#include "shell/Main.h"
#include "shell/mdiMain.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Translate.h"
#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

namespace td {

QMenu* mdiMain::addMenu(QMenu* parent, const char* name, const char* caption)
{
    const QString text = QString::fromUtf8(caption);
    QMenu* m = parent ? parent->addMenu(text) : menuBar()->addMenu(text);
    m->setObjectName(QString::fromLatin1(name));
    m->menuAction()->setObjectName(QString::fromLatin1(name));
    m->menuAction()->setData(QString::fromUtf8(caption));
    menus_.insert(QString::fromLatin1(name), m);
    return m;
}

QAction* mdiMain::addEntry(QMenu* menu, const char* name, const char* caption, const char* shortcut,
                           std::function<void()> handler)
{
    QAction* a = menu->addAction(QString::fromUtf8(caption));
    a->setObjectName(QString::fromLatin1(name));
    a->setData(QString::fromUtf8(caption));
    if (shortcut && *shortcut)
        a->setShortcut(QKeySequence(QString::fromLatin1(shortcut)));
    connect(a, &QAction::triggered, this, std::move(handler));
    actions_.insert(QString::fromLatin1(name), a);
    return a;
}

void mdiMain::buildMenus()
{
    auto sep = [](QMenu* m) { m->addSeparator(); };
    auto info = [](const char* text) {
        return [text] { MsgInfo(TranslateText(QString::fromLatin1(text))); };
    };
    auto song = [this](const char* kw) { return [this, kw] { songCommand(QString::fromLatin1(kw)); }; };
    auto play = [this](const char* action) {
        return [this, action] { songPlay(QString::fromLatin1(action)); };
    };
    auto singer = [this](const char* kw) { return [this, kw] { singerCommand(QString::fromLatin1(kw)); }; };
    auto window = [this](const char* name) { return [this, name] { guarded(QString::fromLatin1(name)); }; };
    // An entry that was checked before the click hides its panel, an unchecked one shows it. Qt has
    // flipped the mark by the time the handler runs, so the mark now is the opposite of before.
    auto view = [this](const char* entry, bool songbook, const char* what) {
        return [this, entry, songbook, what] {
            const bool wasChecked = !actions_.value(QString::fromLatin1(entry))->isChecked();
            const QString kw =
                (wasChecked ? QStringLiteral("hide") : QStringLiteral("show")) + QString::fromLatin1(what);
            songbook ? songCommand(kw) : singerCommand(kw);
        };
    };

    QMenu* m = addMenu(nullptr, "mnuServer", "Server (&S)");
    addEntry(m, "mnuLogin", "Login ... (&U)", nullptr, info("No support"));
    addEntry(m, "mnuChangePassword", "Change password ... (&C)", nullptr, info("No Support"));
    sep(m);
    addEntry(m, "mnuExit", "Exit (&E)", nullptr, [] { AppTerminate(); });

    m = addMenu(nullptr, "mnuManage", "Manage (&M)");
    addEntry(m, "mnuManaSong", "Songbook ... (&B)", nullptr, window("frmSong"));
    addEntry(m, "mnuManaSinger", "Singer ... (&S)", nullptr, window("frmSinger"));
    sep(m);
    addEntry(m, "mnuManaLib", "Library ... (&L)", nullptr, window("frmLibMana"));

    m = addMenu(nullptr, "mnuSong", "Songbook (&B)");
    addEntry(m, "mnuSongFirst", "First (&F)", nullptr, song("first"));
    addEntry(m, "mnuSongPrevious", "Previous (&P)", "Ctrl+Q", song("previous"));
    addEntry(m, "mnuSongNext", "Next (&N)", "Ctrl+W", song("next"));
    addEntry(m, "mnuSongLast", "Last (&L)", nullptr, song("last"));
    sep(m);
    addEntry(m, "mnuSongSelect", "Select all", nullptr, song("selectall"));
    addEntry(m, "mnuSongDeselect", "Deselect", nullptr, song("deselect"));
    sep(m);
    addEntry(m, "mnuSongAdd", "Add (&A)", "Ctrl+I", song("add"));
    addEntry(m, "mnuSongSave", "Save (&S)", "Ctrl+S", song("save"));
    addEntry(m, "mnuSongDelete", "Delete (&D)", "Ctrl+D", song("delete"));
    addEntry(m, "mnuSongIndex", "Index (&X)", nullptr, song("index"));
    addEntry(m, "mnuSongCount", "Recount chars ... (&C)", nullptr, song("chars"));
    addEntry(m, "mnuSongChannels", "Detect channels ... (&H)", nullptr, song("channels"));
    sep(m);
    addEntry(m, "mnuSongPreview", "Preview (&V)", "Ctrl+V", play("preview"));
    addEntry(m, "mnuSongPlay", "Play (&P)", "Ctrl+P", play("p"));
    addEntry(m, "mnuSongPlayAdd", "Add to program list (&A)", nullptr, play("a"));
    addEntry(m, "mnuSongPlayInsert", "Insert to program list (&I)", nullptr, play("i"));
    sep(m);
    QMenu* v = addMenu(m, "mnuSongView", "View (&W)");
    addEntry(v, "mnuSongViewProperty", "Property window", nullptr,
             view("mnuSongViewProperty", true, "property"))
        ->setCheckable(true);
    addEntry(v, "mnuSongViewPreview", "Preview window", nullptr, view("mnuSongViewPreview", true, "preview"))
        ->setCheckable(true);
    sep(m);
    addEntry(m, "mnuSongRefresh", "Refresh (&R)", "F5", song("refresh"));

    // Popped up by the songbook over its media list; never on the menu bar.
    m = addMenu(nullptr, "mnuMedia", "Media (&E)");
    auto media = [this](const char* action) {
        return [this, action] {
            if (CommandTarget* t = target(QStringLiteral("frmSong")))
                t->PlaySong(QStringLiteral("media"), QString::fromLatin1(action));
        };
    };
    addEntry(m, "mnuMediaPreview", "Preview (&V)", nullptr, media("preview"));
    addEntry(m, "mnuMediaPlay", "Play (&P)", nullptr, media("p"));
    addEntry(m, "mnuMediaPlayAdd", "Add to program list (&A)", nullptr, media("a"));
    addEntry(m, "mnuMediaPlayInsert", "Insert to program list (&I)", nullptr, media("i"));

    m = addMenu(nullptr, "mnuSinger", "Singer (&G)");
    addEntry(m, "mnuSingerFirst", "First (&F)", nullptr, singer("first"));
    addEntry(m, "mnuSingerPrevious", "Previous (&P)", nullptr, singer("previous"));
    addEntry(m, "mnuSingerNext", "Next (&N)", nullptr, singer("next"));
    addEntry(m, "mnuSingerLast", "Last (&L)", nullptr, singer("last"));
    sep(m);
    addEntry(m, "mnuSingerSelect", "Select all", nullptr, singer("selectall"));
    addEntry(m, "mnuSingerDeselect", "Deselect", nullptr, singer("deselect"));
    sep(m);
    addEntry(m, "mnuSingerAdd", "Add (&A)", nullptr, singer("add"));
    addEntry(m, "mnuSingerSave", "Save (&S)", nullptr, singer("save"));
    addEntry(m, "mnuSingerDelete", "Delete (&D)", nullptr, singer("delete"));
    sep(m);
    addEntry(m, "mnuSingerExport", "Export to folder ... (&E)", nullptr, singer("export"));
    addEntry(m, "mnuSingerImport", "Import from folder ... (&I)", nullptr, singer("import"));
    sep(m);
    v = addMenu(m, "mnuSingerView", "View (&W)");
    addEntry(v, "mnuSingerViewProperty", "Property window", nullptr,
             view("mnuSingerViewProperty", false, "property"))
        ->setCheckable(true);
    addEntry(v, "mnuSingerViewPreview", "Preview window", nullptr,
             view("mnuSingerViewPreview", false, "preview"))
        ->setCheckable(true);
    sep(m);
    addEntry(m, "mnuSingerRefresh", "Refresh (&R)", nullptr, singer("refresh"));

    m = addMenu(nullptr, "mnuTool", "Tools (&T)");
    addEntry(m, "mnuToolCopy", "Copy media files from disc to library ... (&C)", nullptr,
             window("frmCopyDisc"));
    addEntry(m, "mnuToolPrint", "Print songbook ... (&P)", nullptr, window("frmPrint"));
    addEntry(m, "mnuToolBooklet", "Song booklet ... (&B)", nullptr, window("frmBooklet"));
    addEntry(m, "mnuToolCheck", "Check songbook (&K)", nullptr, window("frmCheckBook"));
    sep(m);
    addEntry(m, "mnuToolExport", "Export songs and singers ... (&E)", nullptr, window("frmExportBook"));
    addEntry(m, "mnuToolImport", "Import songs and singers ... (&I)", nullptr, window("frmImportBook"));

    m = addMenu(nullptr, "mnuConf", "Configuration (&C)");
    addEntry(m, "mnuConfData", "Database ... (&D)", nullptr, [] { ChangeDatabase(); });
    sep(m);
    addEntry(m, "mnuRegionAvailable", "Available region ... (&A)", nullptr, window("frmAvailableRegion"));
    addEntry(m, "mnuRegionGlobe", "Globe region for songs ... (&G)", nullptr, window("frmGlobeRegion"));
    addEntry(m, "mnuRegionDefault", "Default region for interface ... (&D)", nullptr,
             window("frmDefaultRegion"));
    sep(m);
    addEntry(m, "mnuConfOptions", "Options ... (&O)", nullptr, window("frmOptions"));

    m = addMenu(nullptr, "mnuWindow", "Window (&W)");
    connect(m, &QMenu::aboutToShow, this, &mdiMain::fillWindowMenu);

    m = addMenu(nullptr, "mnuHelp", "Help (&H)");
    addEntry(m, "mnuHelpCont", "User guide ... (&G)", nullptr, [this] { openUserGuide(); });
    sep(m);
    addEntry(m, "mnuAbout", "About ... (&A)", nullptr, [this] { showAbout(); });
}

}  // namespace td
