#include "controls/ctlButtons.h"
#include "controls/Twips.h"
#include "controls/VbInput.h"
#include "shell/services/AppError.h"
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPushButton>

namespace td {

ctlButtons::ctlButtons(QWidget* parent) : QWidget(parent)
{
    QPushButton* templ = makeButton(0);
    templ->resize(templ->width(), std::max(templ->sizeHint().height(), TwipsToPixels(375, this)));
    templ->hide();
}

QPushButton* ctlButtons::makeButton(int index)
{
    auto* button = new QPushButton(this);
    button->setObjectName(QStringLiteral("cmdButton(%1)").arg(index));
    button->setProperty("Index", index);
    buttons_.push_back(button);
    if (index > 0) {
        button->resize(button->width(), buttons_[0]->height());
        button->installEventFilter(this);
        connect(button, &QPushButton::clicked, this, [this, index] { emit Click(index); });
    }
    return button;
}

void ctlButtons::applyColor(QPushButton* button, long oleColor)
{
    QPalette p = palette();
    if (!IsSystemColor(oleColor) || oleColor != kSysButtonFace)
        p.setColor(QPalette::Button, ColorFromOle(oleColor, palette()));
    button->setPalette(p);
}

void ctlButtons::setBackColor(long oleColor)
{
    backColor_ = oleColor;
    if (oleColor == kSysButtonFace) {
        setAutoFillBackground(false);
        return;
    }
    QPalette p = palette();
    p.setColor(QPalette::Window, ColorFromOle(oleColor, palette()));
    setPalette(p);
    setAutoFillBackground(true);
}

bool ctlButtons::LoadButtonFormat()
{
    items_ = ReadButtonFormat(iniFile_);
    const int n = GetButtonCount();
    while (int(buttons_.size()) <= n)
        makeButton(int(buttons_.size()));
    for (int i = 1; i <= n; ++i) {
        const ButtonItem& b = items_[std::size_t(i - 1)];
        QPushButton* button = buttons_[std::size_t(i)];
        button->setProperty("Tag", b.Class);
        button->setText(b.Caption);
        button->setToolTip(b.ToolTipText);
        button->setEnabled(b.Enabled);
        // A button without a caption is never shown, though the table keeps it visible.
        button->setVisible(!b.Caption.isEmpty() && b.Visible);
        applyColor(button, b.BackColor);
    }
    while (int(buttons_.size()) > n + 1) {
        delete buttons_.back();
        buttons_.pop_back();
    }
    layoutButtons();
    return true;
}

// Buttons spread over the height, but never further apart than one button and 30 twips.
void ctlButtons::layoutButtons()
{
    int visible = 0;
    for (const ButtonItem& b : items_)
        visible += b.Visible ? 1 : 0;
    if (visible < 1) {
        emit Resize();
        return;
    }
    const QRect inner = contentsRect();
    const double height = PixelsToTwips(buttons_[0]->height(), this);
    double step = visible > 1 ? (PixelsToTwips(inner.height(), this) - height) / (visible - 1) : 0;
    if (height + 30 <= step)
        step = height + 30;
    int k = 0;
    for (int i = 1; i <= GetButtonCount(); ++i) {
        if (!items_[std::size_t(i - 1)].Visible)
            continue;
        QPushButton* button = buttons_[std::size_t(i)];
        button->setGeometry(inner.left(), inner.top() + TwipsToPixels(step * k, this), inner.width(),
                            button->height());
        ++k;
    }
    emit Resize();
}

void ctlButtons::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    layoutButtons();
}

const ButtonItem& ctlButtons::item(int index) const
{
    if (index < 1 || index > GetButtonCount())
        throw AppError(QStringLiteral("Subscript out of range"));
    return items_[std::size_t(index - 1)];
}

QString ctlButtons::GetButton(int index, const QString& keyName) const
{
    const ButtonItem& b = item(index);
    const auto boolText = [](bool v) { return v ? QStringLiteral("True") : QStringLiteral("False"); };
    if (keyName == u"class")
        return b.Class;
    if (keyName == u"caption")
        return b.Caption;
    if (keyName == u"tooltiptext")
        return b.ToolTipText;
    if (keyName == u"enabled")
        return boolText(b.Enabled);
    if (keyName == u"visible")
        return boolText(b.Visible);
    if (keyName == u"backcolor")
        return QString::number(b.BackColor);
    return {};
}

// Nothing here redoes the layout: a button made invisible leaves its gap until the next resize.
bool ctlButtons::SetButton(int index, const QString& keyName, const QString& value)
{
    item(index);
    ButtonItem& b = items_[std::size_t(index - 1)];
    QPushButton* button = buttons_[std::size_t(index)];
    if (keyName == u"class") {
        b.Class = value;
    } else if (keyName == u"caption") {
        b.Caption = value;
        if (value.isEmpty())
            b.Visible = false;
        button->setText(value);
    } else if (keyName == u"tooltiptext") {
        b.ToolTipText = value;
        button->setToolTip(value);
    } else if (keyName == u"enabled") {
        b.Enabled = NumericValue(value) != 0;
        button->setEnabled(b.Enabled);
    } else if (keyName == u"visible") {
        b.Visible = NumericValue(value) != 0;
        button->setVisible(b.Visible);
    } else if (keyName == u"backcolor") {
        b.BackColor = OleColorFromText(value);
        applyColor(button, b.BackColor);
    }
    return false;
}

int ctlButtons::GetButtonIndex(const QString& cls) const
{
    for (int i = 1; i <= GetButtonCount(); ++i)
        if (items_[std::size_t(i - 1)].Class == cls)
            return i;
    return 0;
}

bool ctlButtons::eventFilter(QObject* watched, QEvent* event)
{
    const int index = watched->property("Index").toInt();
    switch (event->type()) {
        case QEvent::KeyPress: {
            auto* key = static_cast<QKeyEvent*>(event);
            emit KeyDown(index, VbKeyCode(key->key()), VbShift(key->modifiers()));
            if (!key->text().isEmpty())
                emit KeyPress(index, key->text().at(0).unicode());
            break;
        }
        case QEvent::KeyRelease: {
            auto* key = static_cast<QKeyEvent*>(event);
            emit KeyUp(index, VbKeyCode(key->key()), VbShift(key->modifiers()));
            break;
        }
        case QEvent::MouseMove:
        case QEvent::MouseButtonRelease: {
            auto* m = static_cast<QMouseEvent*>(event);
            const bool move = event->type() == QEvent::MouseMove;
            const int button = VbButton(move ? m->buttons() : m->button());
            const int x = int(m->position().x()), y = int(m->position().y());
            if (move)
                emit MouseMove(index, button, VbShift(m->modifiers()), x, y);
            else
                emit MouseUp(index, button, VbShift(m->modifiers()), x, y);
            break;
        }
        default:
            break;
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace td
