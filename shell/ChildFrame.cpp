#include "shell/ChildFrame.h"
#include "shell/CommandTarget.h"
#include "shell/mdiMain.h"
#include <QAction>
#include <QCursor>
#include <QMenu>

namespace td {

void ChildFrame::setPane(StatusPane pane, const QString& text)
{
    panes_[std::size_t(pane)] = text;
    // A window behind another, or one that has closed, keeps its text for later.
    if (isOpen() && frame_.activeChild() == window_)
        frame_.showPane(pane, text);
}

void ChildFrame::setOwnMenu(const QString& menuName)
{
    menu_ = menuName;
    frame_.updateOwnMenus();
}

void ChildFrame::popupMenu(const QString& menuName)
{
    if (QMenu* m = frame_.menu(menuName))
        m->popup(QCursor::pos());
}

void ChildFrame::setMenuChecked(const QString& entry, bool checked)
{
    if (QAction* a = frame_.menuAction(entry))
        a->setChecked(checked);
}

bool ChildFrame::menuChecked(const QString& entry) const
{
    QAction* a = frame_.menuAction(entry);
    return a && a->isChecked();
}

void ChildFrame::showWindow(const QString& name)
{
    frame_.ShowWindow(name);
}

void ChildFrame::windowClosed()
{
    if (closed_)
        return;
    closed_ = true;
    frame_.childClosed(window_);
}

QWidget* ChildFrame::dialogOwner() const
{
    return &frame_;
}

bool ChildFrame::menuVisible(const QString& menuName) const
{
    QMenu* m = frame_.menu(menuName);
    return m && m->menuAction()->isVisible();
}

void ChildFrame::windowCommand(const QString& window, const QString& keyword)
{
    if (CommandTarget* t = frame_.target(window))
        t->ExecuteCommand(keyword);
}

}  // namespace td
