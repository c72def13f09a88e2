#include "controls/ctlDataView.h"
#include "controls/StatusStrip.h"
#include "controls/Twips.h"
#include "controls/UiYield.h"
#include "controls/VbInput.h"
#include "shell/services/AppError.h"
#include "shell/services/Dialogs.h"
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTreeView>
#include <QVBoxLayout>
#include <algorithm>

namespace td {

ctlDataView::ctlDataView(QWidget* parent) : QWidget(parent)
{
    model_ = new DataViewModel(this);
    lvwMain_ = new QTreeView(this);
    lvwMain_->setObjectName(QStringLiteral("lvwMain"));
    lvwMain_->setModel(model_);
    lvwMain_->setRootIsDecorated(false);
    lvwMain_->setItemsExpandable(false);
    lvwMain_->setUniformRowHeights(true);
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

ctlDataView::~ctlDataView()
{
    SaveViewFormat();
}

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

// Runs a load or refresh pass: none starts while another yields, a failure shows as "Load data
// failed!", and the strip and the owner's state are brought up to date at the end.
bool ctlDataView::runPass(const std::function<bool(Recordset&)>& pass)
{
    if (loading_)
        return false;
    loading_ = true;
    bool ok = true;
    bool report = true;
    try {
        report = pass(recordset());
    } catch (const std::exception& e) {
        reportLoadFailure(e);
        ok = false;
    }
    model_->publish();
    strip_->EndStatus();
    loading_ = false;
    if (report)
        UpdateViewState();
    return ok;
}

bool ctlDataView::LoadViewData(int piMaxItem)
{
    return runPass([&](Recordset& rs) {
        const qsizetype n = rs.RecordCount();
        if (n < 1)
            return true;
        const RecordRow reader = rowReader();
        std::vector<bool> seen(static_cast<std::size_t>(n), false);
        BookmarkFinder finder(rs);
        for (qsizetype r = 0; r < model_->rows().count(); ++r) {
            const qsizetype pos = finder.find(model_->tag(r), 1);
            if (pos >= 0)
                seen[std::size_t(pos)] = true;
        }
        strip_->StartStatus(QStringLiteral("showing data ..."), 0, n, true);
        strip_->YieldNow();
        addUnseen(reader, seen, piMaxItem, false);
        return true;
    });
}

// Adds a row for each record not seen, in recordset order. The status counts positions in a load
// and records in a refresh; both yield every thousand and stop on cancel.
void ctlDataView::addUnseen(const RecordRow& reader, const std::vector<bool>& seen, int maxItems,
                            bool refreshing)
{
    const qsizetype n = qsizetype(seen.size());
    // Room for exactly the rows to come: a refresh adds few, and a list of a million rows should
    // not reserve a second million. Short loads (a hundred more on a click) grow as usual.
    if (maxItems == 0)
        model_->reserveRows(model_->rows().count() + std::count(seen.begin(), seen.end(), false));
    QString scratch;
    int added = 0;
    // Every paint after new rows lays out the whole list again, which at a million rows costs more
    // than filling; the first rows show at once, more join a few times a second.
    UiYield publishing(250);
    bool shown = false;
    for (qsizetype pos = 0; pos < n; ++pos) {
        if (!seen[std::size_t(pos)]) {
            appendRecord(reader, pos, scratch);
            ++added;
            if (maxItems != 0 && added >= maxItems)
                break;
        }
        // The load counts the position it moved to, the refresh the record it just looked at.
        const qsizetype counter = refreshing ? pos + 1 : pos + 2;
        if (counter > n)
            continue;
        if (counter % 10 == 0)
            strip_->StepStatus(counter);
        if (counter % 1000 == 0) {
            if (!shown || publishing.due()) {
                model_->publish();
                publishing.restart();
                shown = true;
            }
            if (strip_->YieldAndCheckCancel())
                break;
        }
    }
}

bool ctlDataView::verifyRows(const RecordRow& reader, std::vector<bool>& seen)
{
    const qsizetype total = model_->rows().count();
    QString scratch;
    BookmarkFinder finder(recordset());
    for (qsizetype i = total; i >= 1; --i) {
        const qsizetype row = i - 1;
        try {
            const qsizetype pos = finder.find(model_->tag(row), -1);
            if (pos < 0) {
                model_->removeRow(row);
            } else {
                reader.joinedText(pos, scratch);
                if (model_->rows().joined(row) != QStringView(scratch))
                    model_->setRowText(row, scratch);
                model_->setIcon(row, reader.icon(pos));
                model_->setSmallIcon(row, reader.smallIcon(pos));
                seen[std::size_t(pos)] = true;
            }
        } catch (const std::exception&) {
            // One bad row must not stop the pass.
        }
        if (i % 10 == 0)
            strip_->StepStatus(total - i);
        if (i % 1000 == 0 && strip_->YieldAndCheckCancel())
            return false;
    }
    return true;
}

bool ctlDataView::RefreshViewData()
{
    return runPass([&](Recordset& rs) {
        rs.Requery();
        const qsizetype n = rs.RecordCount();
        if (n == 0) {
            model_->clearRows();
            return false;  // an emptied list reports no state
        }
        const RecordRow reader = rowReader();
        std::vector<bool> seen(static_cast<std::size_t>(n), false);
        if (model_->rows().count() > 0)
            strip_->StartStatus(QStringLiteral("verify records ..."), 0, model_->rows().count(), true);
        if (verifyRows(reader, seen)) {
            strip_->StartStatus(QStringLiteral("add records ..."), 0, n, true);
            addUnseen(reader, seen, 0, true);
        }
        return true;
    });
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
void ListItems::EnsureVisible(int index)
{
    view_.lvwMain_->scrollTo(view_.model_->index(index - 1, 0));
}

}  // namespace td
