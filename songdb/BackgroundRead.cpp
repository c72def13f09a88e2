#include "songdb/BackgroundRead.h"
#include "shell/services/AppError.h"
#include "songdb/Connection.h"
#include "songdb/StoreLog.h"
#include <mutex>

namespace td {

// What the reading thread and a cancel share.
struct BackgroundRead::Work {
    std::mutex mutex;
    std::shared_ptr<Backend> reader;  // set while its statement runs
    bool cancelled = false;
};

struct BackgroundRead::Outcome {
    std::unique_ptr<RowStore> rows;
    std::vector<qint64> keys;
    QString error;
};

BackgroundRead::BackgroundRead(QObject* parent) : QObject(parent) {}

BackgroundRead::~BackgroundRead()
{
    cancel();
}

void BackgroundRead::start(Connection& connection, const QString& jetSql)
{
    cancel();
    statement_ = jetSql;
    error_.clear();
    result_.reset();
    running_ = true;
    const int generation = ++generation_;
    auto outcome = std::make_shared<Outcome>();
    std::shared_ptr<Backend> reader;
    try {
        source_ = connection.prepareRead(jetSql);
        reader = source_.backend->openReader();
        if (!reader) {
            // A store without readers is read here, at once.
            outcome->rows = source_.backend->query(source_.nativeSql, source_.keyed, &outcome->keys);
        }
    } catch (const std::exception& e) {
        outcome->error = ErrorText(e);
    }
    if (!reader) {
        finishLater(generation, outcome);
        return;
    }
    auto work = std::make_shared<Work>();
    work->reader = reader;
    work_ = work;
    thread_ = std::thread(
        [this, work, reader, outcome, generation, sql = source_.nativeSql, keyed = source_.keyed]() mutable {
            try {
                outcome->rows = reader->query(sql, keyed, &outcome->keys);
            } catch (const std::exception& e) {
                outcome->error = ErrorText(e);
            }
            std::lock_guard lock(work->mutex);
            work->reader.reset();
            reader.reset();  // closes the reader here, never under a cancel's interrupt
            if (!work->cancelled)
                finishLater(generation, outcome);
        });
}

void BackgroundRead::finishLater(int generation, std::shared_ptr<Outcome> outcome)
{
    QMetaObject::invokeMethod(
        this, [this, generation, outcome] { finish(generation, outcome); }, Qt::QueuedConnection);
}

void BackgroundRead::finish(int generation, const std::shared_ptr<Outcome>& outcome)
{
    if (generation != generation_)
        return;  // a read cancelled after it had finished
    if (thread_.joinable())
        thread_.join();
    work_.reset();
    running_ = false;
    if (!outcome->error.isEmpty() || !outcome->rows) {
        error_ = outcome->error;
        emit Finished(false);
        return;
    }
    result_ =
        Connection::recordsetFrom(std::move(source_), std::move(outcome->rows), std::move(outcome->keys));
    source_ = {};
    emit Finished(true);
}

void BackgroundRead::cancel()
{
    if (work_) {
        std::lock_guard lock(work_->mutex);
        work_->cancelled = true;
        if (work_->reader)
            work_->reader->interrupt();
    }
    if (thread_.joinable())
        thread_.join();
    if (running_)
        qCDebug(lcStore) << "read cancelled:" << statement_;
    work_.reset();
    source_ = {};
    running_ = false;
    ++generation_;  // whatever was already posted is dropped
}

}  // namespace td
