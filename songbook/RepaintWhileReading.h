#pragma once

struct sqlite3;

namespace td {

// While it lives, a long read of the song database lets the interface repaint and its timers run
// every few hundredths of a second. Input waits until the read is over, so nothing the operator
// does can reach the database or the window in the middle of a statement.
class RepaintWhileReading {
public:
    RepaintWhileReading();
    ~RepaintWhileReading();
    RepaintWhileReading(const RepaintWhileReading&) = delete;
    RepaintWhileReading& operator=(const RepaintWhileReading&) = delete;

private:
    sqlite3* db_ = nullptr;
};

}  // namespace td
