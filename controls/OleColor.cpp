#include "controls/OleColor.h"
#include <cctype>
#include <cmath>

namespace td {

bool IsSystemColor(long oleColor)
{
    return (quint32(oleColor) & 0xFF000000u) == 0x80000000u;
}

QColor ColorFromOle(long oleColor, const QPalette& palette)
{
    const quint32 v = quint32(oleColor);
    if (!IsSystemColor(oleColor))
        return QColor(int(v & 0xFF), int((v >> 8) & 0xFF), int((v >> 16) & 0xFF));
    switch (v & 0xFF) {
        case 0x08:
            return palette.color(QPalette::Active, QPalette::Text);
        case 0x11:
            return palette.color(QPalette::Disabled, QPalette::Text);
        case 0x0F:
            return palette.color(QPalette::Active, QPalette::Button);
        case 0x05:
            return palette.color(QPalette::Active, QPalette::Base);
        case 0x12:
            return palette.color(QPalette::Active, QPalette::ButtonText);
        default:
            return palette.color(QPalette::Active, QPalette::Window);
    }
}

}  // namespace td

#include "shell/services/AppError.h"

namespace td {

long OleColorFromText(const QString& text)
{
    const QString t = text.trimmed();
    if (t.startsWith(u"&H", Qt::CaseInsensitive)) {
        QString digits;
        for (QChar c : t.mid(2)) {
            if (!isxdigit(c.unicode() < 128 ? c.toLatin1() : 'x'))
                break;
            digits += c;
        }
        bool ok = false;
        const quint32 v = digits.left(8).toUInt(&ok, 16);
        return ok ? long(qint32(v)) : 0;
    }
    return long(qint32(quint32(std::llround(NumericValue(t)) & 0xFFFFFFFFll)));
}

}  // namespace td
