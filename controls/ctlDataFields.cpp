#include "controls/ctlDataFields.h"
#include "controls/ControlsLog.h"
#include "controls/DropDownCombo.h"
#include "controls/FieldValue.h"
#include "controls/OleColor.h"
#include "controls/RecordRow.h"
#include "controls/Twips.h"
#include "controls/VbInput.h"
#include "shell/services/AppError.h"
#include "shell/services/Dialogs.h"
#include "shell/services/Ini.h"
#include "songdb/SongStatements.h"
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QTimer>

namespace td {

namespace {
const QString kLabel = QStringLiteral("label");
const QString kText = QStringLiteral("text");
const QString kCombo = QStringLiteral("combo");
const QString kList = QStringLiteral("list");

QString TextOf(const QWidget* control)
{
    if (auto* edit = qobject_cast<const QLineEdit*>(control))
        return edit->text();
    if (auto* combo = qobject_cast<const QComboBox*>(control))
        return combo->currentText();
    return {};
}

void SetTextColor(QWidget* w, const QColor& color)
{
    QPalette p = w->palette();
    p.setColor(QPalette::Active, QPalette::Text, color);
    p.setColor(QPalette::Inactive, QPalette::Text, color);
    w->setPalette(p);
}
}  // namespace

ctlDataFields::ctlDataFields(QWidget* parent) : QWidget(parent)
{
    rows_.push_back(makeRow(0));
    RowControls& t = rows_[0];
    const int height = t.txtValue->sizeHint().height();
    t.lblCaption->setGeometry(TwipsToPixels(120, this), TwipsToPixels(120, this), TwipsToPixels(1500, this),
                              height);
    t.txtValue->setGeometry(0, 0, TwipsToPixels(2400, this), height);
    t.cmdValue->setGeometry(0, 0, TwipsToPixels(1000, this), height);
    for (QWidget* w : {static_cast<QWidget*>(t.lblCaption), static_cast<QWidget*>(t.txtValue),
                       static_cast<QWidget*>(t.cboValue), static_cast<QWidget*>(t.cmdValue),
                       static_cast<QWidget*>(t.lblHint)})
        w->hide();
}

ctlDataFields::~ctlDataFields() = default;

ctlDataFields::RowControls ctlDataFields::makeRow(int index)
{
    RowControls r;
    const auto name = [index](const char* base) {
        return QStringLiteral("%1(%2)").arg(QLatin1String(base)).arg(index);
    };
    r.lblCaption = new QLabel(this);
    r.lblCaption->setObjectName(name("lblCaption"));
    r.lblCaption->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    r.txtValue = new QLineEdit(this);
    r.txtValue->setObjectName(name("txtValue"));
    r.cboValue = new DropDownCombo(this);
    r.cboValue->setObjectName(name("cboValue"));
    r.cboValue->setEditable(true);
    r.cboValue->setInsertPolicy(QComboBox::NoInsert);
    r.cmdValue = new QPushButton(this);
    r.cmdValue->setObjectName(name("cmdValue"));
    r.lblHint = new QLabel(this);
    r.lblHint->setObjectName(name("lblHint"));
    r.lblHint->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    if (index == 0)
        return r;
    for (QObject* o : {static_cast<QObject*>(r.txtValue), static_cast<QObject*>(r.cboValue),
                       static_cast<QObject*>(r.cboValue->lineEdit())}) {
        o->setProperty("Index", index);
        o->installEventFilter(this);
    }
    connect(r.txtValue, &QLineEdit::textChanged, this,
            [this, index] { valueEdited(index, rows_[std::size_t(index)].txtValue); });
    connect(r.cboValue, &QComboBox::editTextChanged, this, [this, index] {
        if (field(index).Class != kList)
            valueEdited(index, rows_[std::size_t(index)].cboValue);
    });
    connect(r.cboValue, &QComboBox::activated, this,
            [this, index] { valueEdited(index, rows_[std::size_t(index)].cboValue); });
    connect(r.cboValue, &DropDownCombo::DropDown, this, [this, index] { fillDropDown(index); });
    connect(r.cmdValue, &QPushButton::clicked, this, [this, index] { emit Click(index); });
    return r;
}

// Format

bool ctlDataFields::LoadFieldFormat()
{
    FieldFormat format = ReadFieldFormat(iniFile_);
    captionVisible_ = format.CaptionVisible;
    buttonVisible_ = format.ButtonVisible;
    fields_ = std::move(format.Fields);
    const int n = GetFieldCount();
    while (int(rows_.size()) <= n)
        rows_.push_back(makeRow(int(rows_.size())));
    for (int i = 1; i <= n; ++i)
        applyRow(i);
    while (int(rows_.size()) > n + 1) {
        RowControls& r = rows_.back();
        for (QWidget* w : {static_cast<QWidget*>(r.lblCaption), static_cast<QWidget*>(r.txtValue),
                           static_cast<QWidget*>(r.cboValue), static_cast<QWidget*>(r.cmdValue),
                           static_cast<QWidget*>(r.lblHint)})
            delete w;
        rows_.pop_back();
    }
    layoutRows();
    return true;
}

void ctlDataFields::showClassControl(int index, bool textBox)
{
    RowControls& r = rows_[std::size_t(index)];
    r.txtValue->setVisible(textBox);
    r.cboValue->setVisible(!textBox);
}

void ctlDataFields::applyRow(int i)
{
    RowControls& r = rows_[std::size_t(i)];
    const DataField& f = field(i);
    r.lblCaption->setText(f.Caption);
    r.lblCaption->setVisible(captionVisible_);
    const bool textBox = f.Class == kLabel || f.Class == kText;
    const bool password = f.Class == kText && f.ClassEx == u"password";
    r.txtValue->setEchoMode(password ? QLineEdit::Password : QLineEdit::Normal);
    showClassControl(i, textBox);
    r.cboValue->lineEdit()->setReadOnly(f.Class == kList);
    colorByEnabled(i);
    r.txtValue->setEnabled(f.Enabled);
    r.cboValue->setEnabled(f.Enabled);
    r.cmdValue->setText(f.Cmd);
    r.cmdValue->setVisible(!f.Cmd.isEmpty() && buttonVisible_);
    r.lblHint->setText(f.Hint);
    r.lblHint->setVisible(!f.Hint.isEmpty());
}

double ctlDataFields::formatTwips(const QString& key, double def) const
{
    return NumericValue(IniRead(iniFile_, QStringLiteral("Fields"), key, QString::number(def)));
}

// Rows spread over the height, but never further apart than one row and 30 twips.
void ctlDataFields::layoutRows()
{
    const RowControls& t = rows_[0];
    const double captionWidth = captionVisible_ ? formatTwips(QStringLiteral("CaptionWidth"),
                                                              PixelsToTwips(t.lblCaption->width(), this))
                                                : 0;
    const double buttonWidth =
        buttonVisible_ ? formatTwips(QStringLiteral("ButtonWidth"), PixelsToTwips(t.cmdValue->width(), this))
                       : 0;
    const double left = PixelsToTwips(t.lblCaption->x(), this);
    const double top = formatTwips(QStringLiteral("FieldTop"), PixelsToTwips(t.lblCaption->y(), this));
    const int highest = int(rows_.size()) - 1;
    const double rowHeight = PixelsToTwips(t.txtValue->height(), this);
    double step = highest > 0 ? PixelsToTwips(height(), this) / highest : 0;
    if (rowHeight + 30 <= step)
        step = rowHeight + 30;
    const double valueWidth = PixelsToTwips(width(), this) - (left + captionWidth + buttonWidth + left);
    const int h = t.txtValue->height();
    const auto px = [this](double twips) { return TwipsToPixels(twips, this); };
    for (int i = 1; i <= highest; ++i) {
        const RowControls& r = rows_[std::size_t(i)];
        const double y = step * (i - 1) + top;
        r.lblCaption->setGeometry(px(left), px(y), std::max(0, px(captionWidth)), h);
        r.txtValue->setGeometry(px(left + captionWidth), px(y), std::max(0, px(valueWidth)), h);
        r.cboValue->setGeometry(px(left + captionWidth), px(y), std::max(0, px(valueWidth)), h);
        r.cmdValue->setGeometry(px(left + captionWidth + valueWidth), px(y), std::max(0, px(buttonWidth)), h);
        r.lblHint->setGeometry(px(left + captionWidth + valueWidth), px(y), std::max(0, px(buttonWidth)), h);
    }
}

void ctlDataFields::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    layoutRows();
}

// Colours and texts

void ctlDataFields::setForeColor(int index, long oleColor)
{
    RowControls& r = rows_[std::size_t(index)];
    r.foreColor = oleColor;
    const QColor color = ColorFromOle(oleColor, palette());
    SetTextColor(r.txtValue, color);
    SetTextColor(r.cboValue, color);
}

void ctlDataFields::colorByEnabled(int index)
{
    setForeColor(index, field(index).Enabled ? kSysWindowText : kSysGrayText);
}

long ctlDataFields::ValueForeColor(int index) const
{
    return isRow(index) ? rows_[std::size_t(index)].foreColor : 0;
}

void ctlDataFields::setBothTexts(int index, const QString& text)
{
    RowControls& r = rows_[std::size_t(index)];
    r.txtValue->setText(text);
    r.cboValue->setEditText(text);
}

// A value wider than its box shows in full as the box's tip.
void ctlDataFields::setValueTip(int index)
{
    RowControls& r = rows_[std::size_t(index)];
    const auto tip = [this](QWidget* box, double marginTwips) {
        const QString text = TextOf(box);
        const bool wide =
            box->fontMetrics().horizontalAdvance(text) > box->width() - TwipsToPixels(marginTwips, this);
        box->setToolTip(wide ? text : QString());
    };
    tip(r.txtValue, 120);
    tip(r.cboValue, 240);
}

// Records

void ctlDataFields::clearRows()
{
    for (int i = 1; i <= GetFieldCount(); ++i) {
        RowControls& r = rows_[std::size_t(i)];
        field(i).Value.clear();
        field(i).Changed = false;
        r.guard = true;
        setBothTexts(i, QString());
        colorByEnabled(i);
        r.guard = false;
    }
}

bool ctlDataFields::LoadFieldDatas(const QVariantList& selBmks)
{
    clearRows();
    if (selBmks.size() < 2)
        return true;
    if (!loadBookmark(selBmks[1]))
        return false;
    return selBmks.size() == 2 || mergeBookmarks(selBmks);
}

Recordset& ctlDataFields::recordset() const
{
    Recordset* rs = mrsMain();
    if (!rs)
        throw AppError(QStringLiteral("Object variable or With block variable not set"));
    return *rs;
}

void ctlDataFields::seekOrThrow(const QVariant& bookmark)
{
    bool ok = false;
    const Bookmark key = bookmark.toLongLong(&ok);
    if (!ok || !recordset().setBookmark(key))
        throw AppError(QStringLiteral("Bookmark is invalid."));
}

// The first record of a selection fills the rows.
bool ctlDataFields::loadBookmark(const QVariant& bookmark)
{
    if (!bookmark.isValid() || bookmark.isNull())
        return false;
    int current = 0;
    try {
        seekOrThrow(bookmark);
        Recordset& rs = recordset();
        const qsizetype pos = rs.AbsolutePosition() - 1;
        for (current = 1; current <= GetFieldCount(); ++current) {
            DataField& f = field(current);
            RowControls& r = rows_[std::size_t(current)];
            const QString value = f.Class == kLabel ? f.ClassEx : rs.text(pos, RequireField(rs, f.Field));
            f.Changed = false;
            r.guard = true;
            setBothTexts(current, value);
            colorByEnabled(current);
            setValueTip(current);
            r.guard = false;
            f.Value = value;
        }
        return true;
    } catch (const std::exception& e) {
        qCWarning(lcControls) << "field not shown:" << ErrorText(e);
        if (isRow(current))
            rows_[std::size_t(current)].guard = false;
        return false;
    }
}

// Further records keep the first one's text; a field whose value changes from one record to the next
// turns grey. The rows are touched only when a field turns grey, and a grey field is read again only
// for the last record, so selecting a whole large list stays quick.
bool ctlDataFields::mergeBookmarks(const QVariantList& selBmks)
{
    try {
        Recordset& rs = recordset();
        const int count = GetFieldCount();
        std::vector<int> columns(std::size_t(count) + 1, -1);
        std::vector<char> grey(std::size_t(count) + 1, 0);
        for (int c = 1; c <= count; ++c)
            if (field(c).Class != kLabel)
                columns[std::size_t(c)] = RequireField(rs, field(c).Field);
        QString value;
        for (qsizetype i = 2; i < selBmks.size(); ++i) {
            if (!selBmks[i].isValid() || selBmks[i].isNull())
                return false;
            seekOrThrow(selBmks[i]);
            const qsizetype pos = rs.AbsolutePosition() - 1;
            const bool last = i + 1 == selBmks.size();
            for (int c = 1; c <= count; ++c) {
                const std::size_t k = std::size_t(c);
                if (columns[k] < 0 || (grey[k] && !last))
                    continue;
                DataField& f = field(c);
                value = rs.text(pos, columns[k]);
                if (!grey[k] && value != f.Value) {
                    grey[k] = 1;
                    setForeColor(c, kSysGrayText);
                }
                f.Value = value;
            }
        }
        return true;
    } catch (const std::exception& e) {
        qCWarning(lcControls) << "fields not read from the record:" << ErrorText(e);
        return false;
    }
}

void ctlDataFields::writeFields(bool changedOnly)
{
    Recordset& rs = recordset();
    for (const DataField& f : fields_) {
        if (changedOnly && !f.Changed)
            continue;
        Field target = rs.Fields(f.Field);
        target.setValue(FieldValueForType(f.Value, target.Type()));
    }
}

void ctlDataFields::failed(const QString& text, const std::exception& e, bool cancelUpdate)
{
    if (Recordset* rs = mrsMain(); cancelUpdate && rs) {
        try {
            rs->CancelUpdate();
        } catch (const std::exception& undo) {
            qCWarning(lcControls) << "edit not cancelled after a failed write:" << ErrorText(undo);
        }
    }
    MsgError(text + ErrSuffix(e));
}

bool ctlDataFields::AddData(QVariant& newBmk)
{
    try {
        Recordset& rs = recordset();
        rs.AddNew();
        writeFields(false);
        rs.Update();
        newBmk = QVariant::fromValue(rs.bookmark());
        return true;
    } catch (const std::exception& e) {
        failed(QStringLiteral("CtlDataFields - add data failed! "), e, true);
        return false;
    }
}

bool ctlDataFields::SaveData(const QVariant& selBmk)
{
    try {
        seekOrThrow(selBmk);
        writeFields(true);
        recordset().Update();
        return true;
    } catch (const std::exception& e) {
        failed(QStringLiteral("CtlDataFields - save data failed! "), e, true);
        return false;
    }
}

bool ctlDataFields::DeleteData(const QVariant& selBmk)
{
    try {
        seekOrThrow(selBmk);
        recordset().Delete();
        return true;
    } catch (const std::exception& e) {
        failed(QStringLiteral("CtlDataFields - delete data failed! "), e, false);
        return false;
    }
}

// Edits

void ctlDataFields::valueEdited(int index, QWidget* control)
{
    RowControls& r = rows_[std::size_t(index)];
    if (r.guard)
        return;
    DataField& f = field(index);
    const QString old = f.Value;
    QString newValue = TextOf(control);
    bool cancel = false;
    emit BeforeValueChanged(index, old, newValue, cancel);
    if (cancel) {
        r.guard = true;
        setBothTexts(index, old);
        r.guard = false;
    } else {
        setForeColor(index, kPureBlue);
        f.Changed = true;
        f.Value = TextOf(control);
        // Only the other box follows: rewriting the one being typed in would move its cursor.
        r.guard = true;
        if (control == r.txtValue)
            r.cboValue->setEditText(f.Value);
        else
            r.txtValue->setText(f.Value);
        r.guard = false;
        emit AfterValueChanged(index, old, f.Value);
    }
    if (control->width() < control->fontMetrics().horizontalAdvance(TextOf(control)))
        control->setToolTip(TextOf(control));
}

// The list is read anew each time it drops down, and never before.
void ctlDataFields::fillDropDown(int index)
{
    RowControls& r = rows_[std::size_t(index)];
    const QString remembered = r.cboValue->currentText();
    r.guard = true;
    r.cboValue->clear();
    const QString sql = field(index).ClassEx;
    if (!sql.isEmpty()) {
        try {
            if (std::unique_ptr<Recordset> rs = openList(sql)) {
                QStringList items;
                for (qsizetype pos = 0; pos < rs->RecordCount(); ++pos)
                    items << rs->text(pos, 0);
                r.cboValue->addItems(items);
                rs->Close();
            }
        } catch (const std::exception& e) {
            // A statement that fails leaves the list empty.
            qCWarning(lcControls) << "drop-down list not read:" << ErrorText(e);
        }
    }
    r.cboValue->setEditText(remembered);
    r.guard = false;
}

// The owner's opener, or the song database's: a statement that fails has shown its message there.
std::unique_ptr<Recordset> ctlDataFields::openList(const QString& sql) const
{
    if (OpenRecordset)
        return OpenRecordset(sql);
    std::unique_ptr<Recordset> rs;
    return SongOpenRecordset(sql, rs) ? std::move(rs) : nullptr;
}

// GetField / SetField

QVariant ctlDataFields::GetField(int index, const QString& key) const
{
    if (!isRow(index))
        return {};
    const DataField& f = field(index);
    const QString k = key.toLower();
    if (k == u"caption")
        return f.Caption;
    if (k == u"hint")
        return f.Hint;
    if (k == u"table")
        return f.Table;
    if (k == u"field")
        return f.Field;
    if (k == u"enabled")
        return f.Enabled;
    if (k == u"class")
        return f.Class;
    if (k == u"classex")
        return f.ClassEx;
    if (k == u"cmd")
        return f.Cmd;
    if (k == u"value")
        return f.Value;
    if (k == u"changed")
        return f.Changed;
    return {};
}

bool ctlDataFields::SetField(int index, const QString& key, const QVariant& value)
{
    if (!isRow(index))
        return false;
    DataField& f = field(index);
    RowControls& r = rows_[std::size_t(index)];
    const QString k = key.toLower();
    const QString text = value.toString();
    if (k == u"caption") {
        f.Caption = text;
        r.lblCaption->setText(text);
    } else if (k == u"hint") {
        f.Hint = text;
        r.lblHint->setText(text);
    } else if (k == u"table") {
        f.Table = text;
    } else if (k == u"field") {
        f.Field = text;
    } else if (k == u"enabled") {
        f.Enabled = value.toBool();
        colorByEnabled(index);
        r.txtValue->setEnabled(f.Enabled);
        r.cboValue->setEnabled(f.Enabled);
    } else if (k == u"class") {
        f.Class = text;
        showClassControl(index, text == kText);
        r.cboValue->lineEdit()->setReadOnly(text == kList);
    } else if (k == u"classex") {
        // The password mode follows the value held so far; a change shows at the next such call.
        if (f.Class == kText)
            r.txtValue->setEchoMode(f.ClassEx == u"password" ? QLineEdit::Password : QLineEdit::Normal);
        f.ClassEx = text;
    } else if (k == u"cmd") {
        f.Cmd = text;
        r.cmdValue->setText(text);
        r.cmdValue->setVisible(!text.isEmpty() && buttonVisible_);
    } else if (k == u"value") {
        f.Value = text;
        setBothTexts(index, text);  // guards clear: a differing box runs the edit procedure
    } else if (k == u"changed") {
        f.Changed = value.toBool();
        if (f.Changed)
            setForeColor(index, kPureBlue);
        else
            colorByEnabled(index);
    }
    return false;
}

int ctlDataFields::GetFieldIndex(const QString& name) const
{
    for (int i = 1; i <= GetFieldCount(); ++i)
        if (field(i).Field.compare(name, Qt::CaseInsensitive) == 0)
            return i;
    return 0;
}

QLineEdit* ctlDataFields::txtValue(int index) const
{
    return rows_.at(std::size_t(index)).txtValue;
}
DropDownCombo* ctlDataFields::cboValue(int index) const
{
    return rows_.at(std::size_t(index)).cboValue;
}
QPushButton* ctlDataFields::cmdValue(int index) const
{
    return rows_.at(std::size_t(index)).cmdValue;
}
QLabel* ctlDataFields::lblCaption(int index) const
{
    return rows_.at(std::size_t(index)).lblCaption;
}
QLabel* ctlDataFields::lblHint(int index) const
{
    return rows_.at(std::size_t(index)).lblHint;
}

// Events of the value boxes

bool ctlDataFields::eventFilter(QObject* watched, QEvent* event)
{
    const int index = watched->property("Index").toInt();
    if (!isRow(index))
        return QWidget::eventFilter(watched, event);
    RowControls& r = rows_[std::size_t(index)];
    const bool inText = watched == r.txtValue;
    const bool inCombo = !inText;
    switch (event->type()) {
        case QEvent::FocusIn:
            if (inText)
                QTimer::singleShot(0, r.txtValue, &QLineEdit::selectAll);
            else if (field(index).Class == kCombo)
                QTimer::singleShot(0, r.cboValue->lineEdit(), &QLineEdit::selectAll);
            break;
        case QEvent::KeyPress: {
            auto* key = static_cast<QKeyEvent*>(event);
            if (inCombo) {
                const bool typed = !key->text().isEmpty() && key->key() != Qt::Key_Tab &&
                                   key->key() != Qt::Key_Return && key->key() != Qt::Key_Enter &&
                                   key->key() != Qt::Key_Escape;
                return field(index).Class == kList && typed;
            }
            emit KeyDown(index, VbKeyCode(key->key()), VbShift(key->modifiers()));
            if (!key->text().isEmpty())
                emit KeyPress(index, key->text().at(0).unicode());
            break;
        }
        case QEvent::KeyRelease:
            if (inText) {
                auto* key = static_cast<QKeyEvent*>(event);
                emit KeyUp(index, VbKeyCode(key->key()), VbShift(key->modifiers()));
            }
            break;
        case QEvent::MouseButtonDblClick:
            if (inText)
                emit DblClick(index);
            break;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseMove:
            if (inText) {
                auto* m = static_cast<QMouseEvent*>(event);
                const int button = VbButton(event->type() == QEvent::MouseMove ? m->buttons() : m->button());
                const int shift = VbShift(m->modifiers());
                const int x = int(m->position().x()), y = int(m->position().y());
                if (event->type() == QEvent::MouseButtonPress)
                    emit MouseDown(index, button, shift, x, y);
                else if (event->type() == QEvent::MouseButtonRelease)
                    emit MouseUp(index, button, shift, x, y);
                else
                    emit MouseMove(index, button, shift, x, y);
            }
            break;
        default:
            break;
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace td
