#include "shell/TerminationSignals.h"
#include "support/QtApp.h"
#include <QCoreApplication>
#include <QElapsedTimer>
#include <csignal>
#include <gtest/gtest.h>

namespace {

TEST(TerminationSignals, ATermSignalReachesTheHandlerOnTheInterfaceThread)
{
    td::test::EnsureQtApp();
    int calls = 0;
    td::OnTerminationSignal([&calls] { ++calls; });
    std::raise(SIGTERM);  // the process would end here without the handler
    QElapsedTimer clock;
    clock.start();
    while (calls == 0 && clock.elapsed() < 2000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    EXPECT_EQ(calls, 1);
    std::raise(SIGTERM);  // one orderly end is enough: later signals are swallowed
    QCoreApplication::processEvents(QEventLoop::AllEvents, 100);
    EXPECT_EQ(calls, 1);
}

}  // namespace
