#include "songbook/RepaintWhileReading.h"
#include "shell/services/LongJobs.h"
#include "songdb/SongSession.h"
#include "songdb/SqliteBackend.h"
#include <QCoreApplication>
#include <QElapsedTimer>
#include <sqlite3.h>

namespace td {

namespace {

constexpr int kInstructionsPerCheck = 2000;
constexpr qint64 kIntervalMs = 40;

int& depth()
{
    static int readers = 0;
    return readers;
}

QElapsedTimer& sinceLastTurn()
{
    static QElapsedTimer timer;
    return timer;
}

int Breathe(void*)
{
    if (sinceLastTurn().elapsed() >= kIntervalMs) {
        JobYieldScope job;
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        sinceLastTurn().restart();
    }
    return 0;  // never interrupts the statement
}

}  // namespace

RepaintWhileReading::RepaintWhileReading()
{
    Connection* connection = SongConnection();
    if (!connection || !connection->isOpen())
        return;
    if (auto* sqlite = dynamic_cast<SqliteBackend*>(&connection->backend()))
        db_ = sqlite->handle();
    if (!db_ || ++depth() > 1)
        return;  // an outer reader has the handler installed already
    sinceLastTurn().start();
    sqlite3_progress_handler(db_, kInstructionsPerCheck, &Breathe, nullptr);
}

RepaintWhileReading::~RepaintWhileReading()
{
    if (db_ && --depth() == 0)
        sqlite3_progress_handler(db_, 0, nullptr, nullptr);
}

}  // namespace td
