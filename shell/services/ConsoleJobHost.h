#pragma once
#include "shell/services/JobHost.h"
#include <QHash>
#include <QStringList>

namespace td {

// A job run from the command line: no progress window, each failure one line on stderr, and each
// question the answer set for it beforehand (a wizard's default), else the headless default answer.
class ConsoleJobHost : public JobHost {
public:
    void StartProcess(const QString&, const QString&, qint64, qint64, bool) override {}
    void Processing(qint64) override {}
    bool IsProcessCanceled() override { return false; }
    void ResumeProcess() override {}
    void EndProcess() override {}

    MsgAnswer Ask(const QString& text, MsgButtons buttons, const QString& title = {}) override;
    void Inform(const QString& text, const QString& title = {}) override;
    void Fail(const QString& text, const QString& title = {}) override;

    // The answer to a question whose text starts with the given words.
    void setAnswer(const QString& questionStart, MsgAnswer answer);
    int failures() const { return failures_; }
    const QStringList& questions() const { return questions_; }

private:
    QList<std::pair<QString, MsgAnswer>> answers_;
    QStringList questions_;
    int failures_ = 0;
};

}  // namespace td
