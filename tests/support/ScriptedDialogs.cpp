#include "support/ScriptedDialogs.h"

namespace td::test {

ScriptedDialogs::ScriptedDialogs()
{
    SetDialogs(this);
}
ScriptedDialogs::~ScriptedDialogs()
{
    SetDialogs(nullptr);
}

QStringList ScriptedDialogs::messages() const
{
    QStringList out;
    for (const auto& c : calls_)
        if (c.kind == QLatin1String("message"))
            out << c.text;
    return out;
}

MsgAnswer ScriptedDialogs::message(const QString& text, MsgButtons buttons, MsgIcon icon,
                                   const QString& title)
{
    calls_.push_back({QStringLiteral("message"), text, buttons, icon, title});
    // Scripted answers go to questions; a box with only OK takes none.
    if (buttons != MsgButtons::Ok && !answers_.empty()) {
        MsgAnswer a = answers_.front();
        answers_.pop_front();
        return a;
    }
    switch (buttons) {
        case MsgButtons::YesNo:
        case MsgButtons::YesNoCancel:
            return MsgAnswer::Yes;
        case MsgButtons::RetryCancel:
            return MsgAnswer::Retry;
        default:
            return MsgAnswer::Ok;
    }
}

std::optional<QString> ScriptedDialogs::inputBox(const QString& prompt, const QString& title, const QString&)
{
    calls_.push_back({QStringLiteral("input"), prompt, MsgButtons::OkCancel, MsgIcon::None, title});
    if (inputs_.empty())
        return std::nullopt;
    const Input v = inputs_.front();
    inputs_.pop_front();
    if (!v.ok)
        return std::nullopt;
    return v.text;
}

QStringList ScriptedDialogs::openFiles(const OpenFileRequest& request)
{
    calls_.push_back(
        {QStringLiteral("open"), request.title, MsgButtons::OkCancel, MsgIcon::None, request.filter});
    if (files_.empty())
        return {};
    auto v = files_.front();
    files_.pop_front();
    return v;
}

QString ScriptedDialogs::saveFile(const OpenFileRequest& request)
{
    calls_.push_back(
        {QStringLiteral("save"), request.title, MsgButtons::OkCancel, MsgIcon::None, request.filter});
    if (files_.empty())
        return {};
    auto v = files_.front();
    files_.pop_front();
    return v.value(0);
}

QString ScriptedDialogs::pickFolder(const QString& title, const QString&)
{
    calls_.push_back({QStringLiteral("folder"), title, MsgButtons::OkCancel, MsgIcon::None, {}});
    if (folders_.empty())
        return {};
    auto v = folders_.front();
    folders_.pop_front();
    return v;
}

}  // namespace td::test
