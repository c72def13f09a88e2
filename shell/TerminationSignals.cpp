#include "shell/TerminationSignals.h"
#include <QCoreApplication>
#include <QSocketNotifier>
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace td {
namespace {

int g_signalPipe[2] = {-1, -1};

const int kSignals[] = {SIGTERM, SIGINT, SIGHUP};

// Only async-signal-safe work here: one byte into the pipe; the event loop does the rest.
void writeSignal(int signal)
{
    const char byte = char(signal);
    [[maybe_unused]] const ssize_t written = ::write(g_signalPipe[0], &byte, 1);
}

}  // namespace

void OnTerminationSignal(std::function<void()> handler)
{
    if (g_signalPipe[0] >= 0 || ::socketpair(AF_UNIX, SOCK_STREAM, 0, g_signalPipe) != 0)
        return;
    auto* notifier =
        new QSocketNotifier(g_signalPipe[1], QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [notifier, handler] {
        char byte = 0;
        [[maybe_unused]] const ssize_t read = ::read(g_signalPipe[1], &byte, 1);
        notifier->setEnabled(false);  // one orderly end is enough
        handler();
    });
    struct sigaction action {};
    action.sa_handler = writeSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (int signal : kSignals)
        ::sigaction(signal, &action, nullptr);
}

}  // namespace td
