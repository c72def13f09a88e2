#pragma once
#include <QElapsedTimer>

namespace td {

// Lets the interface breathe during a long job on the interface thread: events are processed when
// at least the interval has passed since the last time, so a cancel click arrives within a fraction
// of a second while a fast loop does not spend its time repainting.
class UiYield {
public:
    explicit UiYield(int intervalMs = 40) : intervalMs_(intervalMs) { timer_.start(); }
    bool due() const { return timer_.elapsed() >= intervalMs_; }
    // Processes pending events now and restarts the interval.
    void now();
    // Processes events if the interval has passed; answers whether it did.
    bool ifDue();
    void restart() { timer_.restart(); }

private:
    QElapsedTimer timer_;
    int intervalMs_;
};

}  // namespace td
