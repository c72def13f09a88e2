#pragma once
// A job host for the check and print tests: records what the job shows, answers its questions from a
// script (Yes once the script has run out, No to the cancel question) and presses the cancel button
// once the progress reaches cancelAt.
#include "shell/services/JobHost.h"
#include <QStringList>
#include <deque>

namespace td::test {

class CheckHost : public JobHost {
public:
    void StartProcess(const QString&, const QString& hint, qint64, qint64 max, bool) override
    {
        events << QStringLiteral("start %1 %2").arg(hint).arg(max);
    }
    void Processing(qint64 value) override { progress = value; }
    bool IsProcessCanceled() override { return cancelAt >= 0 && progress >= cancelAt; }
    void ResumeProcess() override { cancelAt = -1; }
    void EndProcess() override { events << QStringLiteral("end"); }
    MsgAnswer Ask(const QString& text, MsgButtons, const QString& = {}) override
    {
        events << QStringLiteral("ask ") + text;
        if (!answers.empty()) {
            const MsgAnswer a = answers.front();
            answers.pop_front();
            return a;
        }
        return text.startsWith(QStringLiteral("Do you want to cancel")) ? MsgAnswer::No : MsgAnswer::Yes;
    }
    void Inform(const QString& text, const QString& = {}) override { events << QStringLiteral("info ") + text; }
    void Fail(const QString& text, const QString& = {}) override { events << QStringLiteral("fail ") + text; }

    QStringList messages() const
    {
        QStringList out;
        for (const QString& e : events)
            if (e.startsWith(QStringLiteral("info ")) || e.startsWith(QStringLiteral("fail ")))
                out << e;
        return out;
    }

    QStringList events;
    std::deque<MsgAnswer> answers;
    qint64 progress = 0;
    qint64 cancelAt = -1;
};

}  // namespace td::test
