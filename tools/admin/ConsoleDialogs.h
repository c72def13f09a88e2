#pragma once
#include "shell/services/Dialogs.h"

namespace td::admin {

// Messages of the song database layer go to stderr; questions are answered No, so that a tool never
// works on a database the console would only open after asking.
class ConsoleDialogs : public DialogSeam {
public:
    ConsoleDialogs() { SetDialogs(this); }
    ~ConsoleDialogs() override { SetDialogs(nullptr); }
    MsgAnswer message(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title) override;
    std::optional<QString> inputBox(const QString&, const QString&, const QString&) override
    {
        return std::nullopt;
    }
    QStringList openFiles(const OpenFileRequest&) override { return {}; }
    QString saveFile(const OpenFileRequest&) override { return {}; }
    QString pickFolder(const QString&, const QString&) override { return {}; }
};

}  // namespace td::admin
