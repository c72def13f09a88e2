#include "controls/JobRunner.h"
#include "controls/ControlsLog.h"
#include "controls/frmProcess.h"
#include "shell/services/AppError.h"
#include "shell/services/HeadlessDialogs.h"
#include <QApplication>
#include <QPushButton>
#include <atomic>
#include <chrono>
#include <future>

namespace td {

// The job's side of the runner. Everything it shows is done on the interface thread: progress is
// posted and may be merged with the next step, questions and messages wait for their answer.
class JobRunner::Host : public JobHost, public std::enable_shared_from_this<Host> {
public:
    explicit Host(JobRunner* runner) : runner_(runner) {}

    void StartProcess(const QString& caption, const QString& hint, qint64 start, qint64 max,
                      bool canCancel) override
    {
        resumedAt_ = seenAt_ = clicks_.load();  // a click before this process is not for it
        {
            std::lock_guard lock(countMutex_);
            count_ = ProgressCount{double(start), double(max)};
        }
        post([caption, hint, start, max, canCancel](Host& host) {
            frmProcess& p = frmProcess::Instance();
            QObject::disconnect(host.cancelClick_);
            host.cancelClick_ = QObject::connect(p.cancelButton(), &QPushButton::clicked, host.runner_,
                                                 [self = host.shared_from_this()] { ++self->clicks_; });
            p.StartProcess(caption, hint, start, max, canCancel);
        });
    }

    void Processing(qint64 value) override
    {
        {
            std::lock_guard lock(countMutex_);
            count_.step(value);
        }
        // Steps come faster than an eye can follow: one update waits on the interface thread at most.
        if (progressPosted_.exchange(true))
            return;
        post([](Host& host) {
            host.progressPosted_ = false;
            ProgressCount count;
            {
                std::lock_guard lock(host.countMutex_);
                count = host.count_;
            }
            frmProcess::Instance().ShowCount(count);
        });
    }

    bool IsProcessCanceled() override
    {
        seenAt_ = clicks_.load();
        return seenAt_ > resumedAt_ || stopping_;
    }

    void ResumeProcess() override
    {
        // Only the clicks the job has looked at are answered; one made while the answer travelled stays.
        resumedAt_ = seenAt_;
        post([](Host&) { frmProcess::Instance().ResumeProcess(); });
    }

    void EndProcess() override
    {
        post([](Host&) { frmProcess::Instance().EndProcess(); });
    }

    MsgAnswer Ask(const QString& text, MsgButtons buttons, const QString& title) override
    {
        return answered(HeadlessDialogs::DefaultAnswer(buttons),
                        [=] { return Dialogs().message(text, buttons, MsgIcon::Question, title); });
    }
    void Inform(const QString& text, const QString& title) override
    {
        answered(MsgAnswer::Ok,
                 [=] { return Dialogs().message(text, MsgButtons::Ok, MsgIcon::Information, title); });
    }
    void Fail(const QString& text, const QString& title) override
    {
        answered(MsgAnswer::Ok,
                 [=] { return Dialogs().message(text, MsgButtons::Ok, MsgIcon::Critical, title); });
    }

    bool StopRequested() override { return stopping_; }

    void requestStop() { stopping_ = true; }
    void disconnectCancel() { QObject::disconnect(cancelClick_); }

private:
    template <typename Work>
    void post(Work work)
    {
        QMetaObject::invokeMethod(
            runner_, [self = shared_from_this(), work] { work(*self); }, Qt::QueuedConnection);
    }

    // Runs a dialog on the interface thread and waits for its answer; once a stop is requested, the
    // fallback answers at once and dialogs not yet shown are never shown.
    MsgAnswer answered(MsgAnswer fallback, std::function<MsgAnswer()> dialog)
    {
        if (stopping_)
            return fallback;
        auto answer = std::make_shared<std::promise<MsgAnswer>>();
        std::future<MsgAnswer> future = answer->get_future();
        post([answer, dialog, fallback](Host& host) {
            answer->set_value(host.stopping_ ? fallback : dialog());
        });
        while (future.wait_for(std::chrono::milliseconds(20)) != std::future_status::ready)
            if (stopping_)
                return fallback;
        return future.get();
    }

    JobRunner* runner_;
    std::atomic<int> clicks_{0};  // presses of the cancel button, counted on the interface thread
    int seenAt_ = 0;              // the count at the job's last look (job thread only)
    int resumedAt_ = 0;           // the count the job resumed from (job thread only)
    std::atomic<bool> stopping_{false};
    std::atomic<bool> progressPosted_{false};
    std::mutex countMutex_;
    ProgressCount count_;
    QMetaObject::Connection cancelClick_;  // used on the interface thread only
};

JobRunner::JobRunner(QWidget* window) : QObject(window), window_(window) {}

JobRunner::~JobRunner()
{
    // The window is going: nobody is left to tell.
    stopAndWait();
}

bool JobRunner::start(Job job)
{
    if (running())
        return false;
    host_ = std::make_shared<Host>(this);
    goBusy(true);
    thread_ = std::thread([this, host = host_, job = std::move(job)] {
        try {
            job(*host);
        } catch (const std::exception& e) {
            // A job reports its own failures; one that escapes still reaches the operator.
            qCWarning(lcControls) << "a job ended with an error:" << ErrorText(e);
            host->Fail(QStringLiteral("The process failed!") + ErrSuffix(e), {});
        }
        QMetaObject::invokeMethod(this, &JobRunner::finish, Qt::QueuedConnection);
    });
    return true;
}

bool JobRunner::start(Job job, std::function<void()> then)
{
    if (!start(std::move(job)))
        return false;
    connect(this, &JobRunner::Finished, this, std::move(then), Qt::SingleShotConnection);
    return true;
}

void JobRunner::finish()
{
    if (!thread_.joinable())
        return;  // stopped already
    thread_.join();
    host_->disconnectCancel();
    host_.reset();
    goBusy(false);
    emit Finished();
}

void JobRunner::stop()
{
    if (stopAndWait())
        emit Finished();
}

bool JobRunner::stopAndWait()
{
    if (!thread_.joinable())
        return false;
    host_->requestStop();
    thread_.join();
    host_->disconnectCancel();
    host_.reset();
    frmProcess::EndShown();
    goBusy(false);
    return true;
}

void JobRunner::goBusy(bool busy)
{
    if (busy == cursorSet_)
        return;
    cursorSet_ = busy;
    if (busy)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
    if (window_)
        window_->setEnabled(!busy);
}

}  // namespace td
