#include "controls/ViewFormat.h"
#include "shell/services/AppError.h"
#include "shell/services/Ini.h"
#include "shell/services/IniDocument.h"
#include "shell/services/Translate.h"
#include <cmath>

namespace td {

QString ColumnSuffix(const QString& key)
{
    return key.mid(4);
}

int FormatInteger(const QString& text)
{
    const double v = std::nearbyint(NumericValue(text));
    if (v > 2147483647.0 || v < -2147483648.0)
        return 0;
    return int(v);
}

std::vector<int> NumberedSections(const QString& file, const QString& prefix)
{
    std::vector<int> numbers;
    for (const QString& name : IniDocument::load(file).sectionNames()) {
        if (!name.startsWith(prefix, Qt::CaseInsensitive))
            continue;
        const QString digits = name.mid(prefix.size());
        bool isNumber = false;
        const int n = digits.toInt(&isNumber);
        // Only the name a lookup of that number matches: no sign, no leading zero.
        if (isNumber && n > 0 && digits == QString::number(n))
            numbers.push_back(n);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

namespace {

ViewColumn ReadColumn(const QString& file, const QString& key)
{
    ViewColumn col;
    col.Key = key;
    const QString suffix = ColumnSuffix(key);
    col.Caption = IniRead(file, key, QStringLiteral("Caption"), QString());
    if (col.Caption.isEmpty())
        col.Caption = suffix;
    col.Caption = TranslateText(col.Caption);
    col.Table = IniRead(file, key, QStringLiteral("Table"), QString());
    col.Field = IniRead(file, key, QStringLiteral("Field"), QString());
    if (col.Field.isEmpty())
        col.Field = suffix;
    col.Width = FormatInteger(IniRead(file, key, QStringLiteral("Width"), QStringLiteral("1440")));
    return col;
}

}  // namespace

ViewFormat ReadViewFormat(const QString& file)
{
    ViewFormat format;
    format.MultiSelect =
        IniRead(file, QStringLiteral("View"), QStringLiteral("MultiSelect"), QString()) == u"1";
    TextArray keys;
    const int n = IniReadSection(file, QStringLiteral("ColPosition"), keys);
    for (int i = 1; i <= n; ++i) {
        ViewColumn col = ReadColumn(file, keys[i]);
        const int position = FormatInteger(IniRead(file, QStringLiteral("ColPosition"), keys[i], QString()));
        col.Position = position > 0 ? position : 0;
        format.Columns.push_back(std::move(col));
    }
    return format;
}

void WriteViewLayout(const QString& file, const std::vector<ColumnLayout>& columns)
{
    if (columns.empty())
        return;
    const QString section = QStringLiteral("ColPosition");
    IniDeleteSection(file, section);
    for (const ColumnLayout& col : columns) {
        IniWrite(file, section, col.Key, QString::number(col.Position));
        IniWrite(file, col.Key, QStringLiteral("Width"), QString::number(col.Width, 'g', 15));
    }
}

}  // namespace td
