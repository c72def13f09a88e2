#include "checks/PrintList.h"
#include "shell/services/AppError.h"
#include "shell/services/Ini.h"
#include "shell/services/Translate.h"

namespace td {

QList<PrintField> PrintableFields(const QString& listFormatFile)
{
    QList<PrintField> fields;
    TextArray keys;
    const int n = IniReadSection(listFormatFile, QStringLiteral("ColPosition"), keys);
    for (int i = 1; i <= n; ++i) {
        if (!keys[i].startsWith(QStringLiteral("Col_")))
            continue;
        const QString name = keys[i].mid(4);
        QString caption = IniRead(listFormatFile, keys[i], QStringLiteral("Caption"), name);
        QString field = IniRead(listFormatFile, keys[i], QStringLiteral("Field"), name);
        if (caption.isEmpty() || field.isEmpty())
            continue;
        fields.append({TranslateText(caption), field});
    }
    return fields;
}

const QStringList& PrintCompares()
{
    static const QStringList compares{QStringLiteral("="),  QStringLiteral("<>"),   QStringLiteral(">"),
                                      QStringLiteral("<"),  QStringLiteral(">="),   QStringLiteral("<="),
                                      QStringLiteral("LIKE"), QStringLiteral("NULL"), QStringLiteral("NOT NULL")};
    return compares;
}

bool IsNumericAdoType(int adoType)
{
    switch (adoType) {
    case 3: case 4: case 5: case 14: case 16: case 17: case 18: case 19: case 20: case 21: case 131:
        return true;
    default:
        return false;
    }
}

QString PrintStatement(const PrintChoice& choice, const std::function<int(const QString& field)>& typeOf)
{
    const auto bracketed = [](const QString& field) { return u'[' + field + u']'; };
    QStringList selected;
    for (const QString& f : choice.fields)
        selected << bracketed(f);
    QString sql = QStringLiteral("select ") + selected.join(QStringLiteral(", ")) + QStringLiteral(" from song ");
    QStringList conditions;
    for (const PrintCondition& c : choice.conditions) {
        if (c.field.isEmpty())
            continue;
        if (c.compare == u"NULL" || c.compare == u"NOT NULL")
            conditions << bracketed(c.field) + QStringLiteral(" is ") + c.compare;
        else if (IsNumericAdoType(typeOf(c.field)))
            conditions << bracketed(c.field) + u' ' + c.compare + u' ' + c.value;
        else
            conditions << bracketed(c.field) + u' ' + c.compare + QStringLiteral(" '") + c.value + u'\'';
    }
    if (!conditions.isEmpty())
        sql += QStringLiteral("where ") + conditions.join(QStringLiteral(" and ")) + u' ';
    QStringList orders;
    for (const QString& f : choice.orders)
        if (!f.isEmpty())
            orders << bracketed(f);
    if (!orders.isEmpty())
        sql += QStringLiteral("order by ") + orders.join(QStringLiteral(", ")) + u' ';
    return sql;
}

bool OffersValueList(const QString& field)
{
    const QString f = field.toLower();
    return !f.isEmpty() && f != u"index" && f != u"title" && f != u"chars";
}

PrintSettings LoadPrintSettings(const QList<PrintField>& fields)
{
    PrintSettings s;
    for (const PrintField& f : fields)
        if (AppIniRead(QStringLiteral("PrintSelect") + f.field, QStringLiteral("0")) == u"1")
            s.selected << f.field;
    for (int i = 0; i < 3; ++i) {
        const QString n = QString::number(i);
        s.field[i] = int(IntegerValue(AppIniRead(QStringLiteral("PrintField") + n, QStringLiteral("0"))));
        s.compare[i] = int(IntegerValue(AppIniRead(QStringLiteral("PrintCompare") + n, QStringLiteral("0"))));
        s.value[i] = AppIniRead(QStringLiteral("PrintValue") + n, QString());
        s.order[i] = int(IntegerValue(AppIniRead(QStringLiteral("PrintOrder") + n, QStringLiteral("0"))));
    }
    return s;
}

void SavePrintSettings(const QList<PrintField>& fields, const PrintSettings& s)
{
    for (const PrintField& f : fields)
        AppIniWrite(QStringLiteral("PrintSelect") + f.field,
                    s.selected.contains(f.field) ? QStringLiteral("1") : QStringLiteral("0"));
    for (int i = 0; i < 3; ++i) {
        const QString n = QString::number(i);
        AppIniWrite(QStringLiteral("PrintField") + n, QString::number(s.field[i]));
        AppIniWrite(QStringLiteral("PrintCompare") + n, QString::number(s.compare[i]));
        AppIniWrite(QStringLiteral("PrintValue") + n, s.value[i]);
        AppIniWrite(QStringLiteral("PrintOrder") + n, QString::number(s.order[i]));
    }
}

}  // namespace td
