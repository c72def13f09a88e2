#include "libraries/frmCopyDisc.h"
#include "controls/DropDownCombo.h"
#include "controls/JobRunner.h"
#include "libraries/DiscCopy.h"
#include "libraries/DiscIdentity.h"
#include "regions/WindowText.h"
#include "shell/services/AppError.h"
#include "shell/services/Dialogs.h"
#include "shell/services/FilePaths.h"
#include "songdb/CatalogueLookups.h"
#include <QCloseEvent>
#include <QDir>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMdiSubWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace td {
namespace {

frmCopyDisc::AddFilesHook& addFilesHook()
{
    static frmCopyDisc::AddFilesHook hook;
    return hook;
}

QPushButton* makeButton(QWidget* parent, const char* name, const char* caption)
{
    auto* b = new QPushButton(QString::fromUtf8(caption), parent);
    b->setObjectName(QString::fromLatin1(name));
    return b;
}

DropDownCombo* makeCombo(QWidget* parent, QGridLayout* grid, const char* name, const char* label, int row)
{
    auto* caption = new QLabel(QString::fromUtf8(label), parent);
    caption->setObjectName(QStringLiteral("lbl") + QString::fromLatin1(name).mid(3));
    auto* combo = new DropDownCombo(parent);
    combo->setObjectName(QString::fromLatin1(name));
    combo->setMinimumWidth(320);
    caption->setBuddy(combo);
    grid->addWidget(caption, row, 0);
    grid->addWidget(combo, row, 1);
    return combo;
}

MsgAnswer askRetry(const QString& text, MsgIcon icon)
{
    return Dialogs().message(text, MsgButtons::RetryCancel, icon, {});
}

}  // namespace

frmCopyDisc::frmCopyDisc(WindowFrame& frame, QWidget* parent) : QWidget(parent), frame_(frame)
{
    setObjectName(QStringLiteral("frmCopyDisc"));
    setWindowTitle(QStringLiteral("Copy media files from disc to library"));
    auto* grid = new QGridLayout;
    cboCDROM_ = makeCombo(this, grid, "cboCDROM", "Select cdrom (&C)", 0);
    cboLibrary_ = makeCombo(this, grid, "cboLibrary", "Select library (&L)", 1);
    pgbCopy_ = new QProgressBar(this);
    pgbCopy_->setObjectName(QStringLiteral("pgbCopy"));
    pgbCopy_->setTextVisible(false);
    pgbCopy_->setValue(0);
    lblCopy_ = new QLabel(this);
    lblCopy_->setObjectName(QStringLiteral("lblCopy"));
    cmdCopy_ = makeButton(this, "cmdCopy", "Start (&S)");
    cmdCancel_ = makeButton(this, "cmdCancel", "Cancel");
    cmdCopy_->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdCopy_);
    buttons->addWidget(cmdCancel_);

    auto* layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addLayout(grid);
    layout->addSpacing(6);
    layout->addWidget(pgbCopy_);
    layout->addWidget(lblCopy_);
    layout->addSpacing(6);
    layout->addLayout(buttons);

    connect(cmdCopy_, &QPushButton::clicked, this, &frmCopyDisc::copyClicked);
    connect(cmdCancel_, &QPushButton::clicked, this, &frmCopyDisc::closeWindow);
    // The list of libraries is read afresh each time it drops down.
    connect(cboLibrary_, &DropDownCombo::DropDown, this, &frmCopyDisc::loadLibraries);

    ExportWindowText(this);
    ApplyWindowText(this);
    loadDrives();
    loadLibraries();
}

frmCopyDisc::~frmCopyDisc()
{
    // A copy under way stops at its next track before the window's parts go.
    runner_.reset();
}

QComboBox* frmCopyDisc::cboCDROM() const
{
    return cboCDROM_;
}

QComboBox* frmCopyDisc::cboLibrary() const
{
    return cboLibrary_;
}

bool frmCopyDisc::DeleteFile(QWidget* /*owner*/, const QString& psFrom, const QString& psTo)
{
    return FileOperation(FO_DELETE, psFrom, psTo);
}

void frmCopyDisc::SetAddFiles(AddFilesHook hook)
{
    addFilesHook() = std::move(hook);
}

void frmCopyDisc::loadDrives()
{
    cboCDROM_->clear();
    cboCDROM_->addItems(DiscDrives().drives());
    if (cboCDROM_->count() > 0)
        cboCDROM_->setCurrentIndex(0);
}

void frmCopyDisc::loadLibraries()
{
    const QString chosen = cboLibrary_->currentText();
    TextArray roots;
    LoadLibraryPaths(roots);
    cboLibrary_->clear();
    cboLibrary_->addItems(roots.mid(1));
    const int again = cboLibrary_->findText(chosen);
    if (cboLibrary_->count() > 0)
        cboLibrary_->setCurrentIndex(again >= 0 ? again : 0);
}

QString frmCopyDisc::waitForVideoCd(const QString& drive)
{
    while (FileKind(DiscDrives().rootOf(drive)) != QLatin1String("p")) {
        if (askRetry(QStringLiteral("Please insert a disc into cdrom < ") + drive + QStringLiteral(" >"),
                     MsgIcon::Information) == MsgAnswer::Cancel)
            return {};
    }
    while (FileKind(TrackFolderOf(DiscDrives().rootOf(drive))) != QLatin1String("p")) {
        if (askRetry(QStringLiteral("You can only copy songs from Video CD disc currently.\n") +
                         QStringLiteral("Please insert a Video CD disc into cdrom < ") + drive +
                         QStringLiteral(" >"),
                     MsgIcon::Question) == MsgAnswer::Cancel)
            return {};
    }
    return DiscDrives().rootOf(drive);
}

bool frmCopyDisc::confirmDirectory(const QString& directory, int count)
{
    if (FileKind(directory).isEmpty())
        return MsgAsk(QStringLiteral("This will copy ") + QString::number(count) +
                          QStringLiteral(" song(s) into < ") + directory +
                          QStringLiteral(" >.\nDo you want to continue?"),
                      MsgButtons::YesNo) == MsgAnswer::Yes;
    if (MsgAsk(QStringLiteral("This disc has been loaded into ") + directory +
                   QStringLiteral(" before.\nDo you want to reload the disc?"),
               MsgButtons::YesNo) != MsgAnswer::Yes)
        return false;
    if (MsgAsk(QStringLiteral("Do you want to delete all files in this directory before loading?"),
               MsgButtons::YesNo) == MsgAnswer::Yes &&
        !DeleteFile(this, LinkFileByPath(directory, QStringLiteral("*.*")), {}))
        MsgError(QStringLiteral("file deletion failed !"));
    return true;
}

void frmCopyDisc::copyClicked()
{
    const QString drive = cboCDROM_->currentIndex() < 0 ? QString() : cboCDROM_->currentText();
    if (drive.isEmpty()) {
        MsgInfo(QStringLiteral("Please select a cdrom with the disc inside !"));
        return;
    }
    const QString library = cboLibrary_->currentIndex() < 0 ? QString() : cboLibrary_->currentText();
    if (library.isEmpty()) {
        MsgInfo(QStringLiteral("Please select a library to which the songs will copy !"));
        return;
    }
    if (FileKind(library) != QLatin1String("p")) {
        MsgInfo(QStringLiteral("The library path < ") + library +
                QStringLiteral(" > you selected isn't available now!"));
        return;
    }
    const QString root = waitForVideoCd(drive);
    if (root.isEmpty())
        return;
    TextArray tracks;
    DiscTracks(root, tracks);
    QString identity, error;
    if (!DiscIdentityOf(drive, identity, error)) {
        MsgError(QStringLiteral("Copy file from disc to Song Library failed. ") + ErrSuffix(error));
        return;
    }
    const QString directory = DiscDirectoryOf(library, identity);
    if (!confirmDirectory(directory, UBound(tracks)))
        return;
    if (FileKind(directory).isEmpty() && !QDir().mkdir(directory)) {
        MsgError(QStringLiteral("MkDir failed!"));
        return;
    }
    startLoop(directory, tracks);
}

void frmCopyDisc::startLoop(const QString& directory, const TextArray& tracks)
{
    copying_ = true;
    enableControls(false);
    pgbCopy_->setRange(0, std::max(1, UBound(tracks)));
    // The job copies on a thread of its own; what it reports comes back here in its order, and the
    // songbook takes each track on this thread.
    DiscCopyEvents events;
    events.step = [this](int i, int n) {
        QMetaObject::invokeMethod(
            this, [this, i, n] { showStep(i, n); }, Qt::QueuedConnection);
    };
    events.copied = [this](const QString& target) {
        QMetaObject::invokeMethod(
            this,
            [target] {
                if (addFilesHook())
                    addFilesHook()(TextArray{QString(), target});
            },
            Qt::QueuedConnection);
    };
    if (!runner_)
        runner_ = std::make_unique<JobRunner>(this);
    runner_->start(
        [directory, tracks, events](JobHost& host) { CopyDiscTracks(directory, tracks, host, events); },
        [this] { endLoop(); });
}

void frmCopyDisc::showStep(int i, int n)
{
    pgbCopy_->setValue(i);
    lblCopy_->setText(QString::number(i) + QStringLiteral(" of ") + QString::number(n) +
                      QStringLiteral(" song(s) copied!"));
}

void frmCopyDisc::endLoop()
{
    pgbCopy_->setValue(0);
    lblCopy_->clear();
    enableControls(true);
    copying_ = false;
    emit CopyEnded();
}

void frmCopyDisc::enableControls(bool enabled)
{
    for (QWidget* w : std::initializer_list<QWidget*>{cmdCopy_, cmdCancel_, cboCDROM_, cboLibrary_})
        w->setEnabled(enabled);
}

void frmCopyDisc::closeWindow()
{
    if (auto* sub = qobject_cast<QMdiSubWindow*>(parentWidget()))
        sub->close();
    else
        close();
}

void frmCopyDisc::closeEvent(QCloseEvent* event)
{
    QWidget::closeEvent(event);
    frame_.windowClosed();
}

}  // namespace td
