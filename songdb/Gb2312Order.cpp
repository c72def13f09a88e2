#include "songdb/Gb2312Order.h"
#include <QString>
#include <QStringEncoder>
#include <sqlite3.h>
#include <vector>

namespace td {

namespace {

// Sort key of each BMP code point: its GB18030 bytes, left-aligned in 32 bits, so that comparing
// keys character by character gives the byte order of the encoded texts.
std::vector<std::uint32_t> buildKeys()
{
    QString all;
    all.reserve(0x10000);
    for (char32_t cp = 0; cp < 0x10000; ++cp)
        if (cp < 0xD800 || cp > 0xDFFF)
            all.append(QChar(char16_t(cp)));
    QStringEncoder encoder("GB18030");
    const QByteArray bytes = encoder.encode(all);

    std::vector<std::uint32_t> keys(0x10000, 0);
    qsizetype i = 0;
    for (char32_t cp = 0; cp < 0x10000 && i < bytes.size(); ++cp) {
        if (cp >= 0xD800 && cp <= 0xDFFF)
            continue;
        const auto b = [&](qsizetype k) { return std::uint32_t(std::uint8_t(bytes[i + k])); };
        std::uint32_t key;
        if (b(0) < 0x80) {
            std::uint32_t c = b(0);
            if (c >= 'a' && c <= 'z')
                c -= 'a' - 'A';
            key = c << 24;
            i += 1;
        } else if (i + 1 < bytes.size() && b(1) >= 0x30 && b(1) <= 0x39) {
            key = b(0) << 24 | b(1) << 16 | b(2) << 8 | b(3);
            i += 4;
        } else {
            key = b(0) << 24 | b(1) << 16;
            i += 2;
        }
        keys[cp] = key;
    }
    return keys;
}

const std::vector<std::uint32_t>& sortKeys()
{
    static const std::vector<std::uint32_t> keys = buildKeys();
    return keys;
}

// Characters beyond the BMP are four GB18030 bytes from 0x90308130 on, in code point order.
std::uint32_t supplementaryKey(char32_t cp)
{
    std::uint32_t n = cp - 0x10000;
    const std::uint32_t b4 = 0x30 + n % 10;
    n /= 10;
    const std::uint32_t b3 = 0x81 + n % 126;
    n /= 126;
    const std::uint32_t b2 = 0x30 + n % 10;
    n /= 10;
    const std::uint32_t b1 = 0x90 + n;
    return b1 << 24 | b2 << 16 | b3 << 8 | b4;
}

// Decodes one UTF-8 character; malformed bytes stand for themselves.
char32_t nextChar(const unsigned char*& p, const unsigned char* end)
{
    const unsigned char c = *p++;
    if (c < 0x80)
        return c;
    int extra = c >= 0xF0 ? 3 : c >= 0xE0 ? 2 : c >= 0xC0 ? 1 : 0;
    if (extra == 0 || end - p < extra)
        return c;
    char32_t cp = c & (0x3F >> extra);
    for (int k = 0; k < extra; ++k)
        cp = cp << 6 | (*p++ & 0x3F);
    return cp;
}

std::uint32_t keyOf(char32_t cp, const std::vector<std::uint32_t>& keys)
{
    return cp < 0x10000 ? keys[cp] : supplementaryKey(cp);
}

int collate(void*, int aSize, const void* a, int bSize, const void* b)
{
    return CompareGb2312(static_cast<const char*>(a), aSize, static_cast<const char*>(b), bSize);
}

}  // namespace

int CompareGb2312(const char* a, int aSize, const char* b, int bSize)
{
    const auto& keys = sortKeys();
    auto pa = reinterpret_cast<const unsigned char*>(a);
    auto pb = reinterpret_cast<const unsigned char*>(b);
    const auto ea = pa + aSize;
    const auto eb = pb + bSize;
    while (pa < ea && pb < eb) {
        if (*pa == *pb && *pa < 0x80) {  // equal ASCII needs no lookup
            ++pa;
            ++pb;
            continue;
        }
        const std::uint32_t ka = keyOf(nextChar(pa, ea), keys);
        const std::uint32_t kb = keyOf(nextChar(pb, eb), keys);
        if (ka != kb)
            return ka < kb ? -1 : 1;
    }
    if (pa < ea)
        return 1;
    return pb < eb ? -1 : 0;
}

std::uint32_t Gb2312CharKey(char32_t cp)
{
    return keyOf(cp, sortKeys());
}

bool RegisterGb2312Collation(sqlite3* db)
{
    sortKeys();
    return sqlite3_create_collation(db, "GB2312", SQLITE_UTF8, nullptr, &collate) == SQLITE_OK;
}

}  // namespace td
