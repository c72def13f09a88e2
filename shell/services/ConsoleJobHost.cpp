#include "shell/services/ConsoleJobHost.h"
#include "shell/services/HeadlessDialogs.h"
#include <cstdio>

namespace td {

namespace {

void line(std::FILE* to, QString text)
{
    text.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    text.replace(u'\n', u' ');
    std::fprintf(to, "%s\n", text.toLocal8Bit().constData());
}

}  // namespace

MsgAnswer ConsoleJobHost::Ask(const QString& text, MsgButtons buttons, const QString&)
{
    questions_ << text;
    for (const auto& [start, answer] : answers_)
        if (text.startsWith(start))
            return answer;
    return HeadlessDialogs::DefaultAnswer(buttons);
}

void ConsoleJobHost::Inform(const QString& text, const QString&)
{
    line(stdout, text);
}

void ConsoleJobHost::Fail(const QString& text, const QString&)
{
    ++failures_;
    line(stderr, text);
}

void ConsoleJobHost::setAnswer(const QString& questionStart, MsgAnswer answer)
{
    answers_.append({questionStart, answer});
}

}  // namespace td
