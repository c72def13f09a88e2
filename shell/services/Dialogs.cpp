#include "shell/services/Dialogs.h"
#include "shell/services/QtDialogs.h"
#include "shell/services/Seam.h"
#include <QPointer>
#include <QWidget>

namespace td {
namespace {

QPointer<QWidget>& owner()
{
    static QPointer<QWidget> w;
    return w;
}

}  // namespace

DialogSeam& Dialogs()
{
    return Seam<DialogSeam, QtDialogs>::get();
}

void SetDialogs(DialogSeam* seam)
{
    Seam<DialogSeam, QtDialogs>::install(seam);
}
void SetDialogOwner(QWidget* w)
{
    owner() = w;
}
QWidget* DialogOwner()
{
    return owner().data();
}

QString AppTitle()
{
    return QStringLiteral("Tunedesk");
}

void MsgInfo(const QString& text, const QString& title)
{
    Dialogs().message(text, MsgButtons::Ok, MsgIcon::Information, title);
}

void MsgError(const QString& text, const QString& title)
{
    Dialogs().message(text, MsgButtons::Ok, MsgIcon::Critical, title);
}

MsgAnswer MsgAsk(const QString& text, MsgButtons buttons, const QString& title)
{
    return Dialogs().message(text, buttons, MsgIcon::Question, title);
}

QString BrowseForFolder(QWidget* w, const QString& title)
{
    QWidget* previous = DialogOwner();
    if (w)
        SetDialogOwner(w);
    const QString path = Dialogs().pickFolder(title, QString());
    SetDialogOwner(previous);
    return path;
}

}  // namespace td
