#include "songdb/AdoTypes.h"
#include "shell/services/AppError.h"
#include "songdb/DateText.h"

namespace td {

int AdoTypeOfDeclared(const QString& declared)
{
    const QString d = declared.trimmed().toUpper();
    if (d.isEmpty())
        return adEmpty;
    if (d.startsWith(u"SMALLINT") || d == u"SHORT" || d == u"BYTE")
        return adSmallInt;
    if (d.startsWith(u"INT") || d == u"LONG" || d == u"COUNTER" || d == u"AUTOINCREMENT" || d == u"BIGINT")
        return adInteger;
    if (d.startsWith(u"DATE") || d == u"TIME")
        return adDate;
    if (d.startsWith(u"BOOL") || d == u"BIT" || d == u"YESNO")
        return adBoolean;
    if (d.startsWith(u"REAL") || d.startsWith(u"DOUBLE") || d.startsWith(u"FLOAT") ||
        d.startsWith(u"NUMERIC") || d.startsWith(u"DECIMAL") || d == u"SINGLE" || d == u"CURRENCY")
        return adDouble;
    if (d.startsWith(u"BLOB") || d.contains(u"BINARY") || d == u"IMAGE" || d == u"LONGBINARY" ||
        d == u"OLEOBJECT")
        return adLongVarBinary;
    return adVarWChar;
}

QVariant CoerceToType(const QVariant& value, int adoType)
{
    if (!value.isValid() || value.isNull())
        return {};
    const auto mismatch = [] {
        return AppError(QStringLiteral("Multiple-step operation generated errors. Check each status value."));
    };
    bool ok = true;
    switch (adoType) {
        case adSmallInt:
        case adInteger:
        case adBoolean: {
            const qint64 n = value.typeId() == QMetaType::QString ? value.toString().trimmed().toLongLong(&ok)
                                                                  : value.toLongLong(&ok);
            if (!ok)
                throw mismatch();
            return QVariant::fromValue(n);
        }
        case adDouble: {
            const double d = value.toDouble(&ok);
            if (!ok)
                throw mismatch();
            return d;
        }
        case adDate: {
            const QString t = DateToStore(value);
            if (t.isEmpty())
                throw mismatch();
            return t;
        }
        case adLongVarBinary:
            return value.toByteArray();
        case adVarWChar:
            return value.typeId() == QMetaType::QByteArray ? value : QVariant(value.toString());
        default:
            break;
    }
    switch (value.typeId()) {
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::LongLong:
        case QMetaType::ULongLong:
        case QMetaType::Bool:
            return QVariant::fromValue(value.toLongLong());
        case QMetaType::Double:
        case QMetaType::Float:
            return value.toDouble();
        case QMetaType::QByteArray:
            return value;
        case QMetaType::QDateTime:
        case QMetaType::QDate:
            return DateToStore(value);
        default:
            return value.toString();
    }
}

}  // namespace td
