#pragma once

namespace td {

// Long jobs on the interface thread let events run in the middle of their work. Whatever would take
// the windows away under such a job (the end of the program, a change of database) waits for it.

// Marks the time a job lets events run.
class JobYieldScope {
public:
    JobYieldScope();
    ~JobYieldScope();
    JobYieldScope(const JobYieldScope&) = delete;
    JobYieldScope& operator=(const JobYieldScope&) = delete;
};

// True while some job lets events run, so the code now running is nested inside that job.
bool InsideJobYield();

// Asks every running job to stop at its next look, as its own cancel button would.
void RequestJobsStop();
bool JobsStopRequested();
void ClearJobsStop();

}  // namespace td
