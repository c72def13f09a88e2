#pragma once
#include "shell/services/Dialogs.h"
#include <QString>
#include <QStringList>
#include <deque>
#include <optional>
#include <vector>

namespace td::test {

// A dialog seam for tests: records every question the code asks and answers from a script.
// Scripted answers go to questions in order; a box with only OK takes none and answers Ok.
// An unscripted question answers its first button (Ok or Yes); an unscripted file or folder
// dialog and input box answer as if cancelled.
class ScriptedDialogs : public DialogSeam {
public:
    struct Call {
        QString kind;  // "message", "input", "open", "save", "folder"
        QString text;  // message text, prompt or dialog title
        MsgButtons buttons = MsgButtons::Ok;
        MsgIcon icon = MsgIcon::None;
        QString title;
    };

    ScriptedDialogs();            // installs itself as the seam
    ~ScriptedDialogs() override;  // restores the previous seam

    void answer(MsgAnswer a) { answers_.push_back(a); }
    void input(const QString& text) { inputs_.push_back({true, text}); }
    void cancelInput() { inputs_.push_back({false, {}}); }
    void files(QStringList paths) { files_.push_back(std::move(paths)); }
    void folder(QString path) { folders_.push_back(std::move(path)); }

    const std::vector<Call>& calls() const { return calls_; }
    QStringList messages() const;  // texts of the message boxes, in order
    void clear() { calls_.clear(); }

    MsgAnswer message(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title) override;
    std::optional<QString> inputBox(const QString& prompt, const QString& title, const QString& def) override;
    QStringList openFiles(const OpenFileRequest& request) override;
    QString saveFile(const OpenFileRequest& request) override;
    QString pickFolder(const QString& title, const QString& startDir) override;

private:
    std::vector<Call> calls_;
    std::deque<MsgAnswer> answers_;
    struct Input {
        bool ok;
        QString text;
    };
    std::deque<Input> inputs_;
    std::deque<QStringList> files_;
    std::deque<QString> folders_;
};

}  // namespace td::test
