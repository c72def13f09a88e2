#include "controls/frmMsgbox.h"
#include "regions/WindowText.h"
#include "shell/services/Dialogs.h"
#include <QLabel>
#include <QPushButton>
#include <cmath>

namespace td {

frmMsgbox::frmMsgbox(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmMsgbox"));
    prompt_ = new QLabel(this);
    prompt_->setObjectName(QStringLiteral("Prompt"));
    prompt_->setWordWrap(true);
    prompt_->setGeometry(12, 12, 376, 60);
    auto* templ = new QPushButton(this);
    templ->setObjectName(QStringLiteral("Buttons(0)"));
    templ->setGeometry(0, 84, 80, templ->sizeHint().height());
    templ->hide();
    buttons_.push_back(templ);
    resize(400, 84 + templ->height() + 12);
    ExportWindowText(this);
    ApplyWindowText(this);
}

void frmMsgbox::setNButton(int n)
{
    const QPushButton* templ = buttons_[0];
    for (int i = int(buttons_.size()); i <= n; ++i) {
        auto* button = new QPushButton(this);
        button->setObjectName(QStringLiteral("Buttons(%1)").arg(i));
        button->setGeometry(templ->geometry());
        button->hide();
        connect(button, &QPushButton::clicked, this, [this, button] {
            Result = button->text();
            hide();
        });
        buttons_.push_back(button);
    }
}

// Each button is centred in its nth of the width.
void frmMsgbox::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    setWindowTitle(Title.isEmpty() ? AppTitle() : Title);
    const int n = int(buttons_.size()) - 1;
    const double w = contentsRect().width();
    for (int i = 1; i <= n; ++i) {
        QPushButton* b = buttons_[std::size_t(i)];
        const double centre = w / n * (i - 0.5);
        b->move(int(std::lround(centre - b->width() / 2.0)), b->y());
        b->show();
    }
    prompt_->resize(std::max(0, width() - 2 * prompt_->x()), prompt_->height());
}

}  // namespace td
