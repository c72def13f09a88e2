// The search panel over the song list, and the loading of the list.
#include "controls/BusyWindow.h"
#include "controls/JobRunner.h"
#include "controls/ctlDataFields.h"
#include "controls/ctlDataView.h"
#include "shell/services/AppError.h"
#include "shell/services/Dialogs.h"
#include "shell/services/FilePaths.h"
#include "shell/services/Translate.h"
#include "songbook/frmSong.h"
#include "songdb/BackgroundRead.h"
#include "songdb/Connection.h"
#include "songdb/RecordAccess.h"
#include "songdb/SongReadings.h"
#include "songdb/SongSearch.h"
#include "songdb/SongSession.h"
#include "songdb/SongStatements.h"
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <atomic>
#include <utility>

namespace td {

namespace {

const QString kSongSelector = QStringLiteral("song selector");
const QString kPinyin = QStringLiteral("pinyin");
// More titles than this waiting to be read in pinyin are read as a job with its progress window.
constexpr qint64 kReadingsAsJob = 20000;

// The condition of a search type on its value; the value has its quotes doubled already.
QString SearchCondition(const QString& code, const QString& value)
{
    if (code == u"chars")
        return QStringLiteral("chars = ") + QString::number(NumericValue(value));
    if (value.isEmpty())
        return {};
    if (code == u"song")
        return QStringLiteral("title like '%") + value + QStringLiteral("%'");
    if (code == kPinyin)
        return PinyinCondition(value);
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
    // The pinyin search follows the tree's own types.
    AppendItem(names, SearchTypeCaption(kPinyin));
    AppendItem(searchTypeCodes_, kPinyin);
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
    if (code == u"song" || code == kPinyin)
        return;
    valuesRead_->cancel();
    valuesCursor_.reset();
    const QString sql = SearchTypeValuesStatement(1000, code);
    Connection* db = SongConnection();
    if (sql.isEmpty() || !db) {
        TextArray names;
        SongSearchTree(1000, code, QString(), names, searchValueCodes_);
        showSearchValues(names);
        return;
    }
    // The values of a big songbook (50,000 singers) are read in the background like the list.
    valuesCode_ = code;
    valuesCursor_.emplace();
    valuesRead_->start(*db, sql);
}

void frmSong::valuesReadFinished(bool ok)
{
    valuesCursor_.reset();
    TextArray names = NewTextArray();
    if (!ok) {
        ReportSearchTypeValuesFailure(valuesCode_, valuesRead_->statement(), valuesRead_->error());
    } else if (std::unique_ptr<Recordset> rs = valuesRead_->take()) {
        SearchTypeValuesFromRows(valuesCode_, *rs, names, searchValueCodes_);
    }
    showSearchValues(names);
}

// What the operator typed while the values were read stays.
void frmSong::showSearchValues(const TextArray& names)
{
    const QString typed = cboSearchValue_->currentText();
    cboSearchValue_->addItems(names.mid(1));
    cboSearchValue_->setCurrentIndex(-1);
    cboSearchValue_->setEditText(typed);
}

bool frmSong::ValuesLoading() const
{
    return valuesRead_->running();
}

void frmSong::cmdSearch_Click()
{
    if (cboSearchValue_->currentText() == TranslateText(kSongSelector))
        cboSearchValue_->setEditText(QString());
    LoadData();
}

// Starts the search: the songs are read in the background and the list fills in slices as soon as
// they are there, the window live all along. A read or fill under way gives way to the new one.
bool frmSong::LoadData()
{
    QString value = cboSearchValue_->currentText();
    value.replace(u'\'', QStringLiteral("''"));
    if (searchCode() == kPinyin && !PinyinCondition(value).isEmpty() && !pinyinReadingsReady())
        return false;
    TextArray conditions = NewTextArray();
    AppendItem(conditions,
               QStringLiteral("(region in (") + GetRegionList() + QStringLiteral(") or region is null)"));
    AppendItem(conditions, SearchCondition(searchCode(), value));
    return LoadList(
        SongRecordsetSql(QStringLiteral("*"), QStringLiteral("Song"), JoinConditions(conditions), QString()));
}

// Titles changed since the last pinyin search are read at once. A songbook that has no readings yet
// has every title read once, as a job with its progress; the search runs when the job is through.
bool frmSong::pinyinReadingsReady()
{
    Connection* db = SongConnection();
    qint64 waiting = 0;
    try {
        waiting = db && !db->readOnly() ? SongReadingsWaiting(*db) : 0;
    } catch (const AppError&) {
        return BringSongReadingsUpToDate();
    }
    if (waiting < kReadingsAsJob)
        return BringSongReadingsUpToDate();
    auto* runner = new JobRunner(this);
    auto done = std::make_shared<std::atomic_bool>(false);
    const QString file = SongDatabaseFile();
    runner->start(
        [file, done](JobHost& host) {
            try {
                auto own = OpenConnection(IsServerAddress(file) ? file : NativePath(file));
                *done = UpdateSongReadings(*own, &host);
            } catch (const std::exception& e) {
                host.Fail(QStringLiteral("UpdateSongReadings failed!") + ErrSuffix(e));
            }
        },
        [this, runner, done] {
            runner->deleteLater();
            if (*done)
                LoadData();
        });
    return false;
}

void frmSong::ListReadFailed(const QString& sql, const QString& description)
{
    ReportStatementFailure("SongGetRecordset", sql, description);
    MsgError(TranslateText(QStringLiteral("Can't load data!")));
}

// Reads the last query again in the background and brings the list up to date in slices: rows of
// songs changed elsewhere change, rows of deleted songs go, new songs join; the selection stays.
bool frmSong::RefreshData()
{
    return RefreshList();
}

bool frmSong::LoadFieldDatas(const QList<int>& selection)
{
    BusyWindow busy(this);
    const QVariantList bookmarks = bookmarksOf(selection);
    ctlFields_->setMrsMain(rsMain_);
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
