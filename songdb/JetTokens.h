#pragma once
#include <QString>
#include <vector>

namespace td::jet {

enum class TokenKind { Space, Word, Bracket, String, Number, Symbol, Semicolon, DateLiteral };

// One lexical piece of a Jet SQL statement. For String, Bracket and DateLiteral, text is the
// content without its delimiters and with doubled quotes made single.
struct Token {
    TokenKind kind;
    QString text;
};

// Splits a statement; throws AppError for an unterminated literal or bracket.
std::vector<Token> Tokenize(const QString& sql);

QString QuoteLiteral(const QString& text);  // 'text' with ' doubled
// "name", or "table"."column" for a bracketed [table.column].
QString QuoteName(const QString& name);

}  // namespace td::jet
