#pragma once
#include "shell/services/Dialogs.h"

namespace td {

// The dialog seam in production: Qt's message boxes and file dialogs.
class QtDialogs : public DialogSeam {
public:
    MsgAnswer message(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title) override;
    std::optional<QString> inputBox(const QString& prompt, const QString& title, const QString& def) override;
    QStringList openFiles(const OpenFileRequest& request) override;
    QString saveFile(const OpenFileRequest& request) override;
    QString pickFolder(const QString& title, const QString& startDir) override;

    // "Songs(*.db)|*.db|All Files(*.*)|*.*" as Qt writes it: "Songs (*.db);;All Files (*)".
    static QString qtFilter(const QString& filter);
};

}  // namespace td
