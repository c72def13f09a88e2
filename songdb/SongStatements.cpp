#include "songdb/SongStatements.h"
#include "shell/services/AppError.h"
#include "shell/services/Dialogs.h"
#include "songdb/SongSession.h"

namespace td {

namespace {

QString& lastError()
{
    static QString text;
    return text;
}

const QString kCrLf = QStringLiteral("\r\n");

Connection& songConnection()
{
    Connection* c = SongConnection();
    if (!c)
        throw AppError(QStringLiteral("Operation is not allowed when the object is closed."));
    return *c;
}

QString configWhere(const QString& section, const QString& key)
{
    return QStringLiteral(" from config where [section]='") +
           (section.isEmpty() ? QStringLiteral("Default") : section) + QStringLiteral("' and [key]='") + key +
           u'\'';
}

}  // namespace

QString SongLastError()
{
    return lastError();
}
void SetSongLastError(const QString& description)
{
    lastError() = description;
}

void ReportStatementFailure(const char* name, const QString& sql, const QString& description)
{
    SetSongLastError(description);
    MsgError(QString::fromLatin1(name) + QStringLiteral(" failed!") + ErrSuffix(description) + kCrLf +
             QStringLiteral("SQL=") + sql);
}

namespace {
// Runs one statement; a failure becomes the pending error and the message "<name> failed!".
template <typename Run>
bool reported(const char* name, const QString& sql, Run run)
{
    try {
        run(songConnection());
        SetSongLastError({});
        return true;
    } catch (const std::exception& e) {
        ReportStatementFailure(name, sql, ErrorText(e));
        return false;
    }
}
}  // namespace

bool OpenRecordsetReported(const char* name, const QString& sql, std::unique_ptr<Recordset>& rs)
{
    rs.reset();
    return reported(name, sql, [&](Connection& c) { rs = c.openRecordset(sql); });
}

bool SongOpenRecordset(const QString& sql, std::unique_ptr<Recordset>& rs)
{
    return OpenRecordsetReported("SongOpenRecordset", sql, rs);
}

bool SongExecute(const QString& sql)
{
    return reported("SongExecute", sql, [&](Connection& c) { c.execute(sql); });
}

QString SongReadValue(const QString& section, const QString& key, const QString& def)
{
    std::unique_ptr<Recordset> rs;
    if (!SongOpenRecordset(QStringLiteral("select [value]") + configWhere(section, key), rs)) {
        MsgError(QStringLiteral("SongReadValue failed!") + ErrSuffix(SongLastError()));
        return def;
    }
    try {
        return rs->RecordCount() >= 1 ? rs->Fields(QStringLiteral("Value")).Text() : def;
    } catch (const std::exception& e) {
        MsgError(QStringLiteral("SongReadValue failed!") + ErrSuffix(e));
        return def;
    }
}

bool SongWriteValue(const QString& section, const QString& key, const QString& value)
{
    std::unique_ptr<Recordset> rs;
    if (!SongOpenRecordset(QStringLiteral("select [section], [key], [value]") + configWhere(section, key),
                           rs)) {
        MsgError(QStringLiteral("SongWriteValue failed!") + ErrSuffix(SongLastError()));
        return false;
    }
    try {
        if (rs->RecordCount() < 1) {
            rs->AddNew();
            rs->Fields(QStringLiteral("Section"))
                .setValue(section.isEmpty() ? QStringLiteral("Default") : section);
            rs->Fields(QStringLiteral("Key")).setValue(key);
        }
        rs->Fields(QStringLiteral("Value")).setValue(value);
        rs->Update();
        return true;
    } catch (const std::exception& e) {
        SetSongLastError(ErrorText(e));
        MsgError(QStringLiteral("SongWriteValue failed!") + ErrSuffix(e));
        return false;
    }
}

}  // namespace td
