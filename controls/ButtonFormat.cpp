#include "controls/ButtonFormat.h"
#include "controls/ViewFormat.h"
#include "shell/services/AppError.h"
#include "shell/services/Ini.h"
#include "shell/services/Translate.h"

namespace td {
namespace {

ButtonItem ReadButton(const QString& file, const QString& section)
{
    const auto read = [&](const char* key, const QString& def) {
        return IniRead(file, section, QLatin1String(key), def);
    };
    ButtonItem b;
    b.Class = read("Class", {});
    b.Caption = TranslateText(read("Caption", {}));
    b.ToolTipText = TranslateText(read("ToolTipText", {}));
    b.Enabled = NumericValue(read("Enabled", QStringLiteral("1"))) != 0;
    b.Visible = NumericValue(read("Visible", QStringLiteral("1"))) != 0;
    const QString color = read("BackColor", QStringLiteral("-2147483633"));
    b.BackColor = color.isEmpty() ? kSysButtonFace : OleColorFromText(color);
    return b;
}

}  // namespace

std::vector<ButtonItem> ReadButtonFormat(const QString& file)
{
    const int count =
        FormatInteger(IniRead(file, QStringLiteral("Buttons"), QStringLiteral("Count"), QStringLiteral("0")));
    return ReadNumberedRows<ButtonItem>(file, QStringLiteral("Button"), count,
                                        [&](const QString& section) { return ReadButton(file, section); });
}

}  // namespace td
