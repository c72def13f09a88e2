#pragma once
#include "songdb/Recordset.h"
#include <QObject>
#include <QString>
#include <memory>
#include <thread>

namespace td {

class Connection;

// Reads the rows of one statement on a thread of its own, over a reader connection to the same
// database, so the interface thread never waits inside the store and nothing it does in the
// meantime can reach a connection in the middle of a statement. The rows become a recordset of the
// caller's connection: its writes go through that connection like any other recordset's. The reader
// sees what is committed in the database file; a connection's own temporary tables (the media search
// list) are not there, so they are read with SongOpenRecordset.
class BackgroundRead : public QObject {
    Q_OBJECT
public:
    explicit BackgroundRead(QObject* parent = nullptr);
    // Cancels and waits: no thread outlives its read.
    ~BackgroundRead() override;

    // Starts the read; a read under way is cancelled first. Finished follows on this object's
    // thread, also when the statement fails at once.
    void start(Connection& connection, const QString& jetSql);
    // Interrupts the read and waits for its thread, a few milliseconds at most; no Finished follows.
    void cancel();
    bool running() const { return running_; }

    // After Finished(true): the recordset, once.
    std::unique_ptr<Recordset> take() { return std::move(result_); }
    // After Finished(false): the store's or the translation's error text.
    QString error() const { return error_; }
    QString statement() const { return statement_; }

signals:
    void Finished(bool ok);

private:
    struct Work;
    struct Outcome;
    void finishLater(int generation, std::shared_ptr<Outcome> outcome);
    void finish(int generation, const std::shared_ptr<Outcome>& outcome);

    std::thread thread_;
    std::shared_ptr<Work> work_;
    RecordSource source_;
    std::unique_ptr<Recordset> result_;
    QString error_;
    QString statement_;
    int generation_ = 0;
    bool running_ = false;
};

}  // namespace td
