#include "controls/FieldFormat.h"
#include "controls/ViewFormat.h"
#include "shell/services/AppError.h"
#include "shell/services/Ini.h"
#include "shell/services/Translate.h"

namespace td {

namespace {

bool NumericFlag(const QString& file, const QString& section, const QString& key)
{
    return NumericValue(IniRead(file, section, key, QStringLiteral("1"))) != 0;
}

DataField ReadField(const QString& file, const QString& section)
{
    DataField f;
    const QString link = IniRead(file, section, QStringLiteral("LinkCol"), QString());
    if (!link.isEmpty()) {
        f.Caption = IniRead(file, link, QStringLiteral("Caption"), ColumnSuffix(link));
        f.Field = IniRead(file, link, QStringLiteral("Field"), ColumnSuffix(link));
    } else {
        f.Caption = IniRead(file, section, QStringLiteral("Caption"), QString());
        f.Field = IniRead(file, section, QStringLiteral("Field"), QString());
    }
    f.Caption = TranslateText(f.Caption);
    f.Hint = TranslateText(IniRead(file, section, QStringLiteral("Hint"), QString()));
    f.Class = IniRead(file, section, QStringLiteral("Class"), QString());
    f.Enabled = NumericFlag(file, section, QStringLiteral("Enabled"));
    f.ClassEx = IniRead(file, section, QStringLiteral("ClassEx"), QString());
    f.Cmd = TranslateText(IniRead(file, section, QStringLiteral("Cmd"), QString()));
    return f;
}

}  // namespace

FieldFormat ReadFieldFormat(const QString& file)
{
    const QString fields = QStringLiteral("Fields");
    FieldFormat format;
    const int count = FormatInteger(IniRead(file, fields, QStringLiteral("Count"), QString()));
    format.CaptionVisible = NumericFlag(file, fields, QStringLiteral("CaptionVisible"));
    format.ButtonVisible = NumericFlag(file, fields, QStringLiteral("ButtonVisible"));
    format.Fields = ReadNumberedRows<DataField>(
        file, QStringLiteral("Field"), count, [&](const QString& section) { return ReadField(file, section); });
    return format;
}

}  // namespace td
