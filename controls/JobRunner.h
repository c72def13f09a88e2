#pragma once
#include "shell/services/JobHost.h"
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <memory>
#include <thread>

namespace td {

// Runs a long job on a thread of its own while the interface stays live: its progress shows in
// frmProcess, its questions and messages go through the dialog seam on the interface thread, one at
// a time and in its order, and the cancel button reaches the job at its next look. The window that
// started it is busy (hourglass, disabled) until Finished. The job must not touch widgets or the
// window's recordsets: it works on a connection of its own and the window refreshes after it.
class JobRunner : public QObject {
    Q_OBJECT
public:
    using Job = std::function<void(JobHost&)>;

    explicit JobRunner(QWidget* window);
    // Stops a job under way and waits for it.
    ~JobRunner() override;

    // Starts the job; false, with nothing started, while another job of this runner runs.
    bool start(Job job);
    // As start, and then() runs on the interface thread once, when this job has ended.
    bool start(Job job, std::function<void()> then);
    bool running() const { return thread_.joinable(); }
    // As the cancel button, and more: a question under way or to come is answered No (Cancel where
    // there is no No) without being shown, so the job ends at its next look; then waits for it.
    void stop();

signals:
    void Finished();

private:
    class Host;
    void finish();
    bool stopAndWait();
    void goBusy(bool busy);

    QPointer<QWidget> window_;
    std::thread thread_;
    std::shared_ptr<Host> host_;
    bool cursorSet_ = false;
};

}  // namespace td
