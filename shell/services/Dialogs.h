#pragma once
#include <QString>
#include <QStringList>
#include <optional>

namespace td {

enum class MsgButtons { Ok, OkCancel, YesNo, YesNoCancel, RetryCancel };
enum class MsgIcon { None, Information, Critical, Question, Exclamation };
enum class MsgAnswer { Ok, Cancel, Yes, No, Retry };

struct OpenFileRequest {
    QString title;
    QString initialDir;
    QString filter;  // "Description(*.a;*.b)|*.a;*.b|All Files(*.*)|*.*"
    bool multiple = false;
};

// Every message box, input box and file or folder dialog goes through this seam, so tests can answer them.
class DialogSeam {
public:
    virtual ~DialogSeam() = default;
    virtual MsgAnswer message(const QString& text, MsgButtons buttons, MsgIcon icon,
                              const QString& title) = 0;
    // Empty optional when the input box was cancelled.
    virtual std::optional<QString> inputBox(const QString& prompt, const QString& title,
                                            const QString& def) = 0;
    // Chosen full paths; empty when cancelled.
    virtual QStringList openFiles(const OpenFileRequest& request) = 0;
    virtual QString saveFile(const OpenFileRequest& request) = 0;
    // Chosen folder, or empty text when cancelled.
    virtual QString pickFolder(const QString& title, const QString& startDir) = 0;
};

DialogSeam& Dialogs();
// Installs a seam (the console's message boxes, a test's script); nullptr restores the headless
// answers. The caller keeps ownership.
void SetDialogs(DialogSeam* seam);

// Short forms for the three kinds of message box. The title defaults to the application's.
void MsgInfo(const QString& text, const QString& title = {});
void MsgError(const QString& text, const QString& title = {});
MsgAnswer MsgAsk(const QString& text, MsgButtons buttons, const QString& title = {});

QString AppTitle();

}  // namespace td
