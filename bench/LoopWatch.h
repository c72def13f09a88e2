#pragma once
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <functional>

namespace bench {

// Watches the event loop: a timer due every 10 ms, and the longest wait between two of its turns.
class LoopWatch {
public:
    LoopWatch()
    {
        QObject::connect(&timer_, &QTimer::timeout, [this] { gap_ = std::max(gap_, last_.restart()); });
        timer_.start(10);
    }
    // Runs the work and answers its seconds; longestGap() then holds its longest freeze.
    double run(const std::function<void()>& work)
    {
        QCoreApplication::processEvents();
        gap_ = 0;
        last_.start();
        QElapsedTimer t;
        t.start();
        work();
        const double seconds = double(t.nsecsElapsed()) / 1e9;
        gap_ = std::max(gap_, last_.elapsed());  // the stretch since the last turn counts too
        return seconds;
    }
    double longestGap() const { return double(gap_) / 1000.0; }

private:
    QTimer timer_;
    QElapsedTimer last_;
    qint64 gap_ = 0;
};

}  // namespace bench
