#include "ConsoleDialogs.h"
#include <cstdio>

namespace td::admin {

MsgAnswer ConsoleDialogs::message(const QString& text, MsgButtons buttons, MsgIcon, const QString&)
{
    QString line = text;
    line.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    std::fprintf(stderr, "%s\n", line.toLocal8Bit().constData());
    return buttons == MsgButtons::YesNo || buttons == MsgButtons::YesNoCancel ? MsgAnswer::No : MsgAnswer::Ok;
}

}  // namespace td::admin
