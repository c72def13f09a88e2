#pragma once
#include "shell/services/Dialogs.h"

namespace td {

// The dialog seam of a program without windows (the admin tool, a job run from the command line):
// messages go to stderr as one line each, and every question gets its default answer, No where No
// is offered, so that such a program never works on anything the console would only touch after
// asking. Input boxes and file dialogs count as cancelled.
class HeadlessDialogs : public DialogSeam {
public:
    MsgAnswer message(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title) override;
    std::optional<QString> inputBox(const QString&, const QString&, const QString&) override
    {
        return std::nullopt;
    }
    QStringList openFiles(const OpenFileRequest&) override { return {}; }
    QString saveFile(const OpenFileRequest&) override { return {}; }
    QString pickFolder(const QString&, const QString&) override { return {}; }

    // The answer a question gets without anybody to ask.
    static MsgAnswer DefaultAnswer(MsgButtons buttons);
};

}  // namespace td
