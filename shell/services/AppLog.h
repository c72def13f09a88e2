#pragma once
#include <QString>

namespace td {

QString AppVersion();          // "8.02 Build 0014"
QString WindowsVersionText();  // "Major6 Minor1 Build... PlatformId2 CSDVersion..." from the running system

// The event log, event.log in the program directory: a ring of 500 lines.
// None of these lets an error reach its caller.
void AppLogSystemInfo();
void AppLogEvent(const QString& text);
void AppLogError(const QString& text);

}  // namespace td
