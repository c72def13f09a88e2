#include "checks/WindowJob.h"
#include <QEventLoop>
#include <QMdiSubWindow>

namespace td {

bool RunWindowJob(QWidget* window, JobRunner::Job job)
{
    JobRunner runner(window);
    QEventLoop loop;
    QObject::connect(&runner, &JobRunner::Finished, &loop, &QEventLoop::quit);
    if (!runner.start(std::move(job)))
        return false;
    loop.exec();
    return true;
}

void CloseWorkingWindow(QWidget* window)
{
    if (auto* sub = qobject_cast<QMdiSubWindow*>(window->parentWidget()))
        sub->close();
    else
        window->close();
}

}  // namespace td
