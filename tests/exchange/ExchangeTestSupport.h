#pragma once
// What the exchange job tests share: a host that records and answers, and rows as texts.
#include "shell/services/JobHost.h"
#include "songdb/Connection.h"
#include <QRegularExpression>
#include <QStringList>
#include <deque>

namespace td::test {

// The rows of a statement, each as its fields joined by "|".
inline QStringList rowsOf(Connection& db, const QString& sql)
{
    auto rs = db.openRecordset(sql);
    QStringList out;
    for (qsizetype r = 0; r < rs->RecordCount(); ++r) {
        QStringList cells;
        for (int c = 0; c < rs->FieldCount(); ++c)
            cells << rs->text(r, c);
        out << cells.join(u'|');
    }
    return out;
}

// The values of a statement's rows, NULL as an invalid QVariant, so that NULL, empty texts, numbers
// and bytes can be told apart.
inline QList<QVariantList> valuesOf(Connection& db, const QString& sql)
{
    auto rs = db.openRecordset(sql);
    QList<QVariantList> out;
    for (qsizetype r = 0; r < rs->RecordCount(); ++r) {
        QVariantList row;
        for (int c = 0; c < rs->FieldCount(); ++c)
            row << rs->value(r, c);
        out << row;
    }
    return out;
}

// Records what the job shows and answers its questions from a script (OK or No once it has run out);
// the cancel button is "pressed" once the progress reaches cancelAt.
class RecordingHost : public JobHost {
public:
    void StartProcess(const QString&, const QString& hint, qint64, qint64 max, bool) override
    {
        events << QStringLiteral("start %1 %2").arg(hint).arg(max);
    }
    void Processing(qint64 value) override { progress = value; }
    bool IsProcessCanceled() override { return cancelAt >= 0 && progress >= cancelAt; }
    void ResumeProcess() override { cancelAt = -1; }
    void EndProcess() override { events << QStringLiteral("end"); }
    MsgAnswer Ask(const QString& text, MsgButtons buttons, const QString& title = {}) override
    {
        events << QStringLiteral("ask ") + (title.isEmpty() ? QString() : title + QStringLiteral(": ")) + text;
        if (!answers.empty()) {
            const MsgAnswer a = answers.front();
            answers.pop_front();
            return a;
        }
        return buttons == MsgButtons::OkCancel ? MsgAnswer::Ok : MsgAnswer::No;
    }
    void Inform(const QString& text, const QString& = {}) override { events << QStringLiteral("info ") + text; }
    void Fail(const QString& text, const QString& = {}) override { events << QStringLiteral("fail ") + text; }

    QStringList asked() const { return events.filter(QRegularExpression(QStringLiteral("^ask "))); }
    QString last() const { return events.value(events.size() - 1); }

    QStringList events;
    std::deque<MsgAnswer> answers;
    qint64 progress = 0;
    qint64 cancelAt = -1;
};

}  // namespace td::test
