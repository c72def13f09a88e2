#pragma once
#include "shell/services/TextArray.h"
#include <QString>

namespace td {

// INI files with the results of the Windows profile functions: names match without regard to case,
// blanks around names and values are trimmed, the first matching key wins, values read through a
// 255-character buffer. Files are UTF-8; every write replaces the file atomically.
QString IniRead(const QString& file, const QString& section, const QString& key, const QString& def);
bool IniWrite(const QString& file, const QString& section, const QString& key, const QString& value);
int IniReadSection(const QString& file, const QString& section, TextArray& names);
bool IniDeleteSection(const QString& file, const QString& section);

// The application's own INI, <program dir>/<exe name>.ini, section Default. An empty file name
// makes the next use take that default path again.
bool IniSetAppFile(const QString& file);
QString AppIniFile();
QString AppIniRead(const QString& key, const QString& def);
bool AppIniWrite(const QString& key, const QString& value);

// The one registry read of the system, answered from this desktop's equivalents; a root of 0 is the
// current user. Unknown keys answer the default.
QString RegRead(long root, const QString& subkey, const QString& valueName, const QString& def);

}  // namespace td
