#include "shell/services/AppError.h"

namespace td {

// Reads the number at the start of a text the way the console always has: leading blanks are skipped,
// a sign, digits, a decimal point and an exponent are taken, and anything else ends the number.
double NumericValue(const QString& text)
{
    QString digits;
    int i = 0;
    const int n = int(text.size());
    while (i < n && (text[i] == u' ' || text[i] == u'\t'))
        ++i;
    if (i < n && (text[i] == u'-' || text[i] == u'+'))
        digits += text[i++];
    bool any = false;
    while (i < n && text[i].isDigit() && text[i].unicode() < 128) {
        digits += text[i++];
        any = true;
    }
    if (i < n && text[i] == u'.') {
        digits += text[i++];
        while (i < n && text[i].isDigit() && text[i].unicode() < 128) {
            digits += text[i++];
            any = true;
        }
    }
    if (!any)
        return 0.0;
    if (i < n && (text[i] == u'e' || text[i] == u'E')) {
        QString exp = QStringLiteral("e");
        int j = i + 1;
        if (j < n && (text[j] == u'-' || text[j] == u'+'))
            exp += text[j++];
        bool expDigits = false;
        while (j < n && text[j].isDigit() && text[j].unicode() < 128) {
            exp += text[j++];
            expDigits = true;
        }
        if (expDigits)
            digits += exp;
    }
    bool ok = false;
    const double v = digits.toDouble(&ok);
    return ok ? v : 0.0;
}

long long IntegerValue(const QString& text)
{
    const double v = NumericValue(text);
    if (v >= 9.2e18 || v <= -9.2e18)
        return 0;
    return static_cast<long long>(v);
}

}  // namespace td
