#pragma once
#include "shell/services/Dialogs.h"

class QWidget;

namespace td {

// The dialog seam of the console: Qt's message boxes and file dialogs. The console installs it at
// start; without it the seam answers as a program without windows would.
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

// The window that owns the dialogs, if any.
void SetDialogOwner(QWidget* owner);
QWidget* DialogOwner();

// The folder picker: chosen path or empty text.
QString BrowseForFolder(QWidget* owner, const QString& title);

}  // namespace td
