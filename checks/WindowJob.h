#pragma once
#include "controls/JobRunner.h"

class QWidget;

namespace td {

// Runs a job of a window to its end with the progress dialog, the window busy meanwhile; answers
// whether it started.
bool RunWindowJob(QWidget* window, JobRunner::Job job);

// Closes a working window, also when it lives inside the frame.
void CloseWorkingWindow(QWidget* window);

}  // namespace td
