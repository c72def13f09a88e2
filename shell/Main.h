#pragma once

namespace td {

// The process entry of the console.
int Main(int argc, char** argv);

}  // namespace td
