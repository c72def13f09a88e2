#include "shell/MenuAccessKeys.h"
#include <QAction>
#include <QApplication>
#include <QMenuBar>
#include <QShortcutEvent>

namespace td {

MenuAccessKeys::MenuAccessKeys(QMenuBar* bar) : QObject(bar), bar_(bar)
{
    qApp->installEventFilter(this);
}

bool MenuAccessKeys::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::Shortcut || watched == bar_)
        return false;
    auto* shortcut = static_cast<QShortcutEvent*>(event);
    auto* widget = qobject_cast<QWidget*>(watched);
    if (!shortcut->isAmbiguous() || !widget || widget->window() != bar_->window() || !bar_->isVisible())
        return false;
    for (QAction* entry : bar_->actions()) {
        if (entry->isVisible() && entry->isEnabled() && entry->menu() &&
            QKeySequence::mnemonic(entry->text()) == shortcut->key()) {
            bar_->setActiveAction(entry);
            return true;
        }
    }
    return false;
}

}  // namespace td
