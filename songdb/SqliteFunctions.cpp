#include "songdb/SqliteFunctions.h"
#include <QString>
#include <sqlite3.h>

namespace td {

namespace {

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
    if (ascii) {   // a copy into the result's own buffer, which SQLite reuses from row to row
        sqlite3_result_text(context, small, size, SQLITE_TRANSIENT);
        return;
    }
    const QByteArray upper = QString::fromUtf8(text, size).toUpper().toUtf8();
    sqlite3_result_text(context, upper.constData(), int(upper.size()), SQLITE_TRANSIENT);
}

}  // namespace

bool RegisterJetFunctions(sqlite3* db)
{
    return sqlite3_create_function_v2(db, "td_ucase", 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, &ucase, nullptr,
                                      nullptr, nullptr)
        == SQLITE_OK;
}

}  // namespace td
