#pragma once
#include <QtGlobal>

namespace td::test {

// How soon something must happen "at once" (a cancel seen, a read stopped). The sanitizers slow every
// thread while the machine runs two test programs, so there the bound is looser; the quarter second
// itself is held by the normal build.
#ifdef __SANITIZE_ADDRESS__
constexpr qint64 kPromptMs = 1000;
#else
constexpr qint64 kPromptMs = 250;
#endif

}  // namespace td::test
