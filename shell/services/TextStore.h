#pragma once
#include "shell/services/TextArray.h"
#include <QString>

namespace td {

// The text store: 0xFF 0xFE, then UTF-16 little endian lines ended by CR LF, in [sections] of key=value.
// ReadTextStore throws AppError for a file that cannot be read or is shorter than two bytes.
QString ReadTextStore(const QString& path);
bool WriteTextStore(const QString& path, const QString& text);
QString ReadTextValue(const QString& text, const QString& section, const QString& key, const QString& def);
void WriteTextValue(QString& text, const QString& section, const QString& key, const QString& value);
bool ReadTextKeys(const QString& text, TextArray& names);

}  // namespace td
