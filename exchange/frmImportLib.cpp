#include "exchange/frmImportLib.h"
#include "exchange/IndexClassOptions.h"
#include "controls/JobRunner.h"
#include "exchange/LibraryImport.h"
#include "regions/RegionStore.h"
#include "regions/WindowText.h"
#include "shell/services/AppError.h"
#include "shell/services/Dialogs.h"
#include "shell/CommandTarget.h"
#include "shell/mdiMain.h"
#include "shell/services/Translate.h"
#include "songdb/CatalogueLookups.h"
#include "songdb/Connection.h"
#include "songdb/SongSession.h"
#include <QBoxLayout>
#include <QCheckBox>
#include <QEvent>
#include <QEventLoop>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>

namespace td {

namespace {

constexpr int kRemarkLength = 255;

// The remark box selects its whole text when it takes the focus, so typing replaces it.
class SelectOnFocus : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::FocusIn)
            if (auto* box = qobject_cast<QLineEdit*>(watched))
                QTimer::singleShot(0, box, &QLineEdit::selectAll);
        return false;
    }
};

// The main frame as the wizard sees it from a window inside it: the songbook's menu and its refresh.
class MainFrameOf : public OwnerFrame {
public:
    explicit MainFrameOf(QWidget* owner)
        : OwnerFrame(owner), main_(owner ? qobject_cast<mdiMain*>(owner->window()) : nullptr)
    {
    }
    bool menuVisible(const QString& menuName) const override
    {
        QMenu* m = main_ ? main_->menu(menuName) : nullptr;
        return m && m->menuAction()->isVisible();
    }
    void windowCommand(const QString& window, const QString& keyword) override
    {
        if (auto* target = dynamic_cast<CommandTarget*>(main_ ? main_->child(window) : nullptr))
            target->ExecuteCommand(keyword);
    }

private:
    mdiMain* main_;
};

}  // namespace

frmImportLib::frmImportLib(const QString& libraryPath, WindowFrame& frame)
    : QDialog(frame.dialogOwner()), frame_(frame), library_(libraryPath)
{
    setObjectName(QStringLiteral("frmImportLib"));
    setWindowTitle(QStringLiteral("Library import wizard"));
    setModal(true);
    build();
    try {
        load();
        loaded_ = true;
    } catch (const std::exception& e) {
        MsgError(QStringLiteral("Load import wizard failed, can't import! ") + ErrSuffix(e));
        QTimer::singleShot(0, this, &QDialog::reject);
    }
}

void frmImportLib::build()
{
    auto named = [](QWidget* w, const char* name) {
        w->setObjectName(QString::fromLatin1(name));
        return w;
    };
    lblFrom_ = static_cast<QLabel*>(named(new QLabel(this), "lblFrom"));
    lblTo_ = static_cast<QLabel*>(named(new QLabel(this), "lblTo"));
    for (QLabel* l : {lblFrom_, lblTo_})
        l->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto* lblRegion = named(new QLabel(QStringLiteral("Only import songs in selected language"), this), "lblRegion");
    lstRegion_ = static_cast<QListWidget*>(named(new QListWidget(this), "lstRegion"));
    lstRegion_->setSelectionMode(QAbstractItemView::MultiSelection);

    auto* fraIndex = named(new QGroupBox(QStringLiteral("Index of new songs"), this), "fraIndex");
    const char* captions[] = {"Import form library", "Auto index", "Leave blank"};
    auto* indexGrid = new QGridLayout(fraIndex);
    for (int i = 0; i < 3; ++i) {
        optIndex_[i] = new QRadioButton(QString::fromLatin1(captions[i]), fraIndex);
        optIndex_[i]->setObjectName(QStringLiteral("optIndex%1").arg(i));
        indexGrid->addWidget(optIndex_[i], i, 0);
        connect(optIndex_[i], &QRadioButton::clicked, this, [this] { optionClick(); });
    }
    txtFrom_ = static_cast<QLineEdit*>(named(new QLineEdit(fraIndex), "txtFrom"));
    indexGrid->addWidget(txtFrom_, 1, 1);
    chkIndex_ = static_cast<QCheckBox*>(named(new QCheckBox(QStringLiteral("Check song's index before import"), fraIndex), "chkIndex"));
    indexGrid->addWidget(chkIndex_, 3, 0, 1, 2);
    indexGrid->setColumnStretch(1, 1);

    auto* fraRemark = named(new QGroupBox(QStringLiteral("Remark"), this), "fraRemark");
    txtRemark_ = static_cast<QLineEdit*>(named(new QLineEdit(fraRemark), "txtRemark"));
    txtRemark_->installEventFilter(new SelectOnFocus(txtRemark_));
    (new QVBoxLayout(fraRemark))->addWidget(txtRemark_);

    cmdImport_ = static_cast<QPushButton*>(named(new QPushButton(QStringLiteral("Start (&S)"), this), "cmdImport"));
    cmdSave_ = static_cast<QPushButton*>(named(new QPushButton(QStringLiteral("Save as default (&S)"), this), "cmdSave"));
    cmdClose_ = static_cast<QPushButton*>(named(new QPushButton(QStringLiteral("Close (&C)"), this), "cmdClose"));
    connect(cmdImport_, &QPushButton::clicked, this, [this] { startImport(); });
    connect(cmdSave_, &QPushButton::clicked, this, [this] { saveDefaults(); });
    connect(cmdClose_, &QPushButton::clicked, this, &QDialog::reject);

    auto* choices = new QHBoxLayout;
    auto* regions = new QVBoxLayout;
    regions->addWidget(lblRegion);
    regions->addWidget(lstRegion_, 1);
    choices->addLayout(regions, 1);
    auto* right = new QVBoxLayout;
    right->addWidget(fraIndex);
    right->addStretch(1);
    choices->addLayout(right, 1);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    for (QPushButton* b : {cmdImport_, cmdSave_, cmdClose_})
        buttons->addWidget(b);

    auto* page = new QVBoxLayout(this);
    page->addWidget(lblFrom_);
    page->addWidget(lblTo_);
    page->addLayout(choices, 1);
    page->addWidget(fraRemark);
    page->addLayout(buttons);
    resize(640, 420);
}

void frmImportLib::load()
{
    ExportWindowText(this);
    ApplyWindowText(this);
    lblFrom_->setText(TranslateText(QStringLiteral("Source")) + QStringLiteral(" - ") + library_);
    lblTo_->setText(TranslateText(QStringLiteral("Destination")) + QStringLiteral(" - ") + SongDatabaseFile());

    const LibraryImportSettings defaults = DefaultLibraryImportSettings(SongDatabaseOpen() ? SongMinIndex() : 0);
    indexOptions().show(defaults.indexClass, defaults.indexFrom);
    chkIndex_->setChecked(defaults.checkIndex);

    TextArray names;
    GetInterfaceRegions(names);
    regionNames_ = names;
    for (int i = 1; i <= UBound(regionNames_); ++i) {
        auto* item = new QListWidgetItem(TranslateText(regionNames_[i]) + QStringLiteral(" (") + regionNames_[i] +
                                         u')', lstRegion_);
        item->setData(Qt::UserRole, i);
        item->setSelected(true);
    }
    // Songs without a region sit in the section "[]".
    regionNames_ << QString();
    auto* item = new QListWidgetItem(
        TranslateText(QStringLiteral("Any Region")) + QStringLiteral(" (Any Region)"), lstRegion_);
    item->setData(Qt::UserRole, UBound(regionNames_));
    item->setSelected(true);

    txtRemark_->setText(LibraryImportRemark(library_));
}

IndexClassOptions frmImportLib::indexOptions() const
{
    return {{optIndex_[0], optIndex_[1], optIndex_[2]}, txtFrom_};
}

QString frmImportLib::GetImportClass(const QString& cls) const
{
    const QString c = cls.toLower();
    if (c == u"index")
        return indexOptions().checked();
    if (c == u"indexfrom")
        return txtFrom_->text();
    return {};
}

void frmImportLib::optionClick()
{
    txtFrom_->setEnabled(optIndex_[1]->isChecked());
}

void frmImportLib::saveDefaults()
{
    SaveLibraryImportDefaults(chosen());
}

LibraryImportSettings frmImportLib::chosen() const
{
    LibraryImportSettings s;
    s.library = library_;
    for (int i = 0; i < lstRegion_->count(); ++i)
        if (lstRegion_->item(i)->isSelected())
            s.regions << regionNames_.value(lstRegion_->item(i)->data(Qt::UserRole).toInt());
    s.indexClass = GetImportClass(QStringLiteral("index"));
    s.indexFrom = GetImportClass(QStringLiteral("indexfrom"));
    s.checkIndex = chkIndex_->isChecked();
    s.remark = txtRemark_->text();
    return s;
}

void frmImportLib::startImport()
{
    if (!SongDatabaseOpen()) {
        MsgInfo(TranslateText(QStringLiteral("Please login first")));
        reject();
        return;
    }
    if (txtRemark_->text().size() > kRemarkLength)
        txtRemark_->setText(txtRemark_->text().left(kRemarkLength));
    const LibraryImportSettings settings = chosen();
    const QString database = SongDatabaseFile();
    bool reachedEnd = false;
    {
        JobRunner runner(this);
        QEventLoop loop;
        connect(&runner, &JobRunner::Finished, &loop, &QEventLoop::quit);
        const bool started = runner.start([settings, database, &reachedEnd](JobHost& host) {
            std::unique_ptr<Connection> db;
            try {
                db = OpenConnection(database);
            } catch (const std::exception& e) {
                host.Fail(QStringLiteral("Can't open song table to import!") + ErrSuffix(e));
                return;
            }
            const LibraryImportResult result = ImportLibrary(*db, settings, host);
            reachedEnd = result.closed;
        });
        if (started)
            loop.exec();
    }
    if (reachedEnd && frame_.menuVisible(QStringLiteral("mnuSong")) &&
        MsgAsk(QStringLiteral("You need refresh songbook list to reflect the changes. Do you want to do it now?"),
               MsgButtons::YesNo) == MsgAnswer::Yes)
        frame_.windowCommand(QStringLiteral("frmSong"), QStringLiteral("refresh"));
    accept();
}

void ShowImportLibrary(const QString& libraryPath, WindowFrame& frame)
{
    frmImportLib wizard(libraryPath, frame);
    if (wizard.loaded())
        wizard.exec();
}

}  // namespace td

namespace td {

void ShowImportLibrary(const QString& libraryPath, QWidget* owner)
{
    MainFrameOf frame(owner);
    ShowImportLibrary(libraryPath, frame);
}

}  // namespace td
