// The search panel over the song list, and the loading of the list.
#include "controls/BusyWindow.h"
#include "controls/ctlDataFields.h"
#include "controls/ctlDataView.h"
#include "shell/services/AppError.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Translate.h"
#include "songbook/RepaintWhileReading.h"
#include "songbook/frmSong.h"
#include "songdb/RecordAccess.h"
#include "songdb/SongSearch.h"
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

namespace td {

namespace {

const QString kSongSelector = QStringLiteral("song selector");

// The condition of a search type on its value; the value has its quotes doubled already.
QString SearchCondition(const QString& code, const QString& value)
{
    if (code == u"chars")
        return QStringLiteral("chars = ") + QString::number(NumericValue(value));
    if (value.isEmpty())
        return {};
    if (code == u"song")
        return QStringLiteral("title like '%") + value + QStringLiteral("%'");
    return u'[' + code + QStringLiteral("] like '%") + value + QStringLiteral("%'");
}

}  // namespace

void frmSong::buildSearchPanel()
{
    picSearch_ = new QWidget(picView_);
    picSearch_->setObjectName(QStringLiteral("picSearch"));
    cboSearchType_ = new QComboBox(picSearch_);
    cboSearchType_->setObjectName(QStringLiteral("cboSearchType"));
    cboSearchValue_ = new QComboBox(picSearch_);
    cboSearchValue_->setObjectName(QStringLiteral("cboSearchValue"));
    cboSearchValue_->setEditable(true);
    cboSearchValue_->setInsertPolicy(QComboBox::NoInsert);
    cboSearchValue_->setMaxVisibleItems(20);
    cmdSearch_ = new QPushButton(QStringLiteral("Search song"), picSearch_);
    cmdSearch_->setObjectName(QStringLiteral("cmdSearch"));
    cmdSearch_->setDefault(true);
}

void frmSong::LoadSearchType()
{
    const QSignalBlocker blockType(cboSearchType_);
    cboSearchType_->clear();
    cboSearchValue_->clear();
    TextArray names;
    SongSearchTree(1000, QString(), QString(), names, searchTypeCodes_);
    for (int i = 1; i <= UBound(names); ++i)
        cboSearchType_->addItem(names[i]);
    cboSearchType_->setCurrentIndex(0);
    cboSearchType_Click();
    cboSearchValue_->lineEdit()->setPlaceholderText(TranslateText(kSongSelector));
}

QString frmSong::searchCode() const
{
    const int row = cboSearchType_->currentIndex() + 1;
    return row >= 1 && row <= UBound(searchTypeCodes_) ? searchTypeCodes_[row] : QString();
}

// Choosing a type fills the value list; the search itself waits for the button.
void frmSong::cboSearchType_Click()
{
    if (!cboSearchType_->isEnabled())
        return;
    cboSearchValue_->clear();
    searchValueCodes_ = NewTextArray();
    const QString code = searchCode();
    if (code == u"song")
        return;
    TextArray names;
    {
        Hourglass wait;
        RepaintWhileReading reading;
        SongSearchTree(1000, code, QString(), names, searchValueCodes_);
    }
    QStringList items = names.mid(1);
    cboSearchValue_->addItems(items);
    cboSearchValue_->setCurrentIndex(-1);
    cboSearchValue_->setEditText(QString());
}

void frmSong::cmdSearch_Click()
{
    if (cboSearchValue_->currentText() == TranslateText(kSongSelector))
        cboSearchValue_->setEditText(QString());
    LoadData();
}

bool frmSong::LoadData()
{
    if (listLoading_) {
        // The list being filled gives way; the new search runs as soon as it has.
        reloadWanted_ = true;
        stopListLoad();
        return true;
    }
    Hourglass wait;
    if (rsSong_)
        rsSong_->Close();
    QString value = cboSearchValue_->currentText();
    value.replace(u'\'', QStringLiteral("''"));
    TextArray conditions = NewTextArray();
    AppendItem(conditions,
               QStringLiteral("(region in (") + GetRegionList() + QStringLiteral(") or region is null)"));
    AppendItem(conditions, SearchCondition(searchCode(), value));

    std::unique_ptr<Recordset> rs;
    bool opened = false;
    {
        RepaintWhileReading reading;
        opened = SongGetRecordset(QStringLiteral("*"), QStringLiteral("Song"), JoinConditions(conditions),
                                  QString(), rs);
    }
    if (!opened) {
        MsgError(TranslateText(QStringLiteral("Can't load data!")));
        return false;
    }
    ctlView_->ClearViewData();
    ctlFields_->LoadFieldDatas({});
    rsSong_ = std::move(rs);
    ctlView_->setMrsMain(rsSong_);
    ctlFields_->setMrsMain(rsSong_);
    listLoading_ = true;
    const bool loaded = ctlView_->LoadViewData();
    listLoading_ = false;
    if (reloadWanted_) {
        reloadWanted_ = false;
        return LoadData();
    }
    return loaded;
}

bool frmSong::RefreshData()
{
    if (!rsSong_ || !rsSong_->IsOpen() || listLoading_)
        return false;
    return ctlView_->RefreshViewData();
}

bool frmSong::LoadFieldDatas(const QList<int>& selection)
{
    BusyWindow busy(this);
    const QVariantList bookmarks = bookmarksOf(selection);
    ctlFields_->setMrsMain(rsSong_);
    const bool ok = ctlFields_->LoadFieldDatas(bookmarks);
    SetPane(StatusPane::Selected, QString::number(bookmarks.size() - 1) + QStringLiteral(" selected"));
    return ok;
}

QVariantList frmSong::bookmarksOf(const QList<int>& selection) const
{
    QVariantList bookmarks{QVariant()};
    for (qsizetype i = 1; i < selection.size(); ++i)
        bookmarks << QVariant::fromValue(ctlView_->MainItems().Tag(selection[i]));
    return bookmarks;
}

QList<int> frmSong::selection() const
{
    QList<int> sel;
    ctlView_->GetViewSelections(sel);
    return sel;
}

}  // namespace td
