// The tab "Media files": a search of a library folder for media files, kept in the scratch table
// media, from which chosen files become songs.
#include "controls/BusyWindow.h"
#include "controls/DropDownCombo.h"
#include "controls/RecordErrors.h"
#include "controls/ctlDataView.h"
#include "libraries/FileFinder.h"
#include "shell/services/AppPaths.h"
#include "shell/services/Dialogs.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Translate.h"
#include "songbook/frmSong.h"
#include "songdb/CatalogueLookups.h"
#include "songdb/SongStatements.h"
#include <QCheckBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QPushButton>

namespace td {

namespace {

const QString kLibrarySelector = QStringLiteral("Library selector");

// A file of the library that no song of that library points to yet.
bool IsNewMedia(const QString& path, bool firstFile)
{
    QString rest = path, library;
    if (!GetLocalPath(rest, library, firstFile))
        return false;
    // Names pass unquoted here, as the songbook always stored them.
    std::unique_ptr<Recordset> known;
    if (!SongOpenRecordset(QStringLiteral("select * from song where media_file='") + rest +
                               QStringLiteral("' and library ='") + library + u'\'',
                           known))
        return false;
    return known->RecordCount() < 1;
}

void AddMediaRow(Recordset& rs, const QString& path)
{
    const QFileInfo info(path);
    rs.AddNew();
    rs.Fields(QStringLiteral("name")).setValue(FileNameOf(path));
    rs.Fields(QStringLiteral("Position")).setValue(path);
    rs.Fields(QStringLiteral("Size")).setValue(info.size());
    rs.Fields(QStringLiteral("Modified")).setValue(info.lastModified());
    rs.Update();
}

}  // namespace

void frmSong::buildMediaPage()
{
    picMedia_ = new QWidget;
    picMedia_->setObjectName(QStringLiteral("picMedia"));
    auto* combo = new DropDownCombo(picMedia_);
    combo->setEditable(true);
    combo->setInsertPolicy(QComboBox::NoInsert);
    connect(combo, &DropDownCombo::DropDown, this, &frmSong::cboMedia_DropDown);
    cboMedia_ = combo;
    cboMedia_->setObjectName(QStringLiteral("cboMedia"));
    cboMedia_->setToolTip(QStringLiteral("Library selector!"));
    cmdMedia_ = new QPushButton(QStringLiteral("Search media"), picMedia_);
    cmdMedia_->setObjectName(QStringLiteral("cmdMedia"));
    chkMedia_ = new QCheckBox(QStringLiteral("Search new media only"), picMedia_);
    chkMedia_->setObjectName(QStringLiteral("chkMedia"));
    ctlMedia_ = new ctlDataView(picMedia_);
    ctlMedia_->setObjectName(QStringLiteral("ctlMedia"));
    auto* layout = new QGridLayout(picMedia_);
    layout->setContentsMargins(2, 4, 2, 0);
    layout->addWidget(cboMedia_, 0, 0);
    layout->addWidget(cmdMedia_, 0, 1);
    layout->addWidget(chkMedia_, 1, 0, 1, 2);
    layout->addWidget(ctlMedia_, 2, 0, 1, 2);
    layout->setColumnStretch(0, 1);
    layout->setRowStretch(2, 1);
}

void frmSong::prepareMediaTab()
{
    cboMedia_->clear();
    cboMedia_->addItem(TranslateText(kLibrarySelector));
    cboMedia_->setCurrentIndex(0);
    ctlMedia_->setIniFile(AppPath() + QStringLiteral("/ListMedia.ini"));
    ctlMedia_->LoadViewFormat();
}

// The roots are read afresh each time the list opens; "Library selector" is gone from then on.
void frmSong::cboMedia_DropDown()
{
    const QString typed = cboMedia_->currentText();
    TextArray roots;
    LoadLibraryPaths(roots);
    cboMedia_->clear();
    cboMedia_->addItems(roots.mid(1));
    cboMedia_->setCurrentIndex(-1);
    cboMedia_->setEditText(typed);
}

bool frmSong::FindMediaFiles(const QString& root, TextArray& files)
{
    const QString pattern =
        SongReadValue(QString(), QStringLiteral("FileType"), QStringLiteral("*.vob;*.dat;*.mp3;*.avi"));
    int attributes = 0;
    return FindFiles(NativePath(root), pattern, -1, files, attributes);
}

void frmSong::SearchMedia()
{
    const QString root = cboMedia_->currentText();
    if (!LibraryExists(root)) {
        MsgInfo(QStringLiteral("Please select a library first."));
        return;
    }
    BusyWindow busy(this);
    SongExecute(QStringLiteral("delete * from media"));
    TextArray files;
    FindMediaFiles(root, files);
    std::unique_ptr<Recordset> rs;
    int found = 0;
    try {
        rs = OpenSongRecordset(QStringLiteral("select * from media"));
        const bool newOnly = chkMedia_->isChecked();
        for (int i = 1; i <= UBound(files); ++i) {
            if (newOnly && !IsNewMedia(files[i], i == 1))
                continue;
            AddMediaRow(*rs, files[i]);
            ++found;
        }
    } catch (const std::exception& e) {
        CancelPendingEdit(rs.get());
        MsgError(QStringLiteral("Search media failed! ") + ErrSuffix(e));
        if (!rs)
            return;
    }
    rsMedia_ = std::move(rs);
    ctlMedia_->setMrsMain(rsMedia_);
    ctlMedia_->ClearViewData();
    ctlMedia_->LoadViewData();
    MsgInfo(QString::number(found) + QStringLiteral(" file(s) founded!"));
}

void frmSong::AddMedia()
{
    QList<int> selected;
    const int n = ctlMedia_->GetViewSelections(selected);
    if (n == 0 || !rsMedia_) {
        MsgInfo(QStringLiteral("Please select media file to add"));
        return;
    }
    TextArray files = NewTextArray();
    for (int i = 1; i <= n; ++i)
        if (rsMedia_->setBookmark(ctlMedia_->MainItems().Tag(selected[i])))
            AppendItem(files, rsMedia_->Fields(QStringLiteral("Position")).Text());
    const int added = AddFiles(files);
    MsgInfo(QString::number(added) + QStringLiteral(" media file(s) added to songbook."));
}

void frmSong::ctlMedia_DblClick()
{
    if (ctlMedia_->MainItems().Count() >= 1)
        PlaySong(QStringLiteral("media"), QStringLiteral("preview"));
}

void frmSong::ctlMedia_MouseUp(int button)
{
    if (button == 2 && ctlMedia_->MainItems().Count() >= 1)
        Frame().popupMenu(QStringLiteral("mnuMedia"));
}

}  // namespace td
