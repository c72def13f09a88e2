#pragma once
#include "shell/services/TextArray.h"
#include <QHash>
#include <QString>

namespace td {

// The text store: 0xFF 0xFE, then UTF-16 little endian lines ended by CR LF, in [sections] of key=value.
// ReadTextStore throws AppError for a file that cannot be read or is shorter than two bytes.
QString ReadTextStore(const QString& path);
bool WriteTextStore(const QString& path, const QString& text);
QString ReadTextValue(const QString& text, const QString& section, const QString& key, const QString& def);
void WriteTextValue(QString& text, const QString& section, const QString& key, const QString& value);
bool ReadTextKeys(const QString& text, TextArray& names);

// One section of a text, read once for many lookups: value() answers what ReadTextValue answers on the
// same text, without searching the whole text each time (a region's text file may be megabytes long).
class TextSection {
public:
    TextSection() = default;
    TextSection(const QString& text, const QString& section);
    QString value(const QString& key, const QString& def) const;

private:
    QString text_;
    QString section_;
    QHash<QString, QString> values_;  // the first value of each key without "=" or a line break
};

}  // namespace td
