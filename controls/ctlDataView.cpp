#include "controls/ctlDataView.h"
#include "controls/ControlsLog.h"
#include "controls/StatusStrip.h"
#include "controls/Twips.h"
#include "controls/VbInput.h"
#include "shell/services/AppError.h"
#include "shell/services/Dialogs.h"
#include <QApplication>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyledItemDelegate>
#include <QTimer>
#include <QTreeView>
#include <QVBoxLayout>
#include <algorithm>

namespace td {

namespace {

// Every row is as high as a row holding Chinese and Latin text, whatever the row that is measured
// holds: the list has one row height, not one after the first fill and another after a search.
class OneRowHeight : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        QSize size = QStyledItemDelegate::sizeHint(option, index);
        QStyleOptionViewItem sample = option;
        initStyleOption(&sample, index);
        sample.text = QStringLiteral("\u4e2d\u6587Ag");
        sample.features |= QStyleOptionViewItem::HasDisplay;
        const QWidget* widget = option.widget;
        const QStyle* style = widget ? widget->style() : QApplication::style();
        size.setHeight(
            std::max(size.height(),
                     style->sizeFromContents(QStyle::CT_ItemViewItem, &sample, QSize(), widget).height()));
        return size;
    }
};

}  // namespace

ctlDataView::ctlDataView(QWidget* parent) : QWidget(parent)
{
    model_ = new DataViewModel(this);
    lvwMain_ = new QTreeView(this);
    lvwMain_->setObjectName(QStringLiteral("lvwMain"));
    lvwMain_->setModel(model_);
    lvwMain_->setRootIsDecorated(false);
    lvwMain_->setItemsExpandable(false);
    lvwMain_->setUniformRowHeights(true);
    lvwMain_->setItemDelegate(new OneRowHeight(lvwMain_));
    lvwMain_->setAllColumnsShowFocus(true);
    lvwMain_->setSelectionBehavior(QAbstractItemView::SelectRows);
    lvwMain_->setSelectionMode(QAbstractItemView::SingleSelection);
    lvwMain_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lvwMain_->setTextElideMode(Qt::ElideRight);
    QHeaderView* header = lvwMain_->header();
    header->setStretchLastSection(false);
    header->setSectionsMovable(true);
    header->setSectionsClickable(true);
    header->setSortIndicatorShown(false);
    connect(header, &QHeaderView::sectionClicked, this, &ctlDataView::ColumnClick);
    connect(lvwMain_, &QTreeView::clicked, this, &ctlDataView::ItemClick);
    lvwMain_->installEventFilter(this);
    lvwMain_->viewport()->installEventFilter(this);
    lvwMain_->viewport()->setMouseTracking(true);

    // A list filled in the background goes on in slices from the event loop, the window live between them.
    sliceTimer_ = new QTimer(this);
    sliceTimer_->setInterval(0);
    connect(sliceTimer_, &QTimer::timeout, this, &ctlDataView::nextSlice);

    strip_ = new StatusStrip(this);
    connect(strip_, &StatusStrip::MoveRequested, this, &ctlDataView::Move);
    connect(strip_, &StatusStrip::MoveToRequested, this,
            [this](qint64 i) { MoveTo(int(std::clamp<qint64>(i, -1, INT_MAX))); });

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(lvwMain_, 1);
    layout->addWidget(strip_, 0);
}

// The column layout goes back to the format file when the owning window closes, never from here.
ctlDataView::~ctlDataView() = default;

bool ctlDataView::MultiSelect() const
{
    return lvwMain_->selectionMode() == QAbstractItemView::ExtendedSelection;
}

// Format

bool ctlDataView::LoadViewFormat()
{
    const ViewFormat format = ReadViewFormat(iniFile_);
    lvwMain_->setSelectionMode(format.MultiSelect ? QAbstractItemView::ExtendedSelection
                                                  : QAbstractItemView::SingleSelection);
    columns_ = format.Columns;
    QStringList captions;
    for (const ViewColumn& col : columns_)
        captions << col.Caption;
    model_->setHeadings(captions);
    QHeaderView* header = lvwMain_->header();
    const int n = int(columns_.size());
    for (int i = 0; i < n; ++i)
        header->resizeSection(i, std::max(0, TwipsToPixels(columns_[std::size_t(i)].Width, this)));
    // Places refer to columns that may come later in the file, so they go in a second pass.
    for (int i = 0; i < n; ++i) {
        const int position = columns_[std::size_t(i)].Position;
        if (position > n)
            return false;
        if (position > 0)
            header->moveSection(header->visualIndex(i), position - 1);
    }
    return true;
}

bool ctlDataView::SaveViewFormat()
{
    if (iniFile_.isEmpty())
        return false;
    const QHeaderView* header = lvwMain_->header();
    std::vector<ColumnLayout> layout;
    for (int i = 0; i < int(columns_.size()); ++i)
        layout.push_back({columns_[std::size_t(i)].Key, header->visualIndex(i) + 1,
                          PixelsToTwips(header->sectionSize(i), this)});
    WriteViewLayout(iniFile_, layout);
    return true;
}

// Data

Recordset& ctlDataView::recordset() const
{
    Recordset* rs = mrsMain();
    if (!rs)
        throw AppError(QStringLiteral("Object variable or With block variable not set"));
    return *rs;
}

RecordRow ctlDataView::rowReader() const
{
    return RecordRow(recordset(), columns_, icon_, smallIcon_);
}

bool ctlDataView::ClearViewData()
{
    model_->clearRows();
    return true;
}

void ctlDataView::appendRecord(const RecordRow& reader, qsizetype position, QString& scratch)
{
    reader.joinedText(position, scratch);
    model_->appendRow(scratch, recordset().bookmarkAt(position));
    const qsizetype row = model_->rows().count() - 1;
    model_->setIcon(row, reader.icon(position));
    model_->setSmallIcon(row, reader.smallIcon(position));
}

void ctlDataView::reportLoadFailure(const std::exception& e)
{
    MsgError(QStringLiteral("Load data failed! ") + ErrSuffix(e));
}

// One load or refresh pass. It holds the recordset for its life and goes on from where the last
// slice stopped, so it can run in slices from the event loop or to its end at once.
struct ctlDataView::Pass {
    Pass(std::shared_ptr<Recordset> recordset, const std::vector<ViewColumn>& columns, const ImageRule& icon,
         const ImageRule& smallIcon)
        : rs(std::move(recordset)), reader(*rs, columns, icon, smallIcon)
    {
    }
    enum class Phase { Verify, Add, Done };
    std::shared_ptr<Recordset> rs;
    RecordRow reader;
    std::vector<bool> seen;
    Phase phase = Phase::Done;
    bool refreshing = false;
    int maxItems = 0;
    qsizetype verifyTotal = 0;  // list rows when the verify began
    qsizetype verifyAt = 0;     // 1-based list row the verify looks at next, going up the list
    qsizetype addAt = 0;        // recordset position the add looks at next
    int added = 0;
    bool shown = false;
    bool ok = true;
    bool report = true;
    QString scratch;
    QElapsedTimer sincePublish;
};

ctlDataView::PassSlice ctlDataView::sliceTimer()
{
    PassSlice slice;
    slice.timer.start();
    return slice;
}

bool ctlDataView::beginPass(bool refreshing, int maxItems, bool requery)
{
    if (pass_)
        return false;  // one pass at a time; the running one stays
    try {
        std::shared_ptr<Recordset> rs = mrsMain_.lock();
        if (!rs)
            throw AppError(QStringLiteral("Object variable or With block variable not set"));
        if (refreshing && requery)
            rs->Requery();
        pass_ = std::make_unique<Pass>(rs, columns_, icon_, smallIcon_);
    } catch (const std::exception& e) {
        reportLoadFailure(e);
        model_->publish();
        strip_->EndStatus();
        UpdateViewState();
        emit LoadFinished(false);
        return false;
    }
    Pass& p = *pass_;
    p.refreshing = refreshing;
    p.maxItems = maxItems;
    p.sincePublish.start();
    const qsizetype n = p.rs->RecordCount();
    if (n < 1) {
        if (refreshing) {
            model_->clearRows();
            p.report = false;  // an emptied list reports no state
        }
        return true;
    }
    p.seen.assign(std::size_t(n), false);
    if (refreshing) {
        p.verifyTotal = p.verifyAt = model_->rows().count();
        p.phase = Pass::Phase::Verify;
        if (p.verifyTotal > 0)
            strip_->StartStatus(QStringLiteral("verify records ..."), 0, p.verifyTotal, true);
        return true;
    }
    BookmarkFinder finder(*p.rs);
    for (qsizetype r = 0; r < model_->rows().count(); ++r) {
        const qsizetype pos = finder.find(model_->tag(r), 1);
        if (pos >= 0)
            p.seen[std::size_t(pos)] = true;
    }
    strip_->StartStatus(QStringLiteral("showing data ..."), 0, n, true);
    p.phase = Pass::Phase::Add;
    return true;
}

// Works on the pass until it is over or, at a thousand-row mark, the slice's time is up.
// Answers true when the pass is over.
bool ctlDataView::runPass(const PassSlice& slice)
{
    Pass& p = *pass_;
    try {
        if (p.phase == Pass::Phase::Verify && verifySome(slice))
            startAdding();
        if (p.phase == Pass::Phase::Add && addSome(slice))
            p.phase = Pass::Phase::Done;
    } catch (const std::exception& e) {
        reportLoadFailure(e);
        p.ok = false;
        p.phase = Pass::Phase::Done;
    }
    return p.phase == Pass::Phase::Done;
}

bool ctlDataView::sliceOver(const PassSlice& slice) const
{
    return slice.budgetMs >= 0 && slice.timer.elapsed() >= slice.budgetMs;
}

// The verify walks the list up from its last row, so removing a row never moves one still to come.
bool ctlDataView::verifySome(const PassSlice& slice)
{
    Pass& p = *pass_;
    BookmarkFinder finder(*p.rs);
    for (; p.verifyAt >= 1; --p.verifyAt) {
        const qsizetype i = p.verifyAt;
        const qsizetype row = i - 1;
        if (row < model_->rows().count()) {
            try {
                const qsizetype pos = finder.find(model_->tag(row), -1);
                if (pos < 0) {
                    model_->removeRow(row);
                } else {
                    p.reader.joinedText(pos, p.scratch);
                    if (model_->rows().joined(row) != QStringView(p.scratch))
                        model_->setRowText(row, p.scratch);
                    model_->setIcon(row, p.reader.icon(pos));
                    model_->setSmallIcon(row, p.reader.smallIcon(pos));
                    p.seen[std::size_t(pos)] = true;
                }
            } catch (const std::exception& e) {
                qCWarning(lcControls) << "a list row could not be verified:" << ErrorText(e);
            }
        }
        if (i % 10 == 0)
            strip_->StepStatus(p.verifyTotal - i);
        if (i % 1000 == 0) {
            if (strip_->CheckCancel()) {
                p.phase = Pass::Phase::Done;
                return false;
            }
            if (sliceOver(slice)) {
                --p.verifyAt;
                return false;
            }
        }
    }
    return true;
}

void ctlDataView::startAdding()
{
    Pass& p = *pass_;
    strip_->StartStatus(QStringLiteral("add records ..."), 0, p.rs->RecordCount(), true);
    p.phase = Pass::Phase::Add;
}

// Adds a row for each record not seen, in recordset order. The status counts positions in a load
// and records in a refresh; both look at the cancel button every thousand.
bool ctlDataView::addSome(const PassSlice& slice)
{
    Pass& p = *pass_;
    const qsizetype n = qsizetype(p.seen.size());
    if (p.addAt == 0 && p.maxItems == 0) {
        // Room for exactly the rows to come: a refresh adds few, and a list of a million rows should
        // not reserve a second million. Short loads (a hundred more on a click) grow as usual.
        model_->reserveRows(model_->rows().count() + std::count(p.seen.begin(), p.seen.end(), false));
    }
    for (; p.addAt < n; ++p.addAt) {
        const qsizetype pos = p.addAt;
        if (!p.seen[std::size_t(pos)]) {
            appendRecord(p.reader, pos, p.scratch);
            ++p.added;
            if (p.maxItems != 0 && p.added >= p.maxItems)
                return true;
        }
        // The load counts the position it moved to, the refresh the record it just looked at.
        const qsizetype counter = p.refreshing ? pos + 1 : pos + 2;
        if (counter > n)
            continue;
        if (counter % 10 == 0)
            strip_->StepStatus(counter);
        if (counter % 1000 == 0) {
            // Every paint after new rows lays out the whole list again, which at a million rows costs
            // more than filling; the first rows show at once, more join a few times a second.
            if (!p.shown || p.sincePublish.elapsed() >= 250) {
                model_->publish();
                p.sincePublish.restart();
                p.shown = true;
            }
            if (strip_->CheckCancel())
                return true;
            if (sliceOver(slice)) {
                ++p.addAt;
                return false;
            }
        }
    }
    return true;
}

bool ctlDataView::endPass()
{
    std::unique_ptr<Pass> p = std::move(pass_);
    sliceTimer_->stop();
    model_->publish();
    strip_->EndStatus();
    if (p->report)
        UpdateViewState();
    emit LoadFinished(p->ok);
    return p->ok;
}

bool ctlDataView::runWholePass(bool refreshing, int maxItems)
{
    if (!beginPass(refreshing, maxItems, true))
        return false;
    runPass(PassSlice{});
    return endPass();
}

bool ctlDataView::LoadViewData(int piMaxItem)
{
    return runWholePass(false, piMaxItem);
}

bool ctlDataView::RefreshViewData()
{
    return runWholePass(true, 0);
}

void ctlDataView::BeginLoadViewData()
{
    StopLoading();
    if (beginPass(false, 0, false))
        sliceTimer_->start();
}

void ctlDataView::BeginRefreshViewData()
{
    StopLoading();
    if (beginPass(true, 0, false))
        sliceTimer_->start();
}

void ctlDataView::nextSlice()
{
    PassSlice slice = sliceTimer();
    slice.budgetMs = kSliceMs;
    if (pass_ && runPass(slice))
        endPass();
}

void ctlDataView::StopLoading()
{
    if (!pass_)
        return;
    pass_->phase = Pass::Phase::Done;
    endPass();
}

void ctlDataView::FinishLoading()
{
    if (pass_ && runPass(PassSlice{}))
        endPass();
}

void ctlDataView::SetViewIcons(const ImageList* icons, const QString& iconId, const QString& iconField)
{
    icons_ = icons;
    icon_ = {iconId, iconField};
}

void ctlDataView::SetViewSmallIcons(const ImageList* icons, const QString& iconId, const QString& iconField)
{
    smallIcons_ = icons;
    model_->setSmallImages(icons);
    smallIcon_ = {iconId, iconField};
}

// Completion of a list whose load was cancelled

void ctlDataView::completeIfShort()
{
    FinishLoading();
    Recordset* rs = mrsMain();
    if (rs && model_->rowCount() < rs->RecordCount())
        LoadViewData(0);
}

void ctlDataView::ItemClick(const QModelIndex& index)
{
    const int count = model_->rowCount();
    Recordset* rs = mrsMain();
    if (!rs || count >= rs->RecordCount())
        return;
    if (count - (index.row() + 1) < 100)
        LoadViewData(100);
}

// Every click on a heading after the first flips the order, whichever column it is.
void ctlDataView::ColumnClick(int column)
{
    completeIfShort();
    if (sorted_)
        sortOrder_ = sortOrder_ == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder;
    sorted_ = true;
    model_->sortRows(column, sortOrder_);
    lvwMain_->header()->setSortIndicatorShown(true);
    lvwMain_->header()->setSortIndicator(column, sortOrder_);
}

// Items

bool ctlDataView::AddViewItem(Bookmark bookmark, int& item)
{
    Recordset& rs = recordset();
    const RecordRow reader(rs, columns_, {}, {});
    const qsizetype pos = rs.positionOf(bookmark);
    if (!rs.setBookmark(bookmark))
        throw AppError(QStringLiteral("Bookmark is invalid."));
    QString joined;
    reader.joinedText(pos, joined);
    model_->appendRow(joined, bookmark);
    model_->publish();
    item = model_->rowCount();
    emit StateChanged(model_->rowCount(), -1, QStringLiteral("item(s) added"));
    return true;
}

bool ctlDataView::SaveViewItem(Bookmark bookmark, int item)
{
    Recordset& rs = recordset();
    const RecordRow reader(rs, columns_, {}, {});
    if (!rs.setBookmark(bookmark))
        throw AppError(QStringLiteral("Bookmark is invalid."));
    QString joined;
    reader.joinedText(rs.positionOf(bookmark), joined);
    model_->setRowText(item - 1, joined);
    model_->setTag(item - 1, bookmark);
    emit StateChanged(-1, -1, QStringLiteral("item(s) saved"));
    return true;
}

bool ctlDataView::DeleteViewItem(int item)
{
    if (item < 1 || item > model_->rowCount())
        throw AppError(QStringLiteral("Index out of bounds"));
    model_->removeRow(item - 1);
    emit StateChanged(model_->rowCount(), -1, QStringLiteral("item(s) deleted"));
    return true;
}

// Selection

int ctlDataView::GetViewSelections(QList<int>& selItems) const
{
    std::vector<int> rows;
    for (const QItemSelectionRange& range : lvwMain_->selectionModel()->selection())
        for (int r = range.top(); r <= range.bottom(); ++r)
            rows.push_back(r + 1);
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    selItems.clear();
    selItems.reserve(qsizetype(rows.size()) + 1);
    selItems.append(0);
    selItems.append(QList<int>(rows.begin(), rows.end()));
    return int(rows.size());
}

bool ctlDataView::isRowSelected(int row) const
{
    return lvwMain_->selectionModel()->isRowSelected(row - 1, {});
}

void ctlDataView::selectRow(int row, bool selected)
{
    const auto flags =
        (selected ? QItemSelectionModel::Select : QItemSelectionModel::Deselect) | QItemSelectionModel::Rows;
    lvwMain_->selectionModel()->select(model_->index(row - 1, 0), flags);
}

void ctlDataView::selectRows(int from, int to, bool selected)
{
    if (from < 1 || to < from)
        return;
    const auto flags =
        (selected ? QItemSelectionModel::Select : QItemSelectionModel::Deselect) | QItemSelectionModel::Rows;
    lvwMain_->selectionModel()->select(QItemSelection(model_->index(from - 1, 0), model_->index(to - 1, 0)),
                                       flags);
}

// Selects one row (0 for none) after clearing all rows outside keepFrom..keepTo, all 1-based.
void ctlDataView::selectOnly(int row, int keepFrom, int keepTo)
{
    QItemSelectionModel* sm = lvwMain_->selectionModel();
    const int n = model_->rowCount();
    const int last = std::max(0, model_->columnCount() - 1);
    QItemSelection clear;
    if (keepFrom > 1)
        clear.select(model_->index(0, 0), model_->index(std::min(n, keepFrom - 1) - 1, last));
    if (keepTo < n)
        clear.select(model_->index(std::max(keepTo, 0), 0), model_->index(n - 1, last));
    if (keepFrom > keepTo && n > 0)
        clear = QItemSelection(model_->index(0, 0), model_->index(n - 1, last));
    sm->select(clear, QItemSelectionModel::Deselect);
    if (row >= 1) {
        selectRow(row, true);
        showRow(row);
    }
}

void ctlDataView::showRow(int row)
{
    const QModelIndex index = model_->index(row - 1, 0);
    lvwMain_->selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    lvwMain_->scrollTo(index);
}

int ctlDataView::MoveFirst()
{
    const int n = model_->rowCount();
    selectOnly(n > 0 ? 1 : 0, 1, 1);
    UpdateViewState();
    return n > 0 ? 1 : 0;
}

// The lowest selected row from row 2 on decides; row 1 is never looked at, nor cleared.
int ctlDataView::MovePrevious()
{
    const int n = model_->rowCount();
    int target = 0;
    for (int i = 2; i <= n && target == 0; ++i)
        if (isRowSelected(i))
            target = i - 1;
    selectOnly(target, 1, 1);
    if (target >= 1 && !isRowSelected(target))
        selectRow(target, true);
    UpdateViewState();
    return target;
}

// The mirror image: the highest selected row below the last decides; the last row keeps its state.
int ctlDataView::MoveNext()
{
    const int n = model_->rowCount();
    int target = 0;
    for (int i = n - 1; i >= 1 && target == 0; --i)
        if (isRowSelected(i))
            target = i + 1;
    selectOnly(target, n, n);
    UpdateViewState();
    return target;
}

int ctlDataView::MoveLast()
{
    completeIfShort();
    const int n = model_->rowCount();
    selectOnly(n, n, n);
    UpdateViewState();
    return n;
}

int ctlDataView::MoveTo(int index)
{
    const int n = model_->rowCount();
    if (index == 0 || index > n)
        return 0;
    selectOnly(index >= 1 ? index : 0, 1, 0);
    UpdateViewState();
    return index >= 1 ? index : 0;
}

int ctlDataView::SelectAll()
{
    const int n = model_->rowCount();
    if (n > 0) {
        if (MultiSelect())
            lvwMain_->selectionModel()->select(
                QItemSelection(model_->index(0, 0), model_->index(n - 1, model_->columnCount() - 1)),
                QItemSelectionModel::Select);
        else
            selectOnly(n, 1, 0);  // a single-select list keeps the last row it was told to select
    }
    UpdateViewState();
    return n;
}

bool ctlDataView::ListCommand(const QString& keyword)
{
    if (keyword == u"first")
        MoveFirst();
    else if (keyword == u"previous")
        MovePrevious();
    else if (keyword == u"next")
        MoveNext();
    else if (keyword == u"last")
        MoveLast();
    else if (keyword == u"selectall")
        SelectAll();
    else if (keyword == u"deselect")
        DeSelect();
    else
        return false;
    return true;
}

int ctlDataView::DeSelect()
{
    const int n = model_->rowCount();
    if (n > 0) {
        if (MultiSelect()) {
            lvwMain_->selectionModel()->select(
                QItemSelection(model_->index(0, 0), model_->index(n - 1, model_->columnCount() - 1)),
                QItemSelectionModel::Toggle);
        } else if (n == 1) {
            selectRow(1, !isRowSelected(1));
        } else {
            selectOnly(n, 1, 0);  // flipping row after row, each selection drops the one before
        }
    }
    QList<int> selected;
    const int count = GetViewSelections(selected);
    UpdateViewState();
    return n - count;
}

void ctlDataView::UpdateViewState()
{
    QList<int> selected;
    const int count = GetViewSelections(selected);
    const QModelIndex current = lvwMain_->selectionModel()->currentIndex();
    int shown = 0;
    if (current.isValid() && isRowSelected(current.row() + 1))
        shown = current.row() + 1;
    else if (count > 0)
        shown = selected[1];
    strip_->setPosition(shown > 0 ? QString::number(shown) : QString());
    emit StateChanged(model_->rowCount(), count, QString());
    emit ItemsSelected(selected);
}

void ctlDataView::Move(const QString& tag)
{
    if (tag == u"first")
        MoveFirst();
    else if (tag == u"previous")
        MovePrevious();
    else if (tag == u"next")
        MoveNext();
    else if (tag == u"last")
        MoveLast();
}

// Events

bool ctlDataView::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == lvwMain_) {
        if (event->type() == QEvent::KeyPress) {
            auto* key = static_cast<QKeyEvent*>(event);
            emit KeyDown(VbKeyCode(key->key()), VbShift(key->modifiers()));
            if (!key->text().isEmpty())
                emit KeyPress(key->text().at(0).unicode());
        } else if (event->type() == QEvent::KeyRelease) {
            auto* key = static_cast<QKeyEvent*>(event);
            UpdateViewState();
            emit KeyUp(VbKeyCode(key->key()), VbShift(key->modifiers()));
        }
    } else if (auto* mouse = dynamic_cast<QMouseEvent*>(event); mouse && watched == lvwMain_->viewport()) {
        // Only mouse events are read here; the viewport sees many other kinds.
        switch (event->type()) {
            case QEvent::MouseButtonPress:
                emit MouseDown(VbButton(mouse->button()), VbShift(mouse->modifiers()),
                               int(mouse->position().x()), int(mouse->position().y()));
                break;
            case QEvent::MouseButtonRelease:
                lastMouseButton_ = 0;
                UpdateViewState();
                emit MouseUp(VbButton(mouse->button()), VbShift(mouse->modifiers()),
                             int(mouse->position().x()), int(mouse->position().y()));
                emit Click();
                break;
            case QEvent::MouseButtonDblClick:
                emit DblClick();
                break;
            case QEvent::MouseMove: {
                // A release that the list swallowed still has to update the owner.
                const int button = VbButton(mouse->buttons());
                if (button == 0 && lastMouseButton_ != 0)
                    UpdateViewState();
                lastMouseButton_ = button;
                emit MouseMove(button, VbShift(mouse->modifiers()), int(mouse->position().x()),
                               int(mouse->position().y()));
                break;
            }
            default:
                break;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void ctlDataView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    emit Resize();
}

// ListItems

int ListItems::Count() const
{
    return view_.model_->rowCount();
}
QString ListItems::Text(int index) const
{
    return view_.model_->text(index - 1, 0);
}
QString ListItems::SubItems(int index, int n) const
{
    return view_.model_->text(index - 1, n);
}
Bookmark ListItems::Tag(int index) const
{
    return view_.model_->tag(index - 1);
}
QString ListItems::Icon(int index) const
{
    return view_.model_->icon(index - 1);
}
QString ListItems::SmallIcon(int index) const
{
    return view_.model_->smallIcon(index - 1);
}
bool ListItems::Selected(int index) const
{
    return view_.isRowSelected(index);
}
void ListItems::setSelected(int index, bool selected)
{
    view_.selectRow(index, selected);
}
void ListItems::setSelected(int from, int to, bool selected)
{
    view_.selectRows(from, to, selected);
}
void ListItems::EnsureVisible(int index)
{
    view_.lvwMain_->scrollTo(view_.model_->index(index - 1, 0));
}

void ListItems::SelectOnly(int index)
{
    QList<int> before;
    view_.GetViewSelections(before);
    for (qsizetype i = 1; i < before.size(); ++i)
        setSelected(before[i], false);
    setSelected(index, true);
    EnsureVisible(index);
}

}  // namespace td
