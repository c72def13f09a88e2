#include "songdb/SqliteFunctions.h"
#include "songdb/Gb2312Order.h"
#include <QString>
#include <algorithm>
#include <sqlite3.h>
#include <tuple>
#include <vector>

namespace td {

namespace {

QByteArray upperText(const char* text, int size)
{
    return QString::fromUtf8(text, size).toUpper().toUtf8();
}

void ucase(sqlite3_context* context, int, sqlite3_value** argv)
{
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL) {
        sqlite3_result_null(context);
        return;
    }
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(argv[0]));
    const int size = sqlite3_value_bytes(argv[0]);
    char small[64];
    bool ascii = size <= int(sizeof small);
    for (int i = 0; ascii && i < size; ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        ascii = c < 0x80;
        small[i] = char(c >= 'a' && c <= 'z' ? c - ('a' - 'A') : c);
    }
    if (ascii) {  // a copy into the result's own buffer, which SQLite reuses from row to row
        sqlite3_result_text(context, small, size, SQLITE_TRANSIENT);
        return;
    }
    const QByteArray upper = upperText(text, size);
    sqlite3_result_text(context, upper.constData(), int(upper.size()), SQLITE_TRANSIENT);
}

// Per BMP character: its GB2312 key, and the key of its upper case as td_ucase writes it
// (kNoGb2312Key where that is more than one character, as "SS" for ß). Built once, so that a
// row costs lookups instead of conversions.
struct CharKeys {
    std::uint32_t key;
    std::uint32_t upper;
};

std::vector<CharKeys> buildCharKeys()
{
    std::vector<CharKeys> keys(0x10000, CharKeys{kNoGb2312Key, kNoGb2312Key});
    for (char32_t cp = 0; cp < 0x10000; ++cp) {
        if (cp >= 0xD800 && cp <= 0xDFFF)
            continue;
        const QString upper = QString(QChar(char16_t(cp))).toUpper();
        const char32_t u = upper.size() == 1 ? upper[0].unicode()
                           : upper.size() == 2 && upper[0].isHighSurrogate()
                               ? QChar::surrogateToUcs4(upper[0], upper[1])
                               : 0;
        keys[cp] = {Gb2312CharKey(cp), u != 0 ? Gb2312CharKey(u) : kNoGb2312Key};
    }
    return keys;
}

const std::vector<CharKeys>& charKeys()
{
    static const std::vector<CharKeys> keys = buildCharKeys();
    return keys;
}

// Decodes text that is exactly one well-formed UTF-8 encoded BMP character, as Qt reads it;
// anything else answers 0 and goes the slow way.
char32_t singleBmpChar(const unsigned char* p, int size)
{
    if (size == 1)
        return p[0] < 0x80 ? p[0] : 0;
    const auto cont = [&](int k) { return (p[k] & 0xC0) == 0x80; };
    if (size == 2 && p[0] >= 0xC2 && p[0] < 0xE0 && cont(1))
        return char32_t(p[0] & 0x1F) << 6 | (p[1] & 0x3F);
    if (size == 3 && p[0] >= 0xE0 && p[0] < 0xF0 && cont(1) && cont(2)) {
        const char32_t cp = char32_t(p[0] & 0x0F) << 12 | char32_t(p[1] & 0x3F) << 6 | (p[2] & 0x3F);
        return cp >= 0x800 && (cp < 0xD800 || cp > 0xDFFF) ? cp : 0;
    }
    return 0;
}

char32_t singleBmpChar(sqlite3_value* text)
{
    return singleBmpChar(sqlite3_value_text(text), sqlite3_value_bytes(text));
}

// The value of substr(x, pos, 1) for pos from 1: the pos-th character of a text, stepped over as
// SQLite steps (a lead byte and the continuation bytes behind it, up to a NUL), or the pos-th
// byte of a blob. ch is the character where it is one well-formed BMP character, else 0.
struct CharAt {
    const unsigned char* p = nullptr;
    int size = 0;
    bool blob = false;
    char32_t ch = 0;
    const CharKeys* keys = nullptr;
};

bool charAt(sqlite3_value* x, int pos, CharAt& at)
{
    const int type = sqlite3_value_type(x);
    if (type == SQLITE_NULL)
        return false;
    if (type == SQLITE_BLOB) {
        const auto* bytes = static_cast<const unsigned char*>(sqlite3_value_blob(x));
        if (!bytes)  // an empty blob, for which substr answers NULL
            return false;
        const int n = sqlite3_value_bytes(x);
        at.p = bytes + std::min(pos - 1, n);
        at.size = pos <= n ? 1 : 0;
        at.blob = true;
        return true;
    }
    const unsigned char* z = sqlite3_value_text(x);
    if (!z)
        return false;
    const auto step = [](const unsigned char*& s) {
        if (*s++ >= 0xC0)
            while ((*s & 0xC0) == 0x80)
                ++s;
    };
    for (int n = pos - 1; *z && n > 0; --n)
        step(z);
    const unsigned char* end = z;
    if (*end)
        step(end);
    at.p = z;
    at.size = int(end - z);
    at.ch = singleBmpChar(z, at.size);
    return true;
}

int compare(const CharAt& at, sqlite3_value* text)
{
    return CompareGb2312(reinterpret_cast<const char*>(at.p), at.size,
                         reinterpret_cast<const char*>(sqlite3_value_text(text)), sqlite3_value_bytes(text));
}

// substr(x,pos,1) >= lo [and substr(x,pos,1) < hi] in GB2312 order; a blob sorts above every text.
bool inRange(const CharAt& at, sqlite3_value* lo, sqlite3_value* hi)
{
    const bool bounded = sqlite3_value_type(hi) != SQLITE_NULL;
    if (at.blob)
        return !bounded;
    const char32_t l = singleBmpChar(lo);
    const char32_t h = bounded ? singleBmpChar(hi) : 0;
    if (at.ch != 0 && l != 0 && (h != 0 || !bounded)) {
        const std::uint32_t key = at.keys[at.ch].key;
        return key >= at.keys[l].key && (!bounded || key < at.keys[h].key);
    }
    return compare(at, lo) >= 0 && (!bounded || compare(at, hi) < 0);
}

// td_ucase(substr(x,pos,1)) = c in GB2312 order.
bool upperIs(const CharAt& at, sqlite3_value* c)
{
    if (!at.blob && at.size == 0)
        return sqlite3_value_bytes(c) == 0;
    const char32_t wanted = singleBmpChar(c);
    if (at.ch != 0 && wanted != 0)
        return at.keys[at.ch].upper == at.keys[wanted].key;
    const QByteArray upper = upperText(reinterpret_cast<const char*>(at.p), at.size);
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(c));
    return CompareGb2312(upper.constData(), int(upper.size()), text, sqlite3_value_bytes(c)) == 0;
}

// Reads (x, pos, ...) into at; false when the result is already set (NULL, or a bad position).
bool characterArgs(sqlite3_context* context, sqlite3_value** argv, CharAt& at)
{
    const int pos = sqlite3_value_int(argv[1]);
    if (pos < 1) {
        sqlite3_result_error(context, "character position must be 1 or more", -1);
        return false;
    }
    if (!charAt(argv[0], pos, at)) {
        sqlite3_result_null(context);
        return false;
    }
    at.keys = static_cast<const CharKeys*>(sqlite3_user_data(context));
    return true;
}

// td_char_in(x, pos, lo, hi): hi NULL for no upper bound.
void charIn(sqlite3_context* context, int, sqlite3_value** argv)
{
    CharAt at;
    if (characterArgs(context, argv, at))
        sqlite3_result_int(context, inRange(at, argv[2], argv[3]));
}

// td_char_upper_is(x, pos, c)
void charUpperIs(sqlite3_context* context, int, sqlite3_value** argv)
{
    CharAt at;
    if (characterArgs(context, argv, at))
        sqlite3_result_int(context, upperIs(at, argv[2]));
}

// td_char_in_or_upper_is(x, pos, lo, hi, c): the two tests joined by "or".
void charInOrUpperIs(sqlite3_context* context, int, sqlite3_value** argv)
{
    CharAt at;
    if (characterArgs(context, argv, at))
        sqlite3_result_int(context, inRange(at, argv[2], argv[3]) || upperIs(at, argv[4]));
}

}  // namespace

bool RegisterJetFunctions(sqlite3* db)
{
    // The tables go to the functions as their user data, so a row reads them without a guard.
    auto* keys = const_cast<CharKeys*>(charKeys().data());
    using Fn = void (*)(sqlite3_context*, int, sqlite3_value**);
    const std::tuple<const char*, int, Fn> functions[] = {
        {"td_ucase", 1, &ucase},
        {"td_char_in", 4, &charIn},
        {"td_char_upper_is", 3, &charUpperIs},
        {"td_char_in_or_upper_is", 5, &charInOrUpperIs},
    };
    const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    bool ok = true;
    for (const auto& [name, args, fn] : functions)
        if (sqlite3_create_function_v2(db, name, args, flags, keys, fn, nullptr, nullptr, nullptr) !=
            SQLITE_OK)
            ok = false;
    return ok;
}

}  // namespace td
