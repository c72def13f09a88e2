#pragma once

namespace td::test {

// The one QApplication of a widget test program, made on first use; offscreen unless told otherwise.
void EnsureQtApp();

}  // namespace td::test
