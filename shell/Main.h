#pragma once
#include <QString>

namespace td {

// The life of a run: start, the database login loop, the main window, a change of database, the end.
int Main(int argc, char** argv);
bool DatabaseLogin();
// Shows the frame, made on the first call and owned by the run, with the songbook in it.
void ShowMainWindow();
// Frees the frame of the run; the next ShowMainWindow makes a new one.
void FreeMainWindow();
void ChangeDatabase();
void CloseAllWindows();
void AppTerminate();

// "admin" while a database is open in the running session, empty otherwise.
QString SessionUser();

// Registers the working windows with the frame, so menus can open them by name.
void RegisterWindows();

// The database dialog, shown modally; answers its Ok. Tests and tools may replace how it is shown.
bool RunDatabaseDialog();

}  // namespace td
