#include "shell/services/Dialogs.h"
#include "shell/services/HeadlessDialogs.h"
#include "shell/services/Seam.h"

namespace td {
DialogSeam& Dialogs()
{
    return Seam<DialogSeam, HeadlessDialogs>::get();
}

void SetDialogs(DialogSeam* seam)
{
    Seam<DialogSeam, HeadlessDialogs>::install(seam);
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

}  // namespace td
