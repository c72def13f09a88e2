#include "shell/services/HeadlessDialogs.h"
#include <cstdio>

namespace td {

MsgAnswer HeadlessDialogs::DefaultAnswer(MsgButtons buttons)
{
    switch (buttons) {
        case MsgButtons::YesNo:
        case MsgButtons::YesNoCancel:
            return MsgAnswer::No;
        case MsgButtons::OkCancel:
        case MsgButtons::RetryCancel:
            return MsgAnswer::Cancel;
        case MsgButtons::Ok:
            break;
    }
    return MsgAnswer::Ok;
}

MsgAnswer HeadlessDialogs::message(const QString& text, MsgButtons buttons, MsgIcon, const QString&)
{
    QString line = text;
    line.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    std::fprintf(stderr, "%s\n", line.toLocal8Bit().constData());
    return DefaultAnswer(buttons);
}

}  // namespace td
