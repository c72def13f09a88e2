#pragma once

namespace td {

// The life of a run: start, the database login loop, the main window, a change of database, the end.
int Main(int argc, char** argv);
bool DatabaseLogin();
void ShowMainWindow();
void ChangeDatabase();
void CloseAllWindows();
void AppTerminate();

// The database dialog, shown modally; answers its Ok. Tests and tools may replace how it is shown.
bool RunDatabaseDialog();

}  // namespace td
