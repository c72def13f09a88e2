#include "songdb/JetTokens.h"
#include "shell/services/AppError.h"

namespace td::jet {

namespace {

bool isWordChar(QChar c)
{
    return c.isLetterOrNumber() || c == u'_' || c == u'$';
}

// Reads a quoted piece from i (at the opening quote); a doubled quote stands for one.
QString readQuoted(const QString& sql, qsizetype& i, QChar quote, const QString& unterminated)
{
    QString text;
    ++i;
    while (i < sql.size()) {
        if (sql[i] == quote) {
            if (i + 1 < sql.size() && sql[i + 1] == quote) {
                text += quote;
                i += 2;
                continue;
            }
            ++i;
            return text;
        }
        text += sql[i++];
    }
    throw AppError(unterminated);
}

}  // namespace

std::vector<Token> Tokenize(const QString& sql)
{
    std::vector<Token> tokens;
    qsizetype i = 0;
    const qsizetype n = sql.size();
    while (i < n) {
        const QChar c = sql[i];
        const qsizetype start = i;
        if (c.isSpace()) {
            while (i < n && sql[i].isSpace())
                ++i;
            tokens.push_back({TokenKind::Space, sql.mid(start, i - start)});
        } else if (c == u'\'' || c == u'"') {
            tokens.push_back(
                {TokenKind::String,
                 readQuoted(sql, i, c, QStringLiteral("Unterminated text literal in SQL statement."))});
        } else if (c == u'[') {
            const qsizetype close = sql.indexOf(u']', i);
            if (close < 0)
                throw AppError(QStringLiteral("Missing ']' in SQL statement."));
            tokens.push_back({TokenKind::Bracket, sql.mid(i + 1, close - i - 1)});
            i = close + 1;
        } else if (c == u'#') {
            const qsizetype close = sql.indexOf(u'#', i + 1);
            if (close < 0)
                throw AppError(QStringLiteral("Missing '#' in SQL statement."));
            tokens.push_back({TokenKind::DateLiteral, sql.mid(i + 1, close - i - 1)});
            i = close + 1;
        } else if (c.isDigit() || (c == u'.' && i + 1 < n && sql[i + 1].isDigit())) {
            while (i < n && (sql[i].isDigit() || sql[i] == u'.'))
                ++i;
            tokens.push_back({TokenKind::Number, sql.mid(start, i - start)});
        } else if (isWordChar(c)) {
            while (i < n && isWordChar(sql[i]))
                ++i;
            tokens.push_back({TokenKind::Word, sql.mid(start, i - start)});
        } else if (c == u';') {
            tokens.push_back({TokenKind::Semicolon, QStringLiteral(";")});
            ++i;
        } else {
            static const QString pairs[] = {QStringLiteral("<>"), QStringLiteral("<="), QStringLiteral(">="),
                                            QStringLiteral("!="), QStringLiteral("||")};
            qsizetype len = 1;
            for (const auto& p : pairs)
                if (QStringView(sql).mid(i, 2) == p)
                    len = 2;
            tokens.push_back({TokenKind::Symbol, sql.mid(i, len)});
            i += len;
        }
    }
    return tokens;
}

QString QuoteLiteral(const QString& text)
{
    QString t = text;
    t.replace(u'\'', QStringLiteral("''"));
    return u'\'' + t + u'\'';
}

QString QuoteName(const QString& name)
{
    const auto quote = [](QString part) { return u'"' + part.replace(u'"', QStringLiteral("\"\"")) + u'"'; };
    const qsizetype dot = name.indexOf(u'.');
    if (dot > 0 && dot < name.size() - 1 && name.indexOf(u'.', dot + 1) < 0)
        return quote(name.left(dot)) + u'.' + quote(name.mid(dot + 1));
    return quote(name);
}

}  // namespace td::jet
