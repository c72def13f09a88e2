#pragma once
#include <cstdint>

struct sqlite3;

namespace td {

// Texts compare in the byte order of their GB18030 (GB2312 for Chinese) encoding, the order in
// which hanzi of the first level follow their pinyin; ASCII letters compare without regard to case,
// as the original store's comparisons did.
int CompareGb2312(const char* a, int aSize, const char* b, int bSize);

// The key of one character in that order: two single characters compare as their keys do, and
// are equal exactly when their keys are. No real character has the key kNoGb2312Key.
std::uint32_t Gb2312CharKey(char32_t cp);
inline constexpr std::uint32_t kNoGb2312Key = 0xFFFFFFFF;

// Registers that order as the collation "GB2312" on a SQLite connection.
bool RegisterGb2312Collation(sqlite3* db);

}  // namespace td
