#pragma once
#include <functional>

namespace td {

// Turns SIGTERM, SIGINT and SIGHUP (a desktop logging out, a service stopping the console) into a call
// on the interface thread, so the program ends in order: database closed, end written to the log.
void OnTerminationSignal(std::function<void()> handler);

}  // namespace td
