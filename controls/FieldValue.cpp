#include "controls/FieldValue.h"
#include "shell/services/AppError.h"
#include <QRegularExpression>
#include <array>

namespace td {

namespace {
constexpr std::array<int, 12> kNumericTypes{3, 4, 5, 14, 16, 17, 18, 19, 20, 21, 131, 139};
constexpr int kBooleanType = 11;
}  // namespace

bool BooleanFromText(const QString& text)
{
    const QString t = text.trimmed();
    if (t.compare(u"true", Qt::CaseInsensitive) == 0)
        return true;
    if (t.compare(u"false", Qt::CaseInsensitive) == 0)
        return false;
    static const QRegularExpression number(QStringLiteral("^[+-]?(\\d+\\.?\\d*|\\.\\d+)([eE][+-]?\\d+)?$"));
    if (number.match(t).hasMatch())
        return NumericValue(t) != 0;
    throw AppError(QStringLiteral("Type mismatch"));
}

QVariant FieldValueForType(const QString& text, int adoType)
{
    if (std::find(kNumericTypes.begin(), kNumericTypes.end(), adoType) != kNumericTypes.end())
        return NumericValue(text);
    if (adoType == kBooleanType)
        return BooleanFromText(text);
    return text;
}

}  // namespace td
