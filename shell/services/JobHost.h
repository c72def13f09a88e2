#pragma once
#include "shell/services/Dialogs.h"
#include <QString>

namespace td {

// What a long job sees of whoever runs it. The console fills it with the progress window and message
// boxes, the admin tool with lines on stderr and default answers, so one job function serves both.
// A job in the console runs on a thread of its own and calls this from there.
class JobHost {
public:
    virtual ~JobHost() = default;

    // The progress window's calls, in the order a job makes them.
    virtual void StartProcess(const QString& caption, const QString& hint, qint64 start, qint64 max,
                              bool canCancel) = 0;
    virtual void Processing(qint64 value) = 0;
    virtual bool IsProcessCanceled() = 0;
    virtual void ResumeProcess() = 0;
    virtual void EndProcess() = 0;

    // Questions and messages of the job; each is answered before the job goes on.
    virtual MsgAnswer Ask(const QString& text, MsgButtons buttons, const QString& title = {}) = 0;
    virtual void Inform(const QString& text, const QString& title = {}) = 0;
    // A failure the job reports and goes on from (or stops at, as it decides).
    virtual void Fail(const QString& text, const QString& title = {}) = 0;

    // The program or its window is going away: the job ends at its next look, without asking.
    virtual bool StopRequested() { return false; }
};

// The look at the cancel button inside a job's loop: when it was pressed, asks "Do you want to cancel
// the process?"; Yes answers true (stop), No resumes and answers false. A stop request answers true.
bool JobStopWanted(JobHost& host);

}  // namespace td
